// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/progress/LookupMilestoneManager.h"

#include "core/setup/Preferences.h"

#include <algorithm>
#include <limits>

namespace tolvane {

LookupMilestoneManager::LookupMilestoneManager(Preferences& preferences, MilestoneHandler onMilestone, QObject* parent)
    : QObject(parent)
    , m_preferences(preferences)
    , m_onMilestone(std::move(onMilestone))
    , m_successfulLookupCount(preferences.successfulWordLookupCount())
{}

void LookupMilestoneManager::recordSuccessfulLookup(const QString& source, const QString& translation,
                                                    const QString& targetLanguageCode, DetectedDirection direction)
{
    if (m_successfulLookupCount < std::numeric_limits<qint64>::max())
        ++m_successfulLookupCount;
    m_preferences.setInteger(PreferenceKey::successfulWordLookupCount, m_successfulLookupCount);
    Q_EMIT successfulLookupCountChanged(m_successfulLookupCount);

    const qint64 count = m_successfulLookupCount;
    if (std::find(thresholds.cbegin(), thresholds.cend(), count) == thresholds.cend())
        return;
    QSet<qint64> shown = shownMilestones();
    // Once in the life of the installation, even if the count is ever set back.
    if (shown.contains(count))
        return;
    shown.insert(count);
    QList<qint64> ascending(shown.cbegin(), shown.cend());
    std::sort(ascending.begin(), ascending.end());
    m_preferences.setIntegerArray(PreferenceKey::shownLookupMilestones, ascending);
    if (m_onMilestone)
        m_onMilestone(LookupMilestone{count, source, translation, targetLanguageCode, direction});
}

std::optional<qint64> LookupMilestoneManager::milestoneAfter(qint64 count)
{
    const auto next = std::upper_bound(thresholds.cbegin(), thresholds.cend(), count);
    if (next == thresholds.cend())
        return std::nullopt;
    return *next;
}

QSet<qint64> LookupMilestoneManager::shownMilestones() const
{
    const QList<qint64> stored = m_preferences.shownLookupMilestones();
    return QSet<qint64>(stored.cbegin(), stored.cend());
}

} // namespace tolvane
