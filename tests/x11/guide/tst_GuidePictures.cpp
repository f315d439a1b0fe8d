// SPDX-License-Identifier: GPL-3.0-or-later
// The guide's window drawn step by step in the light and the dark appearance, saved under
// out/guide/ for looking at, with the checks that need the real fonts of the desktop.
#include "core/hotkeys/HotkeyManager.h"
#include "core/review/NotificationScheduler.h"
#include "core/setup/PermissionManager.h"
#include "core/setup/Preferences.h"
#include "core/support/QtScheduler.h"
#include "core/translation/LiveTranslationService.h"
#include "fakes/FakePlatform.h"
#include "ui/AppearanceApplier.h"
#include "ui/setup/OnboardingGuideView.h"
#include "ui/setup/WelcomeTranslationDemo.h"

#include <QApplication>
#include <QDir>
#include <QLayout>
#include <QPainter>
#include <QStackedWidget>
#include <QTest>

using namespace tolvane;

class TestGuidePictures final : public QObject
{
    Q_OBJECT

    struct Rig
    {
        FakePlatform platform;
        QtScheduler scheduler;
        Preferences preferences{*platform.preferences};
        LiveTranslationService translation{*platform.translationEngine, scheduler};
        NotificationScheduler reminders{*platform.notifications, preferences, scheduler,
                                        [] { return QList<ReviewCard>(); }};
        HotkeyManager hotkeys{preferences, *platform.hotkeys};
        AccessibilityPermissionManager accessibility{*platform.accessibility, scheduler};
        ScreenRecordingPermissionManager screenRecording{*platform.textRecognizer, scheduler};

        Rig() { platform.translationEngine->translations.insert(QStringLiteral("hello"), QStringLiteral("bonjour")); }
        OnboardingGuideView* open()
        {
            auto* view = new OnboardingGuideView(OnboardingGuide::Services{preferences, scheduler, translation,
                                                                           *platform.notifications, reminders,
                                                                           *platform.eventMonitor, hotkeys},
                                                 accessibility, screenRecording);
            view->setAttribute(Qt::WA_DeleteOnClose, false);
            return view;
        }
    };

    QString m_out = QStringLiteral(TOLVANE_SOURCE_DIR "/out/guide");

private Q_SLOTS:
    void initTestCase() { QDir().mkpath(m_out); }

    void everyStepFitsItsWindowInBothAppearances_data()
    {
        QTest::addColumn<QString>("appearance");
        QTest::newRow("light") << QStringLiteral("light");
        QTest::newRow("dark") << QStringLiteral("dark");
    }
    void everyStepFitsItsWindowInBothAppearances()
    {
        QFETCH(QString, appearance);
        AppearanceApplier applier;
        applier.apply(appearance == QLatin1String("dark") ? AppearanceMode::dark : AppearanceMode::light);
        Rig rig;
        rig.platform.accessibility->trusted = false;
        rig.accessibility.refresh();
        std::unique_ptr<OnboardingGuideView> view(rig.open());
        view->show();
        QVERIFY(QTest::qWaitForWindowExposed(view.get()));
        auto* pages = view->findChild<QStackedWidget*>();
        QVERIFY(pages);
        // Each step as the user reaches it, with its states along the way.
        const auto shoot = [&](const QString& name) {
            QCoreApplication::processEvents();
            QWidget* page = pages->currentWidget();
            // Nothing may be cut off at the bottom of a step.
            QVERIFY2(
                page->layout()->minimumSize().height() <= pages->height(),
                qPrintable(QStringLiteral("%1 needs %2 pixels").arg(name).arg(page->layout()->minimumSize().height())));
            view->grab().save(m_out + QStringLiteral("/%1-%2.png").arg(name, appearance));
        };
        OnboardingGuide& guide = view->guide();
        shoot(QStringLiteral("1-welcome"));
        guide.goForward();
        rig.platform.translationEngine->prepareError =
            QStringLiteral("The English → German dictionary is not installed. Run scripts/setup.");
        guide.chooseLanguage(QStringLiteral("de"));
        QTRY_VERIFY(guide.downloadError().has_value());
        shoot(QStringLiteral("2-language-failed"));
        rig.platform.translationEngine->prepareError.clear();
        guide.chooseLanguage(QStringLiteral("fr"));
        QTRY_VERIFY(guide.modelReady());
        shoot(QStringLiteral("2-language"));
        guide.goForward();
        shoot(QStringLiteral("3-hotkey"));
        guide.captureCoordinator().startCapture();
        shoot(QStringLiteral("3-hotkey-capturing"));
        KeyEvent f5;
        f5.keyCode = 96;
        rig.platform.eventMonitor->sendKey(f5);
        QVERIFY(!guide.captureCoordinator().validationMessageText().isEmpty());
        shoot(QStringLiteral("3-hotkey-bare-key"));
        guide.goForward();
        shoot(QStringLiteral("4-reminders"));
        guide.goForward();
        shoot(QStringLiteral("5-summary"));

        // The demonstration caught between two phases.
        std::unique_ptr<OnboardingGuideView> another(rig.open());
        another->show();
        another->demo()->showFrame(DemoFrame::mix(DemoFrame::forPhase(3), DemoFrame::forPhase(4), 0.55));
        another->demo()->grab().save(m_out + QStringLiteral("/demo-mid-animation-%1.png").arg(appearance));
    }

    void demonstrationPlaysOnlyWhileItsStepIsShown()
    {
        Rig rig;
        std::unique_ptr<OnboardingGuideView> view(rig.open());
        view->show();
        QVERIFY(QTest::qWaitForWindowExposed(view.get()));
        WelcomeTranslationDemo* demo = view->demo();
        QVERIFY(demo->isPlaying());
        QTRY_VERIFY_WITH_TIMEOUT(demo->isAnimating(), 2000); // the pointer sets off after 0.65 s
        view->guide().goForward();
        QVERIFY(!demo->isPlaying() && !demo->isAnimating());
        view->guide().goBack();
        QVERIFY(demo->isPlaying());
        view->hide();
        QVERIFY(!demo->isPlaying() && !demo->isAnimating());
    }

    void flagsAreDrawnInColourWhereTheDesktopHasTheFont()
    {
        if (!OnboardingGuideView::canDrawFlags())
            QSKIP("No colour emoji font here (fonts-noto-color-emoji): the rows show language codes");
        QImage image(40, 30, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        QFont emoji(QStringLiteral("Noto Color Emoji"));
        emoji.setPixelSize(18);
        painter.setFont(emoji);
        painter.drawText(image.rect(), Qt::AlignCenter, QStringLiteral("🇫🇷"));
        painter.end();
        // The French flag: blue, white and red, not a monochrome outline.
        bool blue = false, red = false;
        for (int x = 0; x < image.width(); ++x) {
            const QColor c = image.pixelColor(x, 15);
            blue = blue || (c.blue() > 150 && c.red() < 80);
            red = red || (c.red() > 180 && c.blue() < 90);
        }
        QVERIFY(blue && red);
    }
};

QTEST_MAIN(TestGuidePictures)
#include "tst_GuidePictures.moc"
