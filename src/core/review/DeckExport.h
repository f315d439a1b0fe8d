// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/records/ReviewCard.h"
#include "core/support/Result.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>

namespace tolvane {

enum class ExportFormat { csv, anki };
enum class ExportDateRange { allTime, last7Days, last30Days, last90Days };

// The choices of the "Export" tab; held while the window is open, never stored.
struct ExportSettings
{
    ExportFormat format = ExportFormat::csv;
    bool includeNew = true;
    bool includeKnowIt = true;
    bool includeReviewAgain = true;
    ExportDateRange dateRange = ExportDateRange::allTime;
};

// 7, 30 or 90; nothing for all time.
std::optional<int> exportRangeDays(ExportDateRange range);

// The deck's cards, in deck order, whose status is included and that were added at or after the
// same time of day the range's number of calendar days before now (local calendar).
QList<ReviewCard> filteredCards(const QList<ReviewCard>& cards, const ExportSettings& settings, const QDateTime& now);

// "Word,Translation,Status,DateAdded" and one line per card, fields quoted where they must be,
// dates as UTC calendar days; lines joined by a line feed, none after the last; UTF-8 with a
// byte-order mark.
QByteArray csvContent(const QList<ReviewCard>& cards);
// Front, tab, back: one card per line, written as they are; no header, no byte-order mark.
QByteArray ankiContent(const QList<ReviewCard>& cards);
QByteArray exportContent(const QList<ReviewCard>& cards, ExportFormat format);

// "New", "Know It", "Review Again".
QString csvStatusLabel(CardStatus status);
// One CSV field as it is written.
QString csvField(const QString& text);

// The tab's texts.
QString exportButtonTitle(qsizetype cardCount, ExportFormat format);
QString noMatchingCardsText();
QString proposedExportFileName(ExportFormat format);
// The save dialog's one allowed type.
QString exportFileTypeFilter(ExportFormat format);

// Replaces the file at path with content in one step; on failure the old file stays as it was.
Result<void> writeExportFile(const QString& path, const QByteArray& content);

} // namespace tolvane
