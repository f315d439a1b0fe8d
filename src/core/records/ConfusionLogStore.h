// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/records/ConfusionLogEntry.h"
#include "core/records/JsonRecordFile.h"

#include <QList>
#include <QObject>

namespace tolvane {

class Clock;

// The words that trouble the user most: one entry per word, counted at every look-up, mirrored
// to confusion_log.json.
class ConfusionLogStore final : public QObject
{
    Q_OBJECT
public:
    explicit ConfusionLogStore(const Clock& clock, const QString& directory = recordsDirectory(),
                               QObject* parent = nullptr);

    const QList<ConfusionLogEntry>& entries() const { return m_entries; }
    const QString& filePath() const { return m_file.path(); }

    // appContext: the display name of the application the word was seen in, when known.
    void recordLookup(const QString& word, const QString& translation, const std::optional<QString>& appContext);
    // Highest count first; equal counts keep the order in which the words were first logged.
    QList<ConfusionLogEntry> mostConfused(qsizetype limit) const;

    static Result<QList<ConfusionLogEntry>> decode(const QByteArray& json);
    static QByteArray encode(const QList<ConfusionLogEntry>& entries);

Q_SIGNALS:
    void entriesChanged();

private:
    const Clock& m_clock;
    JsonRecordFile m_file;
    QList<ConfusionLogEntry> m_entries;
};

} // namespace tolvane
