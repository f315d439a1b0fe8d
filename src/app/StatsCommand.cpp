// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/StatsCommand.h"

#include "core/progress/ProgressTexts.h"
#include "core/records/ConfusionLogStore.h"
#include "core/records/ReviewDeckStore.h"
#include "core/records/UsageEventStore.h"
#include "core/setup/Preferences.h"
#include "core/support/AppPaths.h"
#include "platform/linux/JsonFilePreferenceStore.h"
#include "platform/null/MemoryPreferenceStore.h"

#include <QFile>
#include <QJsonDocument>
#include <QTextStream>

namespace tolvane {

namespace {

const char* usageText = "Usage: tolvane stats [--json]\n";

// The bytes of a file; nothing when there is no file, which is no problem.
std::optional<QByteArray> readIfPresent(const QString& path, QStringList* problems)
{
    QFile file(path);
    if (!file.exists())
        return std::nullopt;
    if (!file.open(QIODevice::ReadOnly)) {
        problems->append(QStringLiteral("%1 could not be opened (%2)").arg(path, file.errorString()));
        return std::nullopt;
    }
    return file.readAll();
}

template <typename Record, typename Decode>
QList<Record> readRecords(const QString& path, QStringList* problems, Decode decode)
{
    const auto bytes = readIfPresent(path, problems);
    if (!bytes)
        return {};
    Result<QList<Record>> records = decode(*bytes);
    if (!records.ok()) {
        problems->append(QStringLiteral("%1 could not be read (%2); its records are not counted")
                             .arg(path, records.error().message));
        return {};
    }
    return std::move(records).value();
}

qint64 readSuccessfulLookups(const QString& path, QStringList* problems)
{
    const auto bytes = readIfPresent(path, problems);
    if (!bytes)
        return 0;
    JsonFilePreferenceStore::Parsed parsed = JsonFilePreferenceStore::parse(*bytes);
    if (!parsed.error.isEmpty()) {
        problems->append(QStringLiteral("%1 could not be read (%2)").arg(path, parsed.error));
        return 0;
    }
    MemoryPreferenceStore store;
    for (auto it = parsed.values.cbegin(); it != parsed.values.cend(); ++it)
        store.set(it.key(), it.value());
    return Preferences(store).successfulWordLookupCount();
}

QJsonObject periodJson(const PeriodCounts& counts)
{
    return {{QStringLiteral("today"), counts.today},
            {QStringLiteral("thisWeek"), counts.thisWeek},
            {QStringLiteral("thisMonth"), counts.thisMonth},
            {QStringLiteral("allTime"), counts.allTime}};
}

} // namespace

ProgressSnapshot readStats(const QString& recordsDirectory, const QString& preferencesPath, const QDateTime& now,
                           const StatsCalendar& calendar, QStringList* problems)
{
    const QString dir = recordsDirectory + QLatin1Char('/');
    const auto events =
        readRecords<UsageEvent>(dir + QStringLiteral("usage_events.json"), problems, &UsageEventStore::decode);
    const auto cards =
        readRecords<ReviewCard>(dir + QStringLiteral("review_deck.json"), problems,
                                [&now](const QByteArray& json) { return ReviewDeckStore::decode(json, now); });
    const auto log = readRecords<ConfusionLogEntry>(dir + QStringLiteral("confusion_log.json"), problems,
                                                    &ConfusionLogStore::decode);
    return ProgressSnapshot::from(events, cards, log, readSuccessfulLookups(preferencesPath, problems), now, calendar);
}

QString statsText(const ProgressSnapshot& s)
{
    namespace t = progress_texts;
    QString text;
    QTextStream out(&text);
    const auto section = [&](const QString& title, const QList<std::pair<QString, qint64>>& rows) {
        out << title << '\n';
        for (const auto& [label, value] : rows)
            out << "  " << qSetFieldWidth(26) << Qt::left << label << qSetFieldWidth(0) << t::number(value) << '\n';
    };
    section(t::lookupsTitle, {{t::today, s.lookups.today},
                              {t::thisWeek, s.lookups.thisWeek},
                              {t::thisMonth, s.lookups.thisMonth},
                              {t::allTime, s.lookups.allTime},
                              {t::activeDays, s.activeDays}});
    section(t::reviewsTitle, {{t::today, s.reviews.today},
                              {t::thisWeek, s.reviews.thisWeek},
                              {t::thisMonth, s.reviews.thisMonth},
                              {t::allTime, s.reviews.allTime}});
    section(t::flashcardsTitle, {{t::newCards, s.flashcards.newCards},
                                 {t::knowIt, s.flashcards.knowIt},
                                 {t::reviewAgain, s.flashcards.reviewAgain},
                                 {t::total, s.flashcards.total}});
    section(t::milestonesTitle, {{t::successfulLookups, s.successfulLookups}});
    if (s.nextMilestone)
        out << "  " << t::untilNextMilestone(*s.nextMilestone - s.successfulLookups) << '\n';
    else
        out << "  " << t::pastLastMilestone << '\n';
    if (s.showsHighlights()) {
        out << t::highlightsTitle << '\n';
        if (s.showsStreak())
            out << "  " << t::streak(s.streak) << '\n';
        if (s.showsMostLookedUp())
            out << "  " << t::mostLookedUp(*s.mostLookedUp) << '\n';
    }
    out.flush();
    return text;
}

QJsonObject statsJson(const ProgressSnapshot& s)
{
    QJsonObject lookups = periodJson(s.lookups);
    lookups.insert(QStringLiteral("activeDays"), s.activeDays);
    QJsonObject milestones{{QStringLiteral("successfulLookups"), s.successfulLookups},
                           {QStringLiteral("next"), s.nextMilestone ? QJsonValue(*s.nextMilestone) : QJsonValue()}};
    QJsonObject highlights{{QStringLiteral("streak"), s.streak}};
    if (s.mostLookedUp) {
        highlights.insert(QStringLiteral("mostLookedUp"),
                          QJsonObject{{QStringLiteral("word"), s.mostLookedUp->word},
                                      {QStringLiteral("seenCount"), s.mostLookedUp->seenCount}});
    } else {
        highlights.insert(QStringLiteral("mostLookedUp"), QJsonValue());
    }
    return {{QStringLiteral("lookups"), lookups},
            {QStringLiteral("reviews"), periodJson(s.reviews)},
            {QStringLiteral("flashcards"), QJsonObject{{QStringLiteral("new"), s.flashcards.newCards},
                                                       {QStringLiteral("knowIt"), s.flashcards.knowIt},
                                                       {QStringLiteral("reviewAgain"), s.flashcards.reviewAgain},
                                                       {QStringLiteral("total"), s.flashcards.total}}},
            {QStringLiteral("milestones"), milestones},
            {QStringLiteral("highlights"), highlights}};
}

int runStatsCommand(const QStringList& arguments)
{
    QTextStream out(stdout);
    QTextStream err(stderr);
    bool json = false;
    for (const QString& argument : arguments) {
        if (argument == QLatin1String("--json")) {
            json = true;
        } else if (argument == QLatin1String("--help")) {
            out << usageText;
            return 0;
        } else {
            err << "tolvane stats: unexpected argument " << argument << '\n' << usageText;
            return 2;
        }
    }
    QStringList problems;
    const ProgressSnapshot snapshot =
        readStats(recordsDirectory(), configDirectory() + QStringLiteral("/preferences.json"),
                  QDateTime::currentDateTimeUtc(), StatsCalendar::current(), &problems);
    for (const QString& problem : std::as_const(problems))
        err << "tolvane stats: " << problem << '\n';
    if (json)
        out << QJsonDocument(statsJson(snapshot)).toJson(QJsonDocument::Compact) << '\n';
    else
        out << statsText(snapshot);
    return 0;
}

} // namespace tolvane
