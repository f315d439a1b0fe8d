// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/null/MemoryPreferenceStore.h"

#include <QSet>

namespace tolvane {

std::optional<PreferenceValue> MemoryPreferenceStore::object(const QString& key) const
{
    if (auto it = m_values.constFind(key); it != m_values.cend())
        return *it;
    if (auto it = m_defaults.constFind(key); it != m_defaults.cend())
        return *it;
    return std::nullopt;
}

void MemoryPreferenceStore::set(const QString& key, const PreferenceValue& value)
{
    if (auto it = m_values.constFind(key); it != m_values.cend() && *it == value)
        return;
    m_values.insert(key, value);
    Q_EMIT valueChanged(key);
}

void MemoryPreferenceStore::remove(const QString& key)
{
    if (m_values.remove(key) > 0)
        Q_EMIT valueChanged(key);
}

void MemoryPreferenceStore::registerDefaults(const QMap<QString, PreferenceValue>& defaults)
{
    for (auto it = defaults.cbegin(); it != defaults.cend(); ++it) {
        const auto before = object(it.key());
        m_defaults.insert(it.key(), it.value());
        if (object(it.key()) != before)
            Q_EMIT valueChanged(it.key());
    }
}

void MemoryPreferenceStore::replaceStoredValues(QMap<QString, PreferenceValue> values)
{
    QSet<QString> keys;
    for (auto it = m_values.cbegin(); it != m_values.cend(); ++it)
        keys.insert(it.key());
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        keys.insert(it.key());
    QList<QString> changed;
    for (const QString& key : std::as_const(keys)) {
        if (m_values.value(key) != values.value(key) || m_values.contains(key) != values.contains(key))
            changed.append(key);
    }
    m_values = std::move(values);
    for (const QString& key : std::as_const(changed))
        Q_EMIT valueChanged(key);
}

} // namespace tolvane
