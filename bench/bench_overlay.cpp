// SPDX-License-Identifier: GPL-3.0-or-later
// How quickly the word card follows a look-up. Run inside the virtual desktop:
//     scripts/virtual-desktop -- build/dev/bench/bench_overlay [--passes N]
// Prints two figures, each until the X server has the painted card (a round trip after the paint):
// a state update on a visible card (unmatched → translating → liveLookup with an example, as one
// look-up goes), and the show of the prepared, hidden card until it is mapped, exposed and painted;
// each also as this thread's processor time. TOLVANE_BENCH_STEPS=1 splits the updates by state.
#include "core/overlay/HoverOverlayView.h"
#include "fakes/FakePlatform.h"
#include "platform/linux/QtScreenService.h"
#include "ui/overlay/HoverOverlayWindow.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>
#include <QWindow>

#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <vector>

using namespace tolvane;
using Clock = std::chrono::steady_clock;
using State = HoverOverlayView::State;

namespace {

class PaintCounter final : public QObject
{
public:
    int paints = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            ++paints;
        return false;
    }
};

// Waits until the X server has handled everything sent so far.
void syncWithServer()
{
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11)
        return;
    xcb_connection_t* c = x11->connection();
    std::free(xcb_get_input_focus_reply(c, xcb_get_input_focus(c), nullptr));
}

void printFigures(const char* what, std::vector<double> milliseconds, const char* target)
{
    std::sort(milliseconds.begin(), milliseconds.end());
    const auto at = [&](double q) { return milliseconds[std::size_t(q * double(milliseconds.size() - 1))]; };
    std::printf("%-44s n=%zu  p50 %.2f ms  p95 %.2f ms  max %.2f ms  (target %s)\n", what, milliseconds.size(), at(0.5),
                at(0.95), milliseconds.back(), target);
}

double since(Clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// This thread's processor time in milliseconds: what the card costs Tolvane itself, without the
// waits for a processor that a loaded machine adds to the wall-clock figures.
double threadMilliseconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    if (QGuiApplication::platformName() != QLatin1String("xcb")) {
        std::fprintf(stderr, "[bench_overlay] Needs an X server: run inside scripts/virtual-desktop\n");
        return 1;
    }
    int passes = 200;
    const QStringList arguments = QCoreApplication::arguments();
    if (const qsizetype i = arguments.indexOf(QStringLiteral("--passes")); i > 0 && i + 1 < arguments.size())
        passes = std::max(10, arguments.at(i + 1).toInt());

    QtScreenService screens;
    FakeTransliterator transliterator;
    HoverOverlayWindow window(screens, transliterator);
    window.prepare();
    PaintCounter counter;
    window.widget()->installEventFilter(&counter);

    HoverOverlayView unmatched;
    unmatched.state = State::unmatched(QStringLiteral("serendipity"));
    unmatched.directionLabel = QStringLiteral("EN → RU");
    HoverOverlayView translating = unmatched;
    translating.state = State::translating(QStringLiteral("serendipity"));
    HoverOverlayView found = unmatched;
    found.state = State::liveLookup(QStringLiteral("serendipity"), QStringLiteral("счастливая случайность"));
    found.partOfSpeech = QStringLiteral("n.");
    found.onSpeak = [] {};
    found.exampleSentence = QStringLiteral("It was pure serendipity that we met on the train that morning.\n"
                                           "Это была чистая случайность, что мы встретились в поезде тем утром.");
    const HoverOverlayView steps[] = {unmatched, translating, found};

    const auto waitForPaint = [&](int before) {
        while (counter.paints == before || !window.widget()->windowHandle()->isExposed())
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 50);
        syncWithServer();
    };

    window.show(QPointF(400, 500));
    waitForPaint(0);

    std::vector<double> updates;
    std::vector<double> updateProcessor;
    std::vector<double> byStep[3];
    for (int i = 0; i < passes * 3; ++i) {
        const int before = counter.paints;
        const auto start = Clock::now();
        const double processorStart = threadMilliseconds();
        window.update(steps[i % 3]);
        waitForPaint(before);
        updates.push_back(since(start));
        updateProcessor.push_back(threadMilliseconds() - processorStart);
        byStep[i % 3].push_back(updates.back());
    }

    std::vector<double> shows;
    std::vector<double> showProcessor;
    for (int i = 0; i < passes; ++i) {
        window.hide();
        syncWithServer();
        QCoreApplication::processEvents();
        const int before = counter.paints;
        const auto start = Clock::now();
        const double processorStart = threadMilliseconds();
        window.show(QPointF(300 + (i % 7) * 40, 500));
        waitForPaint(before);
        shows.push_back(since(start));
        showProcessor.push_back(threadMilliseconds() - processorStart);
    }

    std::printf("[bench_overlay] window manager: %s\n", qgetenv("TOLVANE_VIRTUAL_DESKTOP_WM").constData());
    printFigures("state update on a visible card, painted", updates, "p50 ≤ 2 ms, p95 ≤ 4 ms");
    printFigures("  processor time of Tolvane's thread", updateProcessor, "-");
    if (qEnvironmentVariableIsSet("TOLVANE_BENCH_STEPS")) {
        printFigures("  to unmatched", byStep[0], "-");
        printFigures("  to translating", byStep[1], "-");
        printFigures("  to liveLookup with example", byStep[2], "-");
    }
    printFigures("show of the prepared card, mapped and painted", shows, "p95 ≤ 8 ms");
    printFigures("  processor time of Tolvane's thread", showProcessor, "-");
    return 0;
}
