// SPDX-License-Identifier: GPL-3.0-or-later
// The statistics window shows its rows as the statistics decide and follows the records while
// open; the celebration shows its milestone's texts.
#include "core/progress/ProgressFixture.h"
#include "core/progress/ProgressTexts.h"
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

// The section's labelled number under caption, as shown.
qint64 tile(const QWidget* view, const QString& title, const QString& caption)
{
    for (NumberTile* found : section(view, title)->findChildren<NumberTile*>())
        if (found->caption() == caption)
            return QLocale().toLongLong(found->valueText());
    return -1;
}

} // namespace

class TestProgressWindows : public QObject
{
    Q_OBJECT
private Q_SLOTS:
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
        QTest::newRow("quoted word seen twice")
            << qint64(4999) << 2 << QStringList{"\"<b>x</b>\"", "\"<B>X</B>\""} << "1 until your next milestone" << true
            << QStringList{"2-day lookup streak", "Most looked up: \"\"<b>x</b>\"\" (2×)"};
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

    void anOpenWindowFollowsEachLookUpAndAClosedOneIsMadeAgain()
    {
        ProgressFixture f;
        StatsWindowManager windows(f.sources(), f.calendarSource());
        windows.show();
        StatsView* first = windows.window();
        QVERIFY(first->isVisible());
        f.lookUp(QStringLiteral("Haus"));
        f.lookUp(QStringLiteral("Haus"));
        QCOMPARE(tile(first, t::lookupsTitle, t::today), 2);
        QCOMPARE(tile(first, t::flashcardsTitle, t::newCards), 1);
        QCOMPARE(tile(first, t::milestonesTitle, t::successfulLookups), 2);
        QVERIFY(section(first, t::highlightsTitle)->isVisibleTo(first));
        first->close();
        windows.show();
        QVERIFY(windows.window() != first);
        QVERIFY(windows.window()->isVisible());
    }

    void theCelebrationShowsItsCountWordAndTranslationAndOffersToShare()
    {
        SharePresenter presenter;
        MilestoneWindowManager windows(presenter);
        windows.show(LookupMilestone{25, QStringLiteral("Schmetterling"), QStringLiteral("butterfly"),
                                     QStringLiteral("de"), DetectedDirection::targetToEnglish});
        MilestoneCelebrationView* shown = windows.window();
        QVERIFY(shown && shown->isVisible());
        QCOMPARE(shown->windowTitle(), QStringLiteral("Lookup Milestone"));
        QStringList texts;
        for (QLabel* label : shown->findChildren<QLabel*>())
            if (!label->text().isEmpty())
                texts.append(label->text());
        QCOMPARE(texts, (QStringList{"25 lookups!", "You’re turning everyday computer use into language practice.",
                                     "Schmetterling", "butterfly"}));
        shown->shareButton()->click();
        QVERIFY(presenter.menu());
        presenter.menu()->close();
    }
};

QTEST_MAIN(TestProgressWindows)
#include "tst_ProgressWindows.moc"
