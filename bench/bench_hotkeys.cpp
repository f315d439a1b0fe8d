// SPDX-License-Identifier: GPL-3.0-or-later
// Press-to-callback latency of the global hotkey. Run inside the virtual desktop:
//     scripts/virtual-desktop -- build/dev/bench/bench_hotkeys
// Prints two figures: from the key event reaching Tolvane's event filter to onHotkeyPressed, and
// from an XTest key press sent by another client to onHotkeyPressed (the X server's delivery and
// Qt's wake-up included).
#include "core/hotkeys/HotkeyManager.h"
#include "platform/linux/hotkeys/XcbHotkeyService.h"
#include "platform/null/MemoryPreferenceStore.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QElapsedTimer>

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

using namespace tolvane;
using Clock = std::chrono::steady_clock;

namespace {

void printFigures(const char* what, std::vector<double> microseconds)
{
    std::sort(microseconds.begin(), microseconds.end());
    const auto at = [&](double q) { return microseconds[std::size_t(q * double(microseconds.size() - 1))]; };
    std::printf("%-50s n=%zu  median %.1f µs  p99 %.1f µs  max %.1f µs\n", what, microseconds.size(), at(0.5), at(0.99),
                microseconds.back());
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "xcb");
    QApplication app(argc, argv);
    auto service = createXcbHotkeyService();
    if (!service) {
        std::fprintf(stderr, "bench_hotkeys: needs an X11 display (run it in scripts/virtual-desktop)\n");
        return 1;
    }
    MemoryPreferenceStore store;
    Preferences preferences(store);
    HotkeyManager manager(preferences, *service);
    Clock::time_point sent;
    Clock::time_point pressedAt;
    bool pressed = false;
    bool released = false;
    manager.onHotkeyPressed = [&] {
        pressedAt = Clock::now();
        pressed = true;
    };
    manager.onHotkeyReleased = [&] { released = true; };
    constexpr quint32 keyK = 40, controlOption = 4096 | 2048;
    if (!manager.updateHotkey(keyK, controlOption)) {
        std::fprintf(stderr, "bench_hotkeys: %s\n", qPrintable(manager.registrationErrorText()));
        return 1;
    }

    Display* display = XOpenDisplay(nullptr);
    if (!display)
        return 1;
    const auto k = xcb_keycode_t(XKeysymToKeycode(display, XK_k));
    const auto ctrl = XKeysymToKeycode(display, XK_Control_L);
    const auto alt = XKeysymToKeycode(display, XK_Alt_L);

    // 1. Event filter to callback: the event as the display connection hands it to Qt.
    auto* x11 = app.nativeInterface<QNativeInterface::QX11Application>();
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(x11->connection())).data->root;
    QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
    std::vector<double> filtered;
    for (int i = 0; i < 20000; ++i) {
        xcb_key_press_event_t event{};
        event.response_type = XCB_KEY_PRESS;
        event.detail = k;
        event.root = root;
        event.event = root;
        event.state = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
        qintptr result = 0;
        pressed = false;
        sent = Clock::now();
        dispatcher->filterNativeEvent(QByteArrayLiteral("xcb_generic_event_t"), &event, &result);
        if (!pressed)
            return 2;
        filtered.push_back(std::chrono::duration<double, std::micro>(pressedAt - sent).count());
        event.response_type = XCB_KEY_RELEASE;
        dispatcher->filterNativeEvent(QByteArrayLiteral("xcb_generic_event_t"), &event, &result);
    }
    printFigures("event filter → onHotkeyPressed", filtered);

    // 2. Another client presses the keys; the X server delivers the grabbed key to Tolvane.
    XTestFakeKeyEvent(display, ctrl, True, CurrentTime);
    XTestFakeKeyEvent(display, alt, True, CurrentTime);
    XSync(display, False);
    std::vector<double> delivered;
    for (int i = 0; i < 500; ++i) {
        pressed = released = false;
        sent = Clock::now();
        XTestFakeKeyEvent(display, k, True, CurrentTime);
        XFlush(display);
        QElapsedTimer guard;
        guard.start();
        while (!pressed && guard.elapsed() < 2000)
            app.processEvents(QEventLoop::WaitForMoreEvents, 50);
        if (!pressed)
            return 3;
        delivered.push_back(std::chrono::duration<double, std::micro>(pressedAt - sent).count());
        XTestFakeKeyEvent(display, k, False, CurrentTime);
        XFlush(display);
        while (!released && guard.elapsed() < 2000)
            app.processEvents(QEventLoop::WaitForMoreEvents, 50);
    }
    XTestFakeKeyEvent(display, alt, False, CurrentTime);
    XTestFakeKeyEvent(display, ctrl, False, CurrentTime);
    XSync(display, False);
    XCloseDisplay(display);
    printFigures("XTest press by another client → onHotkeyPressed", delivered);
    return 0;
}
