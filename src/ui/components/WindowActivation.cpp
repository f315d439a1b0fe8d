// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/components/WindowActivation.h"

#include "core/support/Logging.h"

#include <QGuiApplication>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <xcb/xcb.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <thread>

TOLVANE_DEFINE_LOG(lcWindowActivation, "WindowActivation")

namespace tolvane {

namespace {

struct FreeDeleter
{
    void operator()(void* p) const { std::free(p); }
};

struct ConnectionDeleter
{
    void operator()(xcb_connection_t* c) const { xcb_disconnect(c); }
};

// A connection of our own: Qt's reads its events on another thread, and the server time comes
// back as an event.
struct ActivationConnection
{
    std::unique_ptr<xcb_connection_t, ConnectionDeleter> connection;
    xcb_window_t root = XCB_NONE;
    xcb_window_t clock = XCB_NONE; // an unmapped window whose property changes tell the time
    xcb_atom_t activeWindow = XCB_NONE;
    xcb_atom_t timeProperty = XCB_NONE;
};

xcb_atom_t internAtom(xcb_connection_t* c, const char* name)
{
    const std::unique_ptr<xcb_intern_atom_reply_t, FreeDeleter> reply(
        xcb_intern_atom_reply(c, xcb_intern_atom(c, 0, uint16_t(std::strlen(name)), name), nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_NONE);
}

ActivationConnection* activationConnection()
{
    static std::unique_ptr<ActivationConnection> shared = []() -> std::unique_ptr<ActivationConnection> {
        int screenNumber = 0;
        std::unique_ptr<xcb_connection_t, ConnectionDeleter> c(xcb_connect(nullptr, &screenNumber));
        if (!c || xcb_connection_has_error(c.get()))
            return nullptr;
        xcb_screen_iterator_t it = xcb_setup_roots_iterator(xcb_get_setup(c.get()));
        for (int i = 0; i < screenNumber && it.rem; ++i)
            xcb_screen_next(&it);
        if (!it.rem)
            return nullptr;
        auto result = std::make_unique<ActivationConnection>();
        result->root = it.data->root;
        result->clock = xcb_generate_id(c.get());
        const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(c.get(), XCB_COPY_FROM_PARENT, result->clock, result->root, -1, -1, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
        result->activeWindow = internAtom(c.get(), "_NET_ACTIVE_WINDOW");
        result->timeProperty = internAtom(c.get(), "_TOLVANE_TIMESTAMP");
        result->connection = std::move(c);
        return result;
    }();
    return shared.get();
}

// The X server's current time: append nothing to a property and read the time of the change.
xcb_timestamp_t serverTime(ActivationConnection& a)
{
    xcb_connection_t* c = a.connection.get();
    xcb_change_property(c, XCB_PROP_MODE_APPEND, a.clock, a.timeProperty, XCB_ATOM_STRING, 8, 0, nullptr);
    xcb_flush(c);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(500);
    while (std::chrono::steady_clock::now() < deadline) {
        std::unique_ptr<xcb_generic_event_t, FreeDeleter> event(xcb_poll_for_event(c));
        if (!event) {
            if (xcb_connection_has_error(c))
                break;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            continue;
        }
        if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY) {
            const auto* notify = reinterpret_cast<xcb_property_notify_event_t*>(event.get());
            if (notify->window == a.clock && notify->atom == a.timeProperty)
                return notify->time;
        }
    }
    return XCB_CURRENT_TIME;
}

void askWindowManagerToActivate(QWidget* window)
{
    // Our map request must reach the server before the activation request on the other connection.
    if (auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>())
        xcb_flush(x11->connection());
    ActivationConnection* a = activationConnection();
    if (!a || a->activeWindow == XCB_NONE) {
        qCWarning(lcWindowActivation) << "No X connection to ask for the window's activation";
        return;
    }
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = xcb_window_t(window->winId());
    message.type = a->activeWindow;
    message.data.data32[0] = 2; // source indication: a pager, whose requests are always honoured
    message.data.data32[1] = serverTime(*a);
    message.data.data32[2] = XCB_NONE;
    xcb_send_event(a->connection.get(), 0, a->root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(a->connection.get());
}

} // namespace

void bringToFront(QWidget* window)
{
    if (!window)
        return;
    window = window->window();
    const bool wasShown = window->isVisible();
    if (window->isMinimized())
        window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->show();
    window->raise();
    window->activateWindow();
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        return;
    askWindowManagerToActivate(window);
    if (!wasShown) {
        // A window manager may still be framing a window that was mapped just now; ask again once
        // it has had the time to.
        QTimer::singleShot(200, window, [guard = QPointer<QWidget>(window)] {
            if (guard && guard->isVisible() && !guard->isActiveWindow())
                askWindowManagerToActivate(guard);
        });
    }
}

} // namespace tolvane
