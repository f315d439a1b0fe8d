// SPDX-License-Identifier: GPL-3.0-or-later
// The review window's life (one window for reminders and commands, fresh after a close), hostile
// card texts, and the Export tab's footer and save dialog.
#include "app/AppDelegate.h"
#include "core/records/ReviewDeckStore.h"
#include "core/records/UsageEventStore.h"
#include "core/setup/Preferences.h"
#include "fakes/FakePlatform.h"
#include "fakes/FakeScheduler.h"
#include "platform/null/MemoryPreferenceStore.h"
#include "ui/review/DeckExportPane.h"
#include "ui/review/FlashcardView.h"
#include "ui/review/ReviewDeckWindowManager.h"
#include "ui/share/SharePresenter.h"

#include <QCheckBox>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>

using namespace tolvane;

namespace {

struct Fixture
{
    QTemporaryDir dir;
    FakeClock clock;
    FakeScheduler scheduler{&clock};
    MemoryPreferenceStore preferenceStore;
    Preferences preferences{preferenceStore};
    UsageEventStore events{clock, dir.path()};
    ReviewDeckStore deck{clock, scheduler, preferences, events, nullptr, dir.path()};
    SharePresenter share;
    ReviewDeckWindowManager windows{ReviewDeckContext{deck, preferences, clock, share}};

    void add(const QString& word, const QString& translation = QStringLiteral("x"))
    {
        deck.addCard(word, translation, false, QStringLiteral("ru"), DetectedDirection::englishToTarget);
    }
    template <typename Widget> Widget* find(const QString& text) const
    {
        const auto all = windows.window()->findChildren<Widget*>();
        for (Widget* w : all) {
            if (w->text() == text)
                return w;
        }
        return nullptr;
    }
};

} // namespace

class TestReviewDeckWindow : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void aReminderClickAndTolvaneOpenReviewReachTheOneReviewWindowWhichAfterACloseIsMadeAfresh()
    {
        QTemporaryDir records;
        FakePlatform platform;
        FakeClock clock;
        FakeScheduler scheduler(&clock);
        Preferences preferences(*platform.services.preferences);
        AppDelegate app(platform.services, preferences, clock, scheduler, records.path());
        app.applicationDidFinishLaunching();
        app.reviewDeck().addCard(QStringLiteral("a"), QStringLiteral("b"), true, QStringLiteral("ru"),
                                 DetectedDirection::englishToTarget);
        auto* windows = app.findChild<ReviewDeckWindowManager*>();
        QVERIFY(windows && !windows->window());

        const QString cardId = app.reviewDeck().cards().first().id.toString(QUuid::WithoutBraces).toUpper();
        platform.notifications->delegate->didReceive(
            {NotificationResponse::defaultActionIdentifier, QStringLiteral("r"), {{QStringLiteral("cardId"), cardId}}});
        scheduler.runPosted();
        QPointer<ReviewDeckView> opened = windows->window();
        QVERIFY(opened && opened->isVisible());
        QCOMPARE(opened->session().queue().size(), 1);

        QCOMPARE(app.commands().handle({QStringLiteral("open"), QStringLiteral("review")}), QString());
        QCOMPARE(windows->window(), opened.data());

        opened->close();
        QTRY_VERIFY(!opened);
        QCOMPARE(app.commands().handle({QStringLiteral("open"), QStringLiteral("review")}), QString());
        QVERIFY(windows->window() && windows->window()->isVisible());
    }

    void hostileTextsAreShownAsPlainTextCutToTheCardAndTheWindowKeepsItsSize()
    {
        Fixture f;
        const QString hostile = QStringLiteral("<b>bold</b>\u202Etxet\t\n") + QString(10000, u'w');
        f.add(hostile, QStringLiteral("<i>x</i>"));
        f.windows.show();
        ReviewDeckView* view = f.windows.window();
        QVERIFY(QTest::qWaitForWindowExposed(view));
        const QString name = view->card()->accessibleName();
        QVERIFY(name.startsWith(QStringLiteral("Card front: <b>bold</b>\u202Etxet")));
        QCOMPARE(name.size(), QStringLiteral("Card front: ").size() + FlashcardView::longestShownText + 1);
        for (QLabel* label : view->card()->findChildren<QLabel*>())
            QCOMPARE(label->textFormat(), Qt::PlainText);
        QTest::keyClick(view, Qt::Key_Space);
        QCOMPARE(view->card()->accessibleName(), QStringLiteral("Card back: <i>x</i>"));
        QCOMPARE(view->size(), QSize(380, 430));
    }

    void theExportFooterFollowsTheFiltersAndTheDialogWritesOnlyWhenConfirmed()
    {
        Fixture f;
        f.add(QStringLiteral("one"), QStringLiteral("eins"));
        f.windows.show();
        ReviewDeckView* view = f.windows.window();
        view->selectTab(1);
        DeckExportPane* pane = view->exportPane();
        QPushButton* exportButton = f.find<QPushButton>(QStringLiteral("Export 1 card as CSV…"));
        QVERIFY(exportButton);
        QLabel* noMatch = f.find<QLabel>(QStringLiteral("No cards match the current filters."));
        QVERIFY(noMatch && noMatch->isHidden());
        f.find<QCheckBox>(QStringLiteral("New"))->setChecked(false);
        QVERIFY(exportButton->isHidden());
        QVERIFY(!noMatch->isHidden());
        f.find<QCheckBox>(QStringLiteral("New"))->setChecked(true);
        f.find<QRadioButton>(QStringLiteral("Anki – tab-separated text  (.txt)"))->setChecked(true);
        QCOMPARE(exportButton->text(), QStringLiteral("Export 1 card as Anki text…"));

        exportButton->click();
        QPointer<QFileDialog> dialog = pane->saveDialog();
        QVERIFY(dialog);
        QVERIFY(!dialog->isModal());
        QCOMPARE(dialog->nameFilters().size(), 1);
        QVERIFY(dialog->selectedFiles().value(0).endsWith(QStringLiteral("/vantor_cards_anki.txt")));
        dialog->reject();
        QTRY_VERIFY(!dialog);
        QVERIFY(QDir(f.dir.path()).entryList({QStringLiteral("*.txt")}).isEmpty());

        exportButton->click();
        const QString path = f.dir.filePath(QStringLiteral("cards.txt"));
        Q_EMIT pane->saveDialog()->fileSelected(path);
        QFile written(path);
        QVERIFY(written.open(QIODevice::ReadOnly));
        QCOMPARE(written.readAll(), QByteArray("one\teins"));
    }
};

QTEST_MAIN(TestReviewDeckWindow)
#include "tst_ReviewDeckWindow.moc"
