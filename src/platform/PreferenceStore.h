// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QMap>
#include <QObject>
#include <QString>

#include <optional>
#include <variant>

namespace tolvane {

// The value types a preference can hold. They stay apart: a stored false is not absent, an
// integer is not a double.
using PreferenceValue = std::variant<bool, qint64, double, QString, QList<qint64>>;

// The flat key-value store that holds every setting and small piece of persistent state.
// Registered defaults answer for keys that were never stored; they are never written.
class PreferenceStore : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    ~PreferenceStore() override = default;

    // The stored value, else the registered default, else nothing.
    virtual std::optional<PreferenceValue> object(const QString& key) const = 0;
    virtual void set(const QString& key, const PreferenceValue& value) = 0;
    virtual void remove(const QString& key) = 0;
    virtual void registerDefaults(const QMap<QString, PreferenceValue>& defaults) = 0;

Q_SIGNALS:
    // A key's effective value may have changed: written here, removed, or changed by another
    // process or a hand edit.
    void valueChanged(const QString& key);
};

} // namespace tolvane
