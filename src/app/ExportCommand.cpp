// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ExportCommand.h"

#include "core/records/ReviewDeckStore.h"
#include "core/records/UsageEventStore.h"
#include "core/review/DeckExport.h"
#include "core/setup/Preferences.h"
#include "core/support/Clock.h"
#include "core/support/QtScheduler.h"
#include "platform/null/MemoryPreferenceStore.h"

#include <QFile>
#include <QTextStream>

#include <optional>

namespace tolvane {

namespace {

const char* usageText = "Usage: tolvane export [--format csv|anki] [--status new,knowIt,reviewAgain]\n"
                        "                      [--added all|7|30|90] [--output FILE]\n";

int usage(const QString& problem)
{
    QTextStream(stderr) << "tolvane export: " << problem << '\n' << usageText;
    return 2;
}

bool parseStatuses(const QString& list, ExportSettings& settings)
{
    settings.includeNew = settings.includeKnowIt = settings.includeReviewAgain = false;
    const QStringList names = list.split(u',');
    for (const QString& name : names) {
        const std::optional<CardStatus> status = cardStatusFromRawValue(name.trimmed());
        if (!status)
            return false;
        switch (*status) {
        case CardStatus::new_:
            settings.includeNew = true;
            break;
        case CardStatus::knowIt:
            settings.includeKnowIt = true;
            break;
        case CardStatus::reviewAgain:
            settings.includeReviewAgain = true;
            break;
        }
    }
    return true;
}

std::optional<ExportDateRange> parseRange(const QString& text)
{
    if (text == QLatin1String("all"))
        return ExportDateRange::allTime;
    if (text == QLatin1String("7"))
        return ExportDateRange::last7Days;
    if (text == QLatin1String("30"))
        return ExportDateRange::last30Days;
    if (text == QLatin1String("90"))
        return ExportDateRange::last90Days;
    return std::nullopt;
}

} // namespace

int runExportCommand(const QStringList& arguments)
{
    ExportSettings settings;
    QString output;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& option = arguments.at(i);
        if (option == QLatin1String("--help")) {
            QTextStream(stdout) << usageText;
            return 0;
        }
        if (i + 1 >= arguments.size())
            return usage(QStringLiteral("%1 needs a value").arg(option));
        const QString value = arguments.at(++i);
        if (option == QLatin1String("--format")) {
            if (value == QLatin1String("csv"))
                settings.format = ExportFormat::csv;
            else if (value == QLatin1String("anki"))
                settings.format = ExportFormat::anki;
            else
                return usage(QStringLiteral("unknown format \"%1\"").arg(value));
        } else if (option == QLatin1String("--status")) {
            if (!parseStatuses(value, settings))
                return usage(QStringLiteral("unknown status in \"%1\"").arg(value));
        } else if (option == QLatin1String("--added")) {
            const auto range = parseRange(value);
            if (!range)
                return usage(QStringLiteral("unknown range \"%1\"").arg(value));
            settings.dateRange = *range;
        } else if (option == QLatin1String("--output")) {
            output = value;
        } else {
            return usage(QStringLiteral("unknown option %1").arg(option));
        }
    }

    // The deck as the running Tolvane last saved it; a damaged file is set aside by the store,
    // exactly as at start-up, and never written over.
    SystemClock clock;
    QtScheduler scheduler;
    MemoryPreferenceStore preferenceStore;
    Preferences preferences(preferenceStore);
    UsageEventStore usage(clock);
    ReviewDeckStore deck(clock, scheduler, preferences, usage);

    const QList<ReviewCard> cards = filteredCards(deck.cards(), settings, clock.now());
    if (cards.isEmpty()) {
        QTextStream(stderr) << noMatchingCardsText() << '\n';
        return 1;
    }
    const QByteArray content = exportContent(cards, settings.format);
    if (output.isEmpty()) {
        QFile out;
        if (!out.open(stdout, QIODevice::WriteOnly) || out.write(content) != content.size() || !out.flush()) {
            QTextStream(stderr) << "tolvane export: could not write the cards: " << out.errorString() << '\n';
            return 1;
        }
        return 0;
    }
    const Result<void> written = writeExportFile(output, content);
    if (!written.ok()) {
        QTextStream(stderr) << "tolvane export: " << written.error().message << '\n';
        return 1;
    }
    return 0;
}

} // namespace tolvane
