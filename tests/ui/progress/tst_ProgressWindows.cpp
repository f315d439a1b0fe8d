// SPDX-License-Identifier: GPL-3.0-or-later
// The statistics window shows what `tolvane stats` prints and follows the records while open;
// each milestone opens its own celebration, with the word that reached it.
#include "app/StatsCommand.h"
#include "core/progress/ProgressFixture.h"
#include "core/progress/ProgressTexts.h"
#include "core/records/RecordTestSupport.h"
#include "ui/components/SectionCard.h"
#include "ui/progress/MilestoneCelebrationView.h"
#include "ui/progress/MilestoneWindowManager.h"
#include "ui/progress/NumberTile.h"
#include "ui/progress/StatsView.h"
#include "ui/progress/StatsWindowManager.h"
#include "ui/share/SharePresenter.h"

#include <QApplication>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>

using namespace tolvane;
namespace t = progress_texts;

namespace {

SectionCard* section(const QWidget* view, const QString& title)
{
    for (SectionCard* card : view->findChildren<SectionCard*>())
        if (card->title() == title)
            return card;
    return nullptr;
}

// The section's labelled numbers as a JSON object keyed like `tolvane stats --json`.
QJsonObject tiles(const QWidget* view, const QString& title, const QStringList& keys)
{
    QJsonObject numbers;
    const QList<NumberTile*> found = section(view, title)->findChildren<NumberTile*>();
    for (qsizetype i = 0; i < found.size() && i < keys.size(); ++i)
        numbers.insert(keys.at(i), QLocale().toLongLong(found.at(i)->valueText()));
    return numbers;
}

// What the window shows, in the command's shape.
QJsonObject shown(const StatsView* view)
{
    QJsonObject lookups = tiles(view, t::lookupsTitle, {"today", "thisWeek", "thisMonth", "allTime", "activeDays"});
    const QLabel* progressText = section(view, t::milestonesTitle)->findChildren<QLabel*>().last();
    const bool barShown = section(view, t::milestonesTitle)->findChild<QProgressBar*>()->isVisibleTo(view);
    const qint64 successful = tiles(view, t::milestonesTitle, {"n"}).value("n").toInteger();
    QJsonObject highlights{{"streak", 0}, {"mostLookedUp", QJsonValue()}};
    for (QLabel* label : section(view, t::highlightsTitle)->findChildren<QLabel*>()) {
        if (!label->isVisibleTo(view) || label->text().isEmpty())
            continue;
        if (label->text().endsWith(QStringLiteral("-day lookup streak")))
            highlights["streak"] = label->text().section(u'-', 0, 0).toLongLong();
        else if (label->text().startsWith(QStringLiteral("Most looked up: ")))
            highlights["mostLookedUp"] =
                QJsonObject{{"word", label->text().section(u'"', 1, 1)},
                            {"seenCount", label->text().section(u'(', -1).chopped(2).toLongLong()}};
    }
    return {{"lookups", lookups},
            {"reviews", tiles(view, t::reviewsTitle, {"today", "thisWeek", "thisMonth", "allTime"})},
            {"flashcards", tiles(view, t::flashcardsTitle, {"new", "knowIt", "reviewAgain", "total"})},
            {"milestones",
             QJsonObject{{"successfulLookups", successful},
                         {"next", barShown ? QJsonValue(successful +
                                                        QLocale().toLongLong(progressText->text().section(u' ', 0, 0)))
                                           : QJsonValue()}}},
            {"highlights", highlights}};
}

// What the command says of the same figures: rows the window hides are left out.
QJsonObject printed(QJsonObject json)
{
    QJsonObject highlights = json["highlights"].toObject();
    if (highlights["streak"].toInteger() < 2)
        highlights["streak"] = 0;
    if (highlights["mostLookedUp"].isObject() && highlights["mostLookedUp"].toObject()["seenCount"].toInteger() < 2)
        highlights["mostLookedUp"] = QJsonValue();
    json["highlights"] = highlights;
    return json;
}

void seedRecords(ProgressFixture& f)
{
    const QDateTime now = f.clock.now();
    for (int day = 3; day >= 0; --day)
        for (int i = 0; i <= day; ++i)
            f.eventAt(now.addDays(-day).addSecs(-60 * i));
    f.eventAt(now.addDays(-40), UsageEventType::review);
    f.eventAt(now, UsageEventType::review);
    for (const char* word : {"Haus", "Baum", "haus", "Haus"})
        f.lookUp(QString::fromUtf8(word));
    f.reviewDeck->setStatus(f.reviewDeck->cards().first().id, CardStatus::knowIt);
    f.preferences.setInteger(PreferenceKey::successfulWordLookupCount, 1234);
}

} // namespace

