// SPDX-License-Identifier: GPL-3.0-or-later
// The statistics count in the user's calendar and follow every change of their four sources.
#include "ProgressFixture.h"
#include "core/progress/ProgressStatistics.h"
#include "core/records/RecordTestSupport.h"

#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

using namespace tolvane;
Q_DECLARE_METATYPE(tolvane::PeriodCounts)

namespace QTest {
template <> char* toString(const PeriodCounts& c)
{
    return qstrdup(QByteArray::number(c.today) + ' ' + QByteArray::number(c.thisWeek) + ' ' +
                   QByteArray::number(c.thisMonth) + ' ' + QByteArray::number(c.allTime));
}
} // namespace QTest

namespace {

// Counted the slow way, moment against moment, without days.
PeriodCounts countedOneByOne(const QList<UsageEvent>& events, UsageEventType type, const QDateTime& now,
                             const StatsCalendar& calendar)
{
    const QDate date = now.toTimeZone(calendar.zone).date();
    const QDate weekStart = date.addDays(-((date.dayOfWeek() - int(calendar.firstDayOfWeek) + 7) % 7));
    const auto startOf = [&](QDate day) { return QDateTime(day, QTime(0, 0), calendar.zone); };
    PeriodCounts counts;
    for (const UsageEvent& event : events) {
        if (event.type != type)
            continue;
        ++counts.allTime;
        counts.today += event.date >= startOf(date);
        counts.thisWeek += event.date >= startOf(weekStart);
        counts.thisMonth += event.date >= startOf(QDate(date.year(), date.month(), 1));
    }
    return counts;
}

} // namespace

