// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/records/ConfusionLogEntry.h"

#include <QString>

namespace tolvane::progress_texts {

// The statistics window and `tolvane stats` say the same things in the same words.
inline const QString statsWindowTitle = QStringLiteral("Usage Stats");
inline const QString lookupsTitle = QStringLiteral("Lookups");
inline const QString reviewsTitle = QStringLiteral("Cards Reviewed");
inline const QString flashcardsTitle = QStringLiteral("Flashcards");
inline const QString milestonesTitle = QStringLiteral("Lookup Milestones");
inline const QString highlightsTitle = QStringLiteral("Highlights");

inline const QString today = QStringLiteral("Today");
inline const QString thisWeek = QStringLiteral("This Week");
inline const QString thisMonth = QStringLiteral("This Month");
inline const QString allTime = QStringLiteral("All Time");
inline const QString activeDays = QStringLiteral("Active Days");
inline const QString newCards = QStringLiteral("New");
inline const QString knowIt = QStringLiteral("Know It");
inline const QString reviewAgain = QStringLiteral("Review Again");
inline const QString total = QStringLiteral("Total");
inline const QString successfulLookups = QStringLiteral("Successful word lookups");
inline const QString pastLastMilestone = QStringLiteral("Every lookup is part of the practice.");

// Numbers grouped as the user's locale groups them: 1,000 or 1 000 or 1.000.
QString number(qint64 value);
QString untilNextMilestone(qint64 remaining);
QString streak(qint64 days);
QString mostLookedUp(const ConfusionLogEntry& entry);

// The celebration window.
inline const QString celebrationWindowTitle = QStringLiteral("Lookup Milestone");
inline const QString notNow = QStringLiteral("Not Now");
inline const QString shareMilestone = QStringLiteral("Share Milestone");
QString milestoneHeadline(qint64 count);
QString celebrationSentence();

} // namespace tolvane::progress_texts