class TestProgressWindows : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void theWindowShowsWhatTheCommandPrintsForTheSameFiles_data()
    {
        QTest::addColumn<QString>("damagedFile");
        QTest::newRow("all readable") << QString();
        QTest::newRow("damaged deck") << QStringLiteral("review_deck.json");
        QTest::newRow("damaged events") << QStringLiteral("usage_events.json");
    }

    void theWindowShowsWhatTheCommandPrintsForTheSameFiles()
    {
        QFETCH(QString, damagedFile);
        ProgressFixture f;
        seedRecords(f);
        if (!damagedFile.isEmpty())
            QVERIFY(writeFile(f.dir.filePath(damagedFile), "[{\"type\": \"look"));
        const QString preferencesPath = f.dir.filePath("preferences.json");
        QVERIFY(writeFile(preferencesPath, "{\"successfulWordLookupCount\": 1234}"));
        QStringList problems;
        const QJsonObject json =
            statsJson(readStats(f.dir.path(), preferencesPath, f.clock.now(), f.calendar, &problems));
        QCOMPARE(problems.size(), damagedFile.isEmpty() ? 0 : 1);

        f.open(); // as Tolvane starts: a damaged file is set aside and its store starts empty
        StatsView view(f.sources(), f.calendarSource());
        QCOMPARE(shown(&view), printed(json));
        QCOMPARE(json["milestones"]["successfulLookups"].toInteger(), 1234);
        if (damagedFile.isEmpty()) {
            QCOMPARE(json["lookups"]["today"].toInteger(), 1 + 4);
            QCOMPARE(json["highlights"]["streak"].toInteger(), 4);
            QCOMPARE(json["highlights"]["mostLookedUp"]["word"].toString(), QStringLiteral("Haus"));
            QCOMPARE(json["highlights"]["mostLookedUp"]["seenCount"].toInteger(), 3);
        }
    }

    void milestoneAndHighlightRowsFollowTheirThresholds_data()
    {
        QTest::addColumn<qint64>("count");
        QTest::addColumn<int>("streakDays");
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<QString>("progressText");
        QTest::addColumn<bool>("highlights");
        QTest::addColumn<QStringList>("rows");
        QTest::newRow("nothing yet") << qint64(0) << 0 << QStringList{} << "25 until your next milestone" << false
                                     << QStringList{};
        QTest::newRow("streak of two") << qint64(30) << 2 << QStringList{} << "70 until your next milestone" << true
                                       << QStringList{"2-day lookup streak"};
        QTest::newRow("streak of one") << qint64(30) << 1 << QStringList{} << "70 until your next milestone" << false
                                       << QStringList{};
        QTest::newRow("top word seen once")
            << qint64(1) << 0 << QStringList{"Haus"} << "24 until your next milestone" << true << QStringList{};
        QTest::newRow("quoted word seen twice")
            << qint64(4999) << 0 << QStringList{"\"<b>x</b>\"", "\"<B>X</B>\""} << "1 until your next milestone" << true
            << QStringList{"Most looked up: \"\"<b>x</b>\"\" (2×)"};
        QTest::newRow("the last milestone")
            << qint64(5000) << 0 << QStringList{} << t::pastLastMilestone << false << QStringList{};
    }

    void milestoneAndHighlightRowsFollowTheirThresholds()
    {
        QFETCH(qint64, count);
        QFETCH(int, streakDays);
        QFETCH(QStringList, words);
        QFETCH(QString, progressText);
        QFETCH(bool, highlights);
        QFETCH(QStringList, rows);
        ProgressFixture f;
        f.preferences.setInteger(PreferenceKey::successfulWordLookupCount, count);
        f.open();
        for (int day = 0; day < streakDays; ++day)
            f.eventAt(f.clock.now().addDays(-day));
        for (const QString& word : words)
            f.confusionLog->recordLookup(word, QStringLiteral("t"), std::nullopt);
        StatsView view(f.sources(), f.calendarSource());
        SectionCard* milestones = section(&view, t::milestonesTitle);
        QCOMPARE(milestones->findChildren<QLabel*>().last()->text(), progressText);
        auto* bar = milestones->findChild<QProgressBar*>();
        QCOMPARE(bar->isVisibleTo(&view), count < 5000);
        if (count < 5000)
            QCOMPARE(bar->value(), int(count));
        QCOMPARE(section(&view, t::highlightsTitle)->isVisibleTo(&view), highlights);
        QStringList visibleRows;
        for (QLabel* label : section(&view, t::highlightsTitle)->findChildren<QLabel*>())
            if (label->isVisibleTo(&view) && label->text() != t::highlightsTitle && !label->text().isEmpty())
                visibleRows.append(label->text());
        QCOMPARE(visibleRows, rows);
        for (QLabel* label : view.findChildren<QLabel*>())
            QVERIFY(label->text().isEmpty() || label->textFormat() == Qt::PlainText);
    }

    void anOpenWindowFollowsEachLookUpAndIsRaisedRatherThanRemade()
    {
        ProgressFixture f;
        StatsWindowManager windows(f.sources(), f.calendarSource());
        windows.show();
        StatsView* first = windows.window();
        QVERIFY(first->isVisible());
        QCOMPARE(first->windowTitle(), QStringLiteral("Usage Stats"));
        QCOMPARE(first->size(), QSize(360, 460));
        f.lookUp(QStringLiteral("Haus"));
        f.lookUp(QStringLiteral("Haus"));
        QCOMPARE(tiles(first, t::lookupsTitle, {"today"})["today"].toInteger(), 2);
        QCOMPARE(tiles(first, t::flashcardsTitle, {"new"})["new"].toInteger(), 1);
        QCOMPARE(tiles(first, t::milestonesTitle, {"n"})["n"].toInteger(), 2);
        QVERIFY(section(first, t::highlightsTitle)->isVisibleTo(first));
        windows.show();
        QCOMPARE(windows.window(), first);
        first->close();
        windows.show();
        QVERIFY(windows.window() != first);
        QVERIFY(windows.window()->isVisible());
    }

    void theTwentyFifthLookUpIsCelebratedWithItsWordAndEachMilestoneInItsOwnWindow()
    {
        SharePresenter presenter;
        MilestoneWindowManager windows(presenter);
        ProgressFixture f;
        f.milestones = std::make_unique<LookupMilestoneManager>(
            f.preferences, [&windows](const LookupMilestone& milestone) { windows.show(milestone); });
        for (int i = 1; i <= 24; ++i)
            f.lookUp(QStringLiteral("w%1").arg(i));
        QVERIFY(!windows.window());
        f.lookUp(QStringLiteral("Schmetterling"), QStringLiteral("butterfly"));
        MilestoneCelebrationView* first = windows.window();
        QVERIFY(first && first->isVisible());
        QCOMPARE(first->windowTitle(), QStringLiteral("Lookup Milestone"));
        QCOMPARE(first->size(), QSize(390, 360));
        QStringList texts;
        for (QLabel* label : first->findChildren<QLabel*>())
            if (!label->text().isEmpty())
                texts.append(label->text());
        QCOMPARE(texts, (QStringList{"25 lookups!", "You’re turning everyday computer use into language practice.",
                                     "Schmetterling", "butterfly"}));
        f.lookUp(QStringLiteral("w26"));
        QCOMPARE(windows.window(), first);

        f.preferences.setInteger(PreferenceKey::successfulWordLookupCount, 99);
        f.milestones = std::make_unique<LookupMilestoneManager>(
            f.preferences, [&windows](const LookupMilestone& milestone) { windows.show(milestone); });
        f.lookUp(QStringLiteral("Baum"));
        MilestoneCelebrationView* second = windows.window();
        QVERIFY(second != first);
        QVERIFY(first->isVisible() && second->isVisible());
        QCOMPARE(second->milestone().source, QStringLiteral("Baum"));
        second->shareButton()->click();
        QVERIFY(presenter.menu());
        presenter.menu()->close();
        second->notNowButton()->click();
        QVERIFY(!second->isVisible());
        QVERIFY(first->isVisible());
        QCOMPARE(windows.window(), second);
    }
};

QTEST_MAIN(TestProgressWindows)
#include "tst_ProgressWindows.moc"
