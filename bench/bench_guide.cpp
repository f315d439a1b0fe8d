// SPDX-License-Identifier: GPL-3.0-or-later
// What the welcome demonstration costs: the share of one core the process uses while the guide's
// window shows its welcome step with the animation playing, and while the window is hidden. Run on a display (for
// example inside scripts/virtual-desktop):
//     bench_guide [SECONDS]
#include "core/hotkeys/HotkeyManager.h"
#include "core/review/NotificationScheduler.h"
#include "core/setup/PermissionManager.h"
#include "core/setup/Preferences.h"
#include "core/support/QtScheduler.h"
#include "core/translation/LiveTranslationService.h"
#include "platform/null/NullPlatform.h"
#include "ui/setup/OnboardingGuideView.h"
#include "ui/setup/WelcomeTranslationDemo.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <QWindow>

#include <cstdio>
#include <ctime>

using namespace tolvane;

namespace {

void runFor(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

double processCpuSeconds()
{
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) / 1e9;
}

// Runs the event loop for the given time; the share of one core used meanwhile, in per cent.
double coreShare(int seconds)
{
    const double cpu = processCpuSeconds();
    QElapsedTimer wall;
    wall.start();
    runFor(seconds * 1000);
    return 100.0 * (processCpuSeconds() - cpu) / (double(wall.nsecsElapsed()) / 1e9);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const int seconds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 10;
    QtScheduler scheduler;
    PlatformServices services = createNullPlatform();
    Preferences preferences(*services.preferences);
    LiveTranslationService translation(*services.translationEngine, scheduler);
    NotificationScheduler reminders(*services.notifications, preferences, scheduler,
                                    [] { return QList<ReviewCard>(); });
    HotkeyManager hotkeys(preferences, *services.hotkeys);
    AccessibilityPermissionManager accessibility(*services.accessibility, scheduler);
    ScreenRecordingPermissionManager screenRecording(*services.textRecognizer, scheduler);
    OnboardingGuideView window(OnboardingGuide::Services{preferences, scheduler, translation, *services.notifications,
                                                         reminders, *services.eventMonitor, hotkeys},
                               accessibility, screenRecording);
    window.setAttribute(Qt::WA_DeleteOnClose, false);
    WelcomeTranslationDemo* demo = window.demo();
    window.show();
    for (int i = 0; i < 50 && !(window.windowHandle() && window.windowHandle()->isExposed()); ++i)
        runFor(100);
    if (!window.windowHandle() || !window.windowHandle()->isExposed()) {
        std::fprintf(stderr, "bench_guide: the window was never shown (is there a display?)\n");
        return 1;
    }
    runFor(500);
    const double shown = coreShare(seconds);
    window.hide();
    runFor(200);
    const double hidden = coreShare(seconds);
    std::printf("platform %s, %d s each\n", qPrintable(QGuiApplication::platformName()), seconds);
    std::printf("demonstration shown:  %.2f %% of one core\n", shown);
    std::printf("window hidden:        %.2f %% of one core (loop %s, animation %s)\n", hidden,
                demo->isPlaying() ? "running" : "stopped", demo->isAnimating() ? "running" : "stopped");
    return 0;
}
