// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/null/MemoryPreferenceStore.h"

#include <QByteArray>
#include <QString>

class QFileSystemWatcher;

namespace tolvane {

// Preferences kept in one JSON object in a file of their own, rewritten atomically after every
// change and read again when the file changes on disk, so that hand edits and other Tolvane
// processes are seen at the next read. Doubles are written with a fraction ("5.0") so that they
// read back as doubles, not integers.
class JsonFilePreferenceStore final : public MemoryPreferenceStore
{
    Q_OBJECT
public:
    explicit JsonFilePreferenceStore(QString path, QObject* parent = nullptr);
    ~JsonFilePreferenceStore() override;

    void set(const QString& key, const PreferenceValue& value) override;
    void remove(const QString& key) override;

    const QString& path() const { return m_path; }

    // The file text for a set of values, and the values in a file text; exposed for tests.
    static QByteArray serialize(const QMap<QString, PreferenceValue>& values);
    struct Parsed
    {
        QMap<QString, PreferenceValue> values;
        QStringList ignoredKeys; // values of a type the store cannot hold
        QString error;           // set when the text is not a JSON object at all
    };
    static Parsed parse(const QByteArray& text);

private:
    void reload();
    void persist();
    void watch();
    QString setAside(bool move);

    QString m_path;
    QByteArray m_lastText; // what is on disk as far as we know; our own writes do not reload
    QFileSystemWatcher* m_watcher = nullptr;
};

} // namespace tolvane
