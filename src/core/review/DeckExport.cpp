// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/review/DeckExport.h"

#include <QSaveFile>

namespace tolvane {

namespace {

bool statusIncluded(CardStatus status, const ExportSettings& settings)
{
    switch (status) {
    case CardStatus::new_:
        return settings.includeNew;
    case CardStatus::knowIt:
        return settings.includeKnowIt;
    case CardStatus::reviewAgain:
        return settings.includeReviewAgain;
    }
    return false;
}

void appendLine(QString& content, const QString& line)
{
    if (!content.isEmpty())
        content += u'\n';
    content += line;
}

} // namespace

std::optional<int> exportRangeDays(ExportDateRange range)
{
    switch (range) {
    case ExportDateRange::last7Days:
        return 7;
    case ExportDateRange::last30Days:
        return 30;
    case ExportDateRange::last90Days:
        return 90;
    case ExportDateRange::allTime:
        break;
    }
    return std::nullopt;
}

QList<ReviewCard> filteredCards(const QList<ReviewCard>& cards, const ExportSettings& settings, const QDateTime& now)
{
    std::optional<QDateTime> cutoff;
    if (const auto days = exportRangeDays(settings.dateRange)) {
        // Calendar days in the user's time zone: across a change of summer time the cutoff keeps
        // the time of day shown on the clock.
        const QDateTime candidate = now.toLocalTime().addDays(-*days);
        if (candidate.isValid())
            cutoff = candidate;
    }
    QList<ReviewCard> result;
    for (const ReviewCard& card : cards) {
        if (!statusIncluded(card.status, settings))
            continue;
        if (cutoff && card.dateAdded.isValid() && card.dateAdded < *cutoff)
            continue;
        result.append(card);
    }
    return result;
}

QString csvStatusLabel(CardStatus status)
{
    switch (status) {
    case CardStatus::knowIt:
        return QStringLiteral("Know It");
    case CardStatus::reviewAgain:
        return QStringLiteral("Review Again");
    case CardStatus::new_:
        break;
    }
    return QStringLiteral("New");
}

QString csvField(const QString& text)
{
    const bool needsQuotes = text.contains(u',') || text.contains(u'"') || text.contains(u'\n') || text.contains(u'\r');
    if (!needsQuotes)
        return text;
    QString quoted = text;
    quoted.replace(QStringLiteral("\""), QStringLiteral("\"\""));
    return u'"' + quoted + u'"';
}

QByteArray csvContent(const QList<ReviewCard>& cards)
{
    QString content = QStringLiteral("Word,Translation,Status,DateAdded");
    content.reserve(content.size() + cards.size() * 48);
    for (const ReviewCard& card : cards) {
        const QString date = card.dateAdded.toUTC().date().toString(Qt::ISODate);
        appendLine(content, csvField(card.sourceText) + u',' + csvField(card.translation) + u',' +
                                csvField(csvStatusLabel(card.status)) + u',' + csvField(date));
    }
    return QByteArrayLiteral("\xEF\xBB\xBF") + content.toUtf8();
}

QByteArray ankiContent(const QList<ReviewCard>& cards)
{
    QString content;
    content.reserve(cards.size() * 32);
    bool first = true;
    for (const ReviewCard& card : cards) {
        if (!first)
            content += u'\n';
        first = false;
        content += card.sourceText + u'\t' + card.translation;
    }
    return content.toUtf8();
}

QByteArray exportContent(const QList<ReviewCard>& cards, ExportFormat format)
{
    return format == ExportFormat::anki ? ankiContent(cards) : csvContent(cards);
}

QString exportButtonTitle(qsizetype cardCount, ExportFormat format)
{
    return QStringLiteral("Export %1 %2 as %3\u2026")
        .arg(cardCount)
        .arg(cardCount == 1 ? QStringLiteral("card") : QStringLiteral("cards"))
        .arg(format == ExportFormat::anki ? QStringLiteral("Anki text") : QStringLiteral("CSV"));
}

QString noMatchingCardsText()
{
    return QStringLiteral("No cards match the current filters.");
}

QString proposedExportFileName(ExportFormat format)
{
    return format == ExportFormat::anki ? QStringLiteral("vantor_cards_anki.txt") : QStringLiteral("vantor_cards.csv");
}

QString exportFileTypeFilter(ExportFormat format)
{
    return format == ExportFormat::anki ? QStringLiteral("Plain text (*.txt)")
                                        : QStringLiteral("Comma-separated values (*.csv)");
}

Result<void> writeExportFile(const QString& path, const QByteArray& content)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return Error{QStringLiteral("%1: %2").arg(path, file.errorString())};
    if (file.write(content) != content.size()) {
        const QString why = file.errorString();
        file.cancelWriting();
        return Error{QStringLiteral("%1: %2").arg(path, why)};
    }
    if (!file.commit())
        return Error{QStringLiteral("%1: %2").arg(path, file.errorString())};
    return {};
}

} // namespace tolvane
