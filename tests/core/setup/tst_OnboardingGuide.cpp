// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/setup/OnboardingGuide.h"

#include "core/hotkeys/HotkeyManager.h"
#include "core/review/NotificationScheduler.h"
#include "core/setup/OnboardingDemoTimeline.h"
#include "core/setup/Preferences.h"
#include "core/translation/LiveTranslationService.h"
#include "fakes/FakePlatform.h"
#include "fakes/FakeScheduler.h"

#include <QSignalSpy>
#include <QTest>

#include <deque>

using namespace tolvane;

namespace {

ReviewCard oneCard()
{
    ReviewCard card;
    card.id = QUuid::createUuid();
    card.sourceText = QStringLiteral("house");
    card.translation = QStringLiteral("maison");
    return card;
}

// The guide's surroundings: a translation service whose engine work waits until the test lets
// it run, a reminder scheduler over a one-card deck, and the real hotkey manager over fakes.
struct GuideRig
{
    FakePlatform platform;
    FakeScheduler scheduler;
    Preferences preferences{*platform.preferences};
    std::deque<std::function<void()>> jobs;
    LiveTranslationService translation{*platform.translationEngine, scheduler,
                                       [this](std::function<void()> job) { jobs.push_back(std::move(job)); }};
    QList<ReviewCard> deck{oneCard()};
    NotificationScheduler reminders{*platform.notifications, preferences, scheduler, [this] { return deck; }};
    HotkeyManager hotkeys{preferences, *platform.hotkeys};

    GuideRig() { platform.translationEngine->translations.insert(QStringLiteral("hello"), QStringLiteral("bonjour")); }

    std::unique_ptr<OnboardingGuide> openGuide()
    {
        return std::make_unique<OnboardingGuide>(OnboardingGuide::Services{
            preferences, scheduler, translation, *platform.notifications, reminders, *platform.eventMonitor, hotkeys});
    }
    void settle()
    {
        while (!jobs.empty() || scheduler.postedCount() > 0) {
            while (!jobs.empty()) {
                auto job = std::move(jobs.front());
                jobs.pop_front();
                job();
            }
            scheduler.runPosted();
        }
    }
};

void goTo(OnboardingGuide& guide, int step)
{
    while (guide.currentStep() < step)
        guide.goForward();
}

} // namespace

