// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/PreferenceStore.h"

namespace tolvane {

// Preferences that live only as long as the process: headless runs and tests.
class MemoryPreferenceStore : public PreferenceStore
{
    Q_OBJECT
public:
    using PreferenceStore::PreferenceStore;

    std::optional<PreferenceValue> object(const QString& key) const override;
    void set(const QString& key, const PreferenceValue& value) override;
    void remove(const QString& key) override;
    void registerDefaults(const QMap<QString, PreferenceValue>& defaults) override;

    // Stored values only, without the registered defaults.
    const QMap<QString, PreferenceValue>& storedValues() const { return m_values; }

protected:
    // Replaces the stored values, signalling every key whose effective value changed.
    void replaceStoredValues(QMap<QString, PreferenceValue> values);

private:
    QMap<QString, PreferenceValue> m_values;
    QMap<QString, PreferenceValue> m_defaults;
};

} // namespace tolvane
