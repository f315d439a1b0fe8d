// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/progress/LookupMilestone.h"

#include <QList>
#include <QObject>
#include <QSet>

#include <array>
#include <functional>
#include <optional>

namespace tolvane {

class Preferences;

// Counts successful word look-ups for life and celebrates each milestone the first time the
// count reaches it, once per installation.
class LookupMilestoneManager final : public QObject
{
    Q_OBJECT
public:
    using MilestoneHandler = std::function<void(const LookupMilestone&)>;

    static constexpr std::array<qint64, 7> thresholds{25, 100, 250, 500, 1000, 2500, 5000};

    LookupMilestoneManager(Preferences& preferences, MilestoneHandler onMilestone, QObject* parent = nullptr);

    qint64 successfulLookupCount() const { return m_successfulLookupCount; }

    // After each successful word look-up; the handler, if a milestone is reached, runs before
    // this returns.
    void recordSuccessfulLookup(const QString& source, const QString& translation, const QString& targetLanguageCode,
                                DetectedDirection direction);
    // The first milestone above the count; nothing past the last one.
    static std::optional<qint64> milestoneAfter(qint64 count);
    std::optional<qint64> nextMilestone() const { return milestoneAfter(m_successfulLookupCount); }
    QSet<qint64> shownMilestones() const;

Q_SIGNALS:
    void successfulLookupCountChanged(qint64 count);

private:
    Preferences& m_preferences;
    MilestoneHandler m_onMilestone;
    qint64 m_successfulLookupCount;
};

} // namespace tolvane