class TestOnboardingGuide final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void languageStepWaitsForTheLastPickAndIgnoresPicksWhilePreparing()
    {
        GuideRig rig;
        auto guide = rig.openGuide();
        QVERIFY(guide->canContinue());
        guide->goForward();
        QCOMPARE(guide->currentStep(), int(OnboardingGuide::language));
        QVERIFY(!guide->canContinue());
        guide->goForward(); // refused
        QCOMPARE(guide->currentStep(), int(OnboardingGuide::language));

        guide->chooseLanguage(QStringLiteral("fr"));
        QVERIFY(guide->isDownloadingModel() && guide->hasSelectedLanguage() && !guide->canContinue());
        QCOMPARE(rig.preferences.targetLanguage(), QStringLiteral("fr"));
        guide->chooseLanguage(QStringLiteral("de")); // ignored while French is prepared
        QCOMPARE(rig.preferences.targetLanguage(), QStringLiteral("fr"));
        QCOMPARE(guide->downloadTaskId(), 1);

        rig.settle();
        QVERIFY(guide->modelReady() && !guide->isDownloadingModel() && !guide->downloadError());
        QCOMPARE(rig.platform.translationEngine->prepared.last(),
                 qMakePair(QStringLiteral("en"), QStringLiteral("fr")));
        QCOMPARE(rig.platform.translationEngine->translated.last(), QStringLiteral("hello"));
        QVERIFY(guide->canContinue());

        // A new pick takes the readiness away until its own preparation ends.
        guide->chooseLanguage(QStringLiteral("es"));
        QVERIFY(!guide->modelReady() && !guide->canContinue());
        rig.settle();
        QVERIFY(guide->canContinue());
        guide->goForward();
        QCOMPARE(guide->currentStep(), int(OnboardingGuide::hotkey));
    }

    void failedPreparationShowsTheErrorAndAPickRetries()
    {
        GuideRig rig;
        auto guide = rig.openGuide();
        goTo(*guide, OnboardingGuide::language);
        rig.platform.translationEngine->prepareError = QStringLiteral("The English → French dictionary is damaged.");
        guide->chooseLanguage(QStringLiteral("fr"));
        rig.settle();
        QCOMPARE(guide->downloadError().value_or(QString()),
                 QStringLiteral("The English → French dictionary is damaged."));
        QVERIFY(!guide->modelReady() && !guide->isDownloadingModel() && !guide->canContinue());

        rig.platform.translationEngine->prepareError.clear();
        guide->chooseLanguage(QStringLiteral("fr"));
        QVERIFY(!guide->downloadError());
        rig.settle();
        QVERIFY(guide->modelReady());
        QCOMPARE(guide->downloadTaskId(), 2);
    }

    void closingMidPreparationLeavesTheNextOpeningFresh()
    {
        GuideRig rig;
        auto guide = rig.openGuide();
        goTo(*guide, OnboardingGuide::language);
        guide->chooseLanguage(QStringLiteral("ja"));
        guide.reset(); // the window closed while the model was prepared
        rig.settle();  // the late answer finds no guide

        auto reopened = rig.openGuide();
        QCOMPARE(reopened->currentStep(), int(OnboardingGuide::welcome));
        QVERIFY(!reopened->modelReady() && !reopened->hasSelectedLanguage() && !reopened->isDownloadingModel());
        goTo(*reopened, OnboardingGuide::language);
        QVERIFY(!reopened->canContinue()); // the stored language still needs a tap
        QCOMPARE(rig.preferences.targetLanguage(), QStringLiteral("ja"));
    }

    void backStopsTheCaptureAndEveryReminderContinueAsksForNotifications()
    {
        GuideRig rig;
        auto guide = rig.openGuide();
        goTo(*guide, OnboardingGuide::language);
        guide->chooseLanguage(QStringLiteral("fr"));
        rig.settle();
        guide->goForward();
        guide->captureCoordinator().startCapture();
        QCOMPARE(rig.platform.eventMonitor->monitorCount(), 1);
        guide->goBack();
        QCOMPARE(guide->currentStep(), int(OnboardingGuide::language));
        QVERIFY(!guide->captureCoordinator().isCapturing());
        QCOMPARE(rig.platform.eventMonitor->monitorCount(), 0);

        goTo(*guide, OnboardingGuide::reminders);
        QCOMPARE(rig.platform.notifications->authorizationRequests, 0);
        guide->goForward();
        rig.settle();
        QCOMPARE(rig.platform.notifications->authorizationRequests, 1);
        QVERIFY(rig.preferences.notificationPermissionGranted());
        QVERIFY(!guide->showsBack() && !guide->canContinue());

        // No server that can show the answers: not granted, and the guide goes on all the same.
        rig.platform.notifications->authorization = NotificationAuthorization::denied;
        guide->goBack(); // nothing to go back to from the summary
        QCOMPARE(guide->currentStep(), int(OnboardingGuide::summary));
        auto again = rig.openGuide();
        goTo(*again, OnboardingGuide::language);
        again->chooseLanguage(QStringLiteral("fr"));
        rig.settle();
        goTo(*again, OnboardingGuide::summary);
        rig.settle();
        QCOMPARE(again->currentStep(), int(OnboardingGuide::summary));
        QCOMPARE(rig.platform.notifications->authorizationRequests, 2);
        QVERIFY(!rig.preferences.notificationPermissionGranted());
    }

    void reminderPickerFollowsTheStoredInterval_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<int>("index");
        QTest::newRow("absent") << QVariant() << 4;
        QTest::newRow("one hour") << QVariant(1.0) << 2;
        QTest::newRow("quarter hour") << QVariant(0.25) << 0;
        QTest::newRow("zero counts as default") << QVariant(0.0) << 4;
        QTest::newRow("not a choice") << QVariant(3.0) << -1;
    }
    void reminderPickerFollowsTheStoredInterval()
    {
        QFETCH(QVariant, stored);
        QFETCH(int, index);
        GuideRig rig;
        if (stored.isValid())
            rig.preferences.setDouble(PreferenceKey::notificationIntervalHours, stored.toDouble());
        auto guide = rig.openGuide();
        QCOMPARE(guide->reminderFrequencyIndex(), index);
        guide->setReminderFrequencyIndex(6);
        QCOMPARE(rig.preferences.notificationIntervalHours(), 24.0);
    }

    void demoLoopsThroughThePhasesAndStopsWithoutTimers()
    {
        FakeScheduler scheduler;
        OnboardingDemoTimeline timeline(scheduler);
        QList<int> phases;
        QList<qint64> at;
        connect(&timeline, &OnboardingDemoTimeline::phaseChanged, this, [&](int phase, const DemoAnimation&) {
            phases.append(phase);
            at.append(scheduler.elapsed().count());
        });
        timeline.start();
        scheduler.advance(Duration(7300 + 650 + 1)); // one loop and into the second
        QCOMPARE(phases, (QList<int>{0, 1, 2, 3, 4, 5, 6, 0, 1}));
        QCOMPARE(at, (QList<qint64>{0, 650, 1550, 3150, 3500, 4650, 5300, 7300, 7950}));
        timeline.stop();
        QCOMPARE(scheduler.activeTimerCount(), 0);
        scheduler.advance(Duration(10000));
        QCOMPARE(phases.size(), 9);
    }

    void demoCurvesStartAtZeroEndAtOneAndTheSpringsOvershootALittle()
    {
        for (const DemoStep& step : OnboardingDemoTimeline::steps()) {
            const DemoAnimation& a = step.animation;
            QCOMPARE(a.progress(a.totalSeconds()), 1.0);
            if (a.curve == DemoAnimation::Curve::none)
                continue;
            QCOMPARE(a.progress(0), 0.0);
            double peak = 0;
            for (double s = 0; s < a.totalSeconds(); s += 0.005)
                peak = std::max(peak, a.progress(s));
            if (a.curve == DemoAnimation::Curve::spring) {
                QVERIFY2(peak > 1.0 && peak < 1.02, qPrintable(QString::number(peak)));
                QVERIFY(a.totalSeconds() < step.waitSeconds);
            } else {
                QVERIFY(peak <= 1.0);
                QCOMPARE(a.totalSeconds(), a.durationSeconds);
            }
        }
        QVERIFY(qAbs(easeInOut(0.5) - 0.5) < 1e-6);
        QVERIFY(easeOut(0.5) > 0.6);
    }
};

QTEST_GUILESS_MAIN(TestOnboardingGuide)
#include "tst_OnboardingGuide.moc"