class TestProgressStatistics : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { QVERIFY(berlin().isValid()); }

    void withoutRecordsEverythingIsZeroAndTheFirstMilestoneIsTwentyFiveAway()
    {
        ProgressFixture f;
        ProgressStatistics stats(f.sources(), f.calendarSource());
        const ProgressSnapshot& s = stats.snapshot();
        QCOMPARE(s.lookups, PeriodCounts{});
        QCOMPARE(s.reviews, PeriodCounts{});
        QCOMPARE(s.flashcards, FlashcardCounts{});
        QCOMPARE(s.activeDays, 0);
        QCOMPARE(s.successfulLookups, 0);
        QCOMPARE(s.nextMilestone, std::optional<qint64>(25));
        QVERIFY(!s.showsHighlights());
    }

    void eachEventCountsInThePeriodsItFallsIn_data()
    {
        QTest::addColumn<QDateTime>("now");
        QTest::addColumn<int>("firstDayOfWeek");
        QTest::addColumn<QDateTime>("when");
        QTest::addColumn<PeriodCounts>("expected"); // today, week, month, all time
        const QDateTime wednesday = inBerlin(QDate(2026, 3, 18), QTime(15, 0));
        QTest::newRow("local midnight today")
            << wednesday << 1 << inBerlin(QDate(2026, 3, 18), QTime(0, 0)) << PeriodCounts{1, 1, 1, 1};
        QTest::newRow("a moment before it")
            << wednesday << 1 << inBerlin(QDate(2026, 3, 18), QTime(0, 0)).addMSecs(-1) << PeriodCounts{0, 1, 1, 1};
        QTest::newRow("Monday, weeks from Monday")
            << wednesday << 1 << inBerlin(QDate(2026, 3, 16), QTime(0, 0)) << PeriodCounts{0, 1, 1, 1};
        QTest::newRow("Sunday, weeks from Monday")
            << wednesday << 1 << inBerlin(QDate(2026, 3, 15), QTime(23, 59)) << PeriodCounts{0, 0, 1, 1};
        QTest::newRow("Sunday, weeks from Sunday")
            << wednesday << 7 << inBerlin(QDate(2026, 3, 15), QTime(0, 0)) << PeriodCounts{0, 1, 1, 1};
        QTest::newRow("Saturday, weeks from Saturday")
            << wednesday << 6 << inBerlin(QDate(2026, 3, 14), QTime(1, 0)) << PeriodCounts{0, 1, 1, 1};
        QTest::newRow("last month, this week")
            << inBerlin(QDate(2026, 4, 1)) << 1 << inBerlin(QDate(2026, 3, 31), QTime(23, 0))
            << PeriodCounts{0, 1, 0, 1};
        QTest::newRow("first of the month")
            << wednesday << 1 << inBerlin(QDate(2026, 3, 1), QTime(0, 0)) << PeriodCounts{0, 0, 1, 1};
        // Clocks went forward at 02:00 on Sunday 29 March: that day has 23 hours.
        QTest::newRow("the day after a short day")
            << inBerlin(QDate(2026, 3, 30), QTime(0, 30)) << 1 << inBerlin(QDate(2026, 3, 30), QTime(0, 10))
            << PeriodCounts{1, 1, 1, 1};
        QTest::newRow("late on the short day")
            << inBerlin(QDate(2026, 3, 30), QTime(0, 30)) << 1 << inBerlin(QDate(2026, 3, 29), QTime(23, 50))
            << PeriodCounts{0, 0, 1, 1};
        QTest::newRow("in the future") << wednesday << 1 << inBerlin(QDate(2031, 1, 1)) << PeriodCounts{1, 1, 1, 1};
        QTest::newRow("far in the past") << wednesday << 1 << inBerlin(QDate(1901, 1, 1)) << PeriodCounts{0, 0, 0, 1};
    }

    void eachEventCountsInThePeriodsItFallsIn()
    {
        QFETCH(QDateTime, now);
        QFETCH(int, firstDayOfWeek);
        QFETCH(QDateTime, when);
        QFETCH(PeriodCounts, expected);
        ProgressFixture f;
        f.clock.setNow(now);
        f.calendar.firstDayOfWeek = Qt::DayOfWeek(firstDayOfWeek);
        f.eventAt(when);
        f.eventAt(when, UsageEventType::review);
        const ProgressStatistics stats(f.sources(), f.calendarSource());
        QCOMPARE(stats.snapshot().lookups, expected);
        QCOMPARE(stats.snapshot().reviews, expected);
        QCOMPARE(stats.snapshot().activeDays, 1);
    }

    void streakAndMostLookedUpRowsShowFromTheirThresholds_data()
    {
        QTest::addColumn<QList<int>>("lookupDaysAgo");
        QTest::addColumn<QList<int>>("reviewDaysAgo");
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<int>("streak");
        QTest::addColumn<bool>("highlights");
        QTest::addColumn<bool>("streakRow");
        QTest::addColumn<bool>("topRow");
        QTest::newRow("yesterday and today")
            << QList<int>{1, 0} << QList<int>{} << QStringList{} << 2 << true << true << false;
        QTest::newRow("today only") << QList<int>{0} << QList<int>{} << QStringList{} << 1 << false << false << false;
        QTest::newRow("a review yesterday does not carry it")
            << QList<int>{0} << QList<int>{1} << QStringList{} << 1 << false << false << false;
        QTest::newRow("nothing today breaks it")
            << QList<int>{2, 1} << QList<int>{0} << QStringList{} << 0 << false << false << false;
        QTest::newRow("a gap ends it") << QList<int>{4, 2, 1, 0} << QList<int>{3} << QStringList{} << 3 << true << true
                                       << false;
        QTest::newRow("top word seen once")
            << QList<int>{} << QList<int>{} << QStringList{"Haus"} << 0 << true << false << false;
        QTest::newRow("top word seen twice")
            << QList<int>{} << QList<int>{} << QStringList{"Haus", "haus"} << 0 << true << false << true;
    }

    void streakAndMostLookedUpRowsShowFromTheirThresholds()
    {
        QFETCH(QList<int>, lookupDaysAgo);
        QFETCH(QList<int>, reviewDaysAgo);
        QFETCH(QStringList, words);
        QFETCH(int, streak);
        QFETCH(bool, highlights);
        QFETCH(bool, streakRow);
        QFETCH(bool, topRow);
        ProgressFixture f;
        for (int ago : lookupDaysAgo)
            f.eventAt(f.clock.now().addDays(-ago));
        for (int ago : reviewDaysAgo)
            f.eventAt(f.clock.now().addDays(-ago), UsageEventType::review);
        for (const QString& word : words)
            f.confusionLog->recordLookup(word, QStringLiteral("house"), std::nullopt);
        const ProgressStatistics stats(f.sources(), f.calendarSource());
        const ProgressSnapshot& s = stats.snapshot();
        QCOMPARE(s.streak, streak);
        QCOMPARE(s.streak, f.usageEvents->currentStreak());
        QCOMPARE(s.activeDays, f.usageEvents->lookupDayCount());
        QCOMPARE(s.showsHighlights(), highlights);
        QCOMPARE(s.showsStreak(), streakRow);
        QCOMPARE(s.showsMostLookedUp(), topRow);
    }

    void theMostLookedUpWordIsTheFirstLoggedOfTheHighestCount()
    {
        QList<ConfusionLogEntry> entries{{QStringLiteral("a"), {}, 2, {}, {}},
                                         {QStringLiteral("b"), {}, 5, {}, {}},
                                         {QStringLiteral("c"), {}, 5, {}, {}}};
        QCOMPARE(mostLookedUpEntry(entries)->word, QStringLiteral("b"));
        QVERIFY(!mostLookedUpEntry({}));
    }

    void everyChangeOfASourceIsCountedAndSignalled()
    {
        ProgressFixture f;
        f.eventAt(f.clock.now().addDays(-1));
        ProgressStatistics stats(f.sources(), f.calendarSource());
        QSignalSpy changes(&stats, &ProgressStatistics::changed);
        f.lookUp(QStringLiteral("Haus"));
        f.lookUp(QStringLiteral("Haus"));
        QCOMPARE(changes.size(), 8); // events, log, deck and count, twice
        const ProgressSnapshot& s = stats.snapshot();
        QCOMPARE(s.lookups, (PeriodCounts{2, 3, 3, 3}));
        QCOMPARE(s.streak, 2);
        QCOMPARE(s.flashcards.total, 1);
        QCOMPARE(s.successfulLookups, 2);
        QCOMPARE(s.nextMilestone, std::optional<qint64>(25));
        QVERIFY(s.showsMostLookedUp());
        f.reviewDeck->setStatus(f.reviewDeck->cards().first().id, CardStatus::knowIt); // a review
        QCOMPARE(s.flashcards, (FlashcardCounts{0, 1, 0, 1}));
        QCOMPARE(s.reviews.today, 1);
        QCOMPARE(s.activeDays, 2);
    }

    void randomEventsCountAsOneByOneInEveryZone()
    {
        // Many events around several daylight-saving changes, checked against a count that
        // compares each moment with the period's first moment: first those in the file, then
        // after each batch of new ones.
        QRandomGenerator random(20261123);
        for (const char* id : {"Europe/Berlin", "America/Santiago", "Australia/Lord_Howe", "Asia/Kathmandu"}) {
            ProgressFixture f;
            f.calendar = StatsCalendar{QTimeZone(id), Qt::Sunday};
            f.clock.setNow(QDateTime(QDate(2026, 4, 5), QTime(10, 0), f.calendar.zone));
            const qint64 now = f.clock.now().toMSecsSinceEpoch();
            const auto randomEvent = [&] {
                const qint64 back = qint64(random.bounded(double(qint64(70) * 86400000)));
                return UsageEvent{random.bounded(3) ? UsageEventType::lookup : UsageEventType::review,
                                  QDateTime::fromMSecsSinceEpoch(now - back + 3600000, Qt::UTC)};
            };
            QList<UsageEvent> stored;
            for (int i = 0; i < 3000; ++i)
                stored.append(randomEvent());
            QVERIFY(writeFile(f.usageEvents->filePath(), UsageEventStore::encode(stored)));
            f.open();
            ProgressStatistics stats(f.sources(), f.calendarSource());
            for (int batch = 0; batch < 3; ++batch) {
                if (batch > 0) {
                    for (int i = 0; i < 10; ++i) {
                        const UsageEvent event = randomEvent();
                        f.eventAt(event.date, event.type);
                    }
                    f.usageEvents->record(UsageEventType::lookup); // with the clock at now
                }
                const QList<UsageEvent>& events = f.usageEvents->events();
                for (const auto type : {UsageEventType::lookup, UsageEventType::review}) {
                    const PeriodCounts kept =
                        type == UsageEventType::lookup ? stats.snapshot().lookups : stats.snapshot().reviews;
                    QCOMPARE(kept, countedOneByOne(events, type, f.clock.now(), f.calendar));
                }
                const ProgressSnapshot fresh = ProgressSnapshot::from(events, {}, {}, 0, f.clock.now(), f.calendar);
                QCOMPARE(stats.snapshot().activeDays, fresh.activeDays);
                QCOMPARE(stats.snapshot().streak, fresh.streak);
            }
        }
    }

    void aNewTimeZoneIsFollowedAtTheNextChange()
    {
        ProgressFixture f;
        // 23:30 in Berlin is already tomorrow in Tokyo.
        f.clock.setNow(inBerlin(QDate(2026, 3, 18), QTime(23, 30)));
        f.eventAt(inBerlin(QDate(2026, 3, 18), QTime(12, 0)));
        ProgressStatistics stats(f.sources(), f.calendarSource());
        QCOMPARE(stats.snapshot().lookups.today, 1);
        f.calendar.zone = QTimeZone("Asia/Tokyo");
        QCOMPARE(stats.snapshot().lookups.today, 1);
        f.usageEvents->record(UsageEventType::lookup);
        QCOMPARE(stats.snapshot().lookups.today, 1);
        QCOMPARE(stats.snapshot().activeDays, 2);
        QCOMPARE(stats.snapshot().streak, 2);
    }
};

QTEST_GUILESS_MAIN(TestProgressStatistics)
#include "tst_ProgressStatistics.moc"
