// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/review/DeckExport.h"

#include <QSaveFile>

#include <algorithm>

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

bool needsQuotes(const QString& text)
{
    return std::any_of(text.cbegin(), text.cend(),
                       [](QChar c) { return c == u',' || c == u'"' || c == u'\n' || c == u'\r'; });
}

void appendCsvField(QString& content, const QString& text)
{
    if (!needsQuotes(text)) {
        content += text;
        return;
    }
    content += u'"';
    for (const QChar c : text) {
        if (c == u'"')
            content += u'"';
        content += c;
    }
    content += u'"';
}

// 2025-03-07: the ISO 8601 calendar date, written without going through a formatter per card.
void appendIsoDate(QString& content, const QDate& date)
{
    if (!date.isValid() || date.year() < 1 || date.year() > 9999) {
        content += date.toString(Qt::ISODate);
        return;
    }
    char text[11];
    const int year = date.year();
    const int month = date.month();
    const int day = date.day();
    text[0] = char('0' + year / 1000);
    text[1] = char('0' + year / 100 % 10);
    text[2] = char('0' + year / 10 % 10);
    text[3] = char('0' + year % 10);
    text[4] = '-';
    text[5] = char('0' + month / 10);
    text[6] = char('0' + month % 10);
    text[7] = '-';
    text[8] = char('0' + day / 10);
    text[9] = char('0' + day % 10);
    text[10] = '\0';
    content += QLatin1String(text, 10);
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
    std::optional<qint64> cutoff; // milliseconds since the epoch
    if (const auto days = exportRangeDays(settings.dateRange)) {
        // Calendar days in the user's time zone: across a change of summer time the cutoff keeps
        // the time of day shown on the clock.
        const QDateTime candidate = now.toLocalTime().addDays(-*days);
        if (candidate.isValid())
            cutoff = candidate.toMSecsSinceEpoch();
    }
    QList<ReviewCard> result;
    for (const ReviewCard& card : cards) {
        if (!statusIncluded(card.status, settings))
            continue;
        if (cutoff && card.dateAdded.isValid() && card.dateAdded.toMSecsSinceEpoch() < *cutoff)
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
    QString field;
    appendCsvField(field, text);
    return field;
}

QByteArray csvContent(const QList<ReviewCard>& cards)
{
    QString content = QStringLiteral("Word,Translation,Status,DateAdded");
    content.reserve(content.size() + cards.size() * 48);
    for (const ReviewCard& card : cards) {
        content += u'\n';
        appendCsvField(content, card.sourceText);
        content += u',';
        appendCsvField(content, card.translation);
        content += u',';
        content += csvStatusLabel(card.status);
        content += u',';
        appendIsoDate(content, card.dateAdded.toUTC().date());
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
