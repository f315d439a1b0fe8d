// SPDX-License-Identifier: GPL-3.0-or-later
// Each milestone is celebrated once in the life of the installation.
#include "core/progress/LookupMilestoneManager.h"
#include "core/setup/Preferences.h"
#include "platform/null/MemoryPreferenceStore.h"

#include <QSignalSpy>
#include <QTest>

using namespace tolvane;
Q_DECLARE_METATYPE(tolvane::PreferenceValue)
Q_DECLARE_METATYPE(std::optional<qint64>)

namespace {

struct Fixture
{
    MemoryPreferenceStore store;
    Preferences preferences{store};
    QList<LookupMilestone> celebrated;

    std::unique_ptr<LookupMilestoneManager> make()
    {
        return std::make_unique<LookupMilestoneManager>(
            preferences, [this](const LookupMilestone& milestone) { celebrated.append(milestone); });
    }
    void lookUp(LookupMilestoneManager& manager, int times, const QString& word = QStringLiteral("w"))
    {
        for (int i = 0; i < times; ++i)
            manager.recordSuccessfulLookup(word, QStringLiteral("t"), QStringLiteral("de"),
                                           DetectedDirection::targetToEnglish);
    }
};

} // namespace

class TestLookupMilestoneManager : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void theTwentyFifthLookUpIsCelebratedWithItsWordOnce()
    {
        Fixture f;
        auto manager = f.make();
        QSignalSpy counts(manager.get(), &LookupMilestoneManager::successfulLookupCountChanged);
        QCOMPARE(manager->nextMilestone(), std::optional<qint64>(25));
        f.lookUp(*manager, 24);
        QVERIFY(f.celebrated.isEmpty());
        QCOMPARE(f.preferences.successfulWordLookupCount(), 24); // written at every look-up
        manager->recordSuccessfulLookup(QStringLiteral("Haus"), QStringLiteral("house"), QStringLiteral("de"),
                                        DetectedDirection::targetToEnglish);
        f.lookUp(*manager, 1);
        QCOMPARE(f.celebrated, (QList<LookupMilestone>{{25, QStringLiteral("Haus"), QStringLiteral("house"),
                                                        QStringLiteral("de"), DetectedDirection::targetToEnglish}}));
        QCOMPARE(f.preferences.shownLookupMilestones(), QList<qint64>{25});
        QCOMPARE(manager->nextMilestone(), std::optional<qint64>(100));
        QCOMPARE(counts.size(), 26);
        QCOMPARE(counts.last().first().toLongLong(), 26);
    }

    void theStoredListDecidesWhatIsShownAgain_data()
    {
        QTest::addColumn<qint64>("count");
        QTest::addColumn<PreferenceValue>("shown");
        QTest::addColumn<int>("celebrations");
        QTest::addColumn<QList<qint64>>("shownAfter");
        // The count was set back, but 100 was celebrated already.
        QTest::newRow("shown already") << qint64(99) << PreferenceValue(QList<qint64>{25, 100}) << 0
                                       << QList<qint64>{25, 100};
        QTest::newRow("kept ascending and unique")
            << qint64(249) << PreferenceValue(QList<qint64>{1000, 25, 25}) << 1 << QList<qint64>{25, 250, 1000};
        QTest::newRow("wrong type counts as empty")
            << qint64(499) << PreferenceValue(QStringLiteral("25,100")) << 1 << QList<qint64>{500};
    }
    void theStoredListDecidesWhatIsShownAgain()
    {
        QFETCH(qint64, count);
        QFETCH(PreferenceValue, shown);
        QFETCH(int, celebrations);
        QFETCH(QList<qint64>, shownAfter);
        Fixture f;
        f.preferences.setInteger(PreferenceKey::successfulWordLookupCount, count);
        f.store.set(PreferenceKey::shownLookupMilestones, shown);
        auto manager = f.make();
        f.lookUp(*manager, 1);
        QCOMPARE(f.celebrated.size(), celebrations);
        QCOMPARE(f.preferences.shownLookupMilestones(), shownAfter);
        QCOMPARE(f.preferences.successfulWordLookupCount(), count + 1);
    }

    void theNextMilestoneIsTheFirstThresholdAboveTheCount_data()
    {
        QTest::addColumn<qint64>("count");
        QTest::addColumn<std::optional<qint64>>("next");
        QTest::newRow("nothing yet") << qint64(0) << std::optional<qint64>(25);
        QTest::newRow("one short") << qint64(24) << std::optional<qint64>(25);
        QTest::newRow("exactly on one: the one after") << qint64(25) << std::optional<qint64>(100);
        QTest::newRow("exactly on the last: none") << qint64(5000) << std::optional<qint64>();
    }
    void theNextMilestoneIsTheFirstThresholdAboveTheCount()
    {
        QFETCH(qint64, count);
        QFETCH(std::optional<qint64>, next);
        Fixture f;
        f.preferences.setInteger(PreferenceKey::successfulWordLookupCount, count);
        QCOMPARE(f.make()->nextMilestone(), next);
    }

    void everyThresholdIsReachedInOrderFromZeroAndNothingAfterFiveThousand()
    {
        Fixture f;
        auto manager = f.make();
        f.lookUp(*manager, 6000);
        QCOMPARE(manager->nextMilestone(), std::nullopt);
        QList<qint64> counts;
        for (const auto& milestone : f.celebrated)
            counts << milestone.count;
        QCOMPARE(counts, (QList<qint64>{25, 100, 250, 500, 1000, 2500, 5000}));
    }
};

QTEST_GUILESS_MAIN(TestLookupMilestoneManager)
#include "tst_LookupMilestoneManager.moc"
