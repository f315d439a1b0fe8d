// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/capture/X11ClientWindow.h"

#include "platform/linux/XcbSupport.h"

#include <QDeadlineTimer>

#include <poll.h>

namespace tolvane::x11 {

namespace {

// A connection of our own: for the command line, where Qt has none, and for reading a selection,
// whose answer arrives as an event Qt's event loop would otherwise take.
class OwnConnection
{
public:
    OwnConnection()
        : m_connection(xcb_connect(nullptr, nullptr))
    {
        if (xcb_connection_has_error(m_connection)) {
            xcb_disconnect(m_connection);
            m_connection = nullptr;
        }
    }
    ~OwnConnection()
    {
        if (m_connection)
            xcb_disconnect(m_connection);
    }
    OwnConnection(const OwnConnection&) = delete;
    OwnConnection& operator=(const OwnConnection&) = delete;
    xcb_connection_t* get() const { return m_connection; }

private:
    xcb_connection_t* m_connection;
};

xcb_connection_t* ownConnection()
{
    static OwnConnection own;
    return own.get();
}

xcb_connection_t* anyConnection()
{
    if (xcb_connection_t* c = connection())
        return c;
    return ownConnection();
}

QString textProperty(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property, xcb_atom_t type)
{
    Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(c, xcb_get_property(c, 0, window, property, type, 0, 1024), nullptr));
    if (!reply || reply->type == XCB_ATOM_NONE)
        return {};
    const auto* data = static_cast<const char*>(xcb_get_property_value(reply.get()));
    const int length = xcb_get_property_value_length(reply.get());
    return type == XCB_ATOM_STRING ? QString::fromLatin1(data, length) : QString::fromUtf8(data, length);
}

std::optional<ClientWindow> describe(xcb_connection_t* c, xcb_window_t root, xcb_window_t client)
{
    Reply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(c, xcb_get_geometry(c, client), nullptr));
    Reply<xcb_translate_coordinates_reply_t> origin(
        xcb_translate_coordinates_reply(c, xcb_translate_coordinates(c, client, root, 0, 0), nullptr));
    if (!geometry || !origin || geometry->width == 0 || geometry->height == 0)
        return std::nullopt;
    ClientWindow found;
    found.window = client;
    found.rect = QRect(origin->dst_x, origin->dst_y, geometry->width, geometry->height);
    if (const xcb_atom_t pidAtom = atom(c, "_NET_WM_PID", true); pidAtom != XCB_ATOM_NONE) {
        if (auto pid = cardinalProperty(c, client, pidAtom, XCB_ATOM_CARDINAL))
            found.pid = qint64(*pid);
    }
    found.title = textProperty(c, client, atom(c, "_NET_WM_NAME"), atom(c, "UTF8_STRING"));
    if (found.title.isEmpty())
        found.title = textProperty(c, client, XCB_ATOM_WM_NAME, XCB_ATOM_STRING);
    // WM_CLASS is "instance\0class\0"; the class names the application.
    const QStringList classParts = textProperty(c, client, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING).split(QChar(0));
    found.windowClass = classParts.size() > 1 ? classParts.at(1) : classParts.value(0);
    return found;
}

// The X client that created a window: resource ids carry their connection's base in the bits
// outside the resource mask, so two windows made by one application share it.
quint32 clientBase(xcb_connection_t* c, quint32 window)
{
    return window & ~xcb_get_setup(c)->resource_id_mask;
}

} // namespace

std::optional<ClientWindow> clientWindowAt(int rootX, int rootY)
{
    xcb_connection_t* c = anyConnection();
    if (!c)
        return std::nullopt;
    const xcb_window_t root = rootWindow(c);
    const xcb_window_t under = topLevelAt(c, root, rootX, rootY);
    if (under == XCB_WINDOW_NONE)
        return std::nullopt;
    // The client is the window inside the frame that says what it is: it names its process, or,
    // for toolkits that do not, carries WM_STATE (set by the window manager on every client).
    const xcb_atom_t pidAtom = atom(c, "_NET_WM_PID", true);
    const xcb_atom_t stateAtom = atom(c, "WM_STATE", true);
    const auto client = searchTree(c, under, 2, [&](xcb_window_t w) -> std::optional<xcb_window_t> {
        if (pidAtom != XCB_ATOM_NONE && cardinalProperty(c, w, pidAtom, XCB_ATOM_CARDINAL))
            return w;
        if (stateAtom != XCB_ATOM_NONE && cardinalProperty(c, w, stateAtom, stateAtom))
            return w;
        return std::nullopt;
    });
    return describe(c, root, client.value_or(under));
}

std::optional<ClientWindow> clientWindow(quint32 window)
{
    xcb_connection_t* c = anyConnection();
    if (!c || window == XCB_WINDOW_NONE)
        return std::nullopt;
    return describe(c, rootWindow(c), window);
}

std::optional<ClientWindow> activeClientWindow()
{
    xcb_connection_t* c = anyConnection();
    if (!c)
        return std::nullopt;
    const xcb_window_t root = rootWindow(c);
    const auto active = cardinalProperty(c, root, atom(c, "_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW);
    if (!active || *active == XCB_WINDOW_NONE)
        return std::nullopt;
    return describe(c, root, *active);
}

std::optional<QString> primarySelectionOwnedBy(quint32 client, int timeoutMs)
{
    xcb_connection_t* c = ownConnection();
    if (!c)
        return std::nullopt;
    Reply<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(c, xcb_get_selection_owner(c, XCB_ATOM_PRIMARY), nullptr));
    if (!owner || owner->owner == XCB_WINDOW_NONE || clientBase(c, owner->owner) != clientBase(c, client))
        return std::nullopt;

    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(c)).data;
    const xcb_window_t requestor = xcb_generate_id(c);
    xcb_create_window(c, XCB_COPY_FROM_PARENT, requestor, screen->root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    const xcb_atom_t utf8 = atom(c, "UTF8_STRING");
    const xcb_atom_t property = atom(c, "TOLVANE_SELECTION");
    xcb_convert_selection(c, requestor, XCB_ATOM_PRIMARY, utf8, property, XCB_CURRENT_TIME);
    xcb_flush(c);

    std::optional<QString> text;
    bool answered = false;
    const QDeadlineTimer deadline(timeoutMs);
    pollfd descriptor{xcb_get_file_descriptor(c), POLLIN, 0};
    while (!answered && !deadline.hasExpired() && !xcb_connection_has_error(c)) {
        std::unique_ptr<xcb_generic_event_t, FreeDeleter> event(xcb_poll_for_event(c));
        if (!event) {
            ::poll(&descriptor, 1, int(qMax<qint64>(1, deadline.remainingTime())));
            continue;
        }
        if ((event->response_type & 0x7f) != XCB_SELECTION_NOTIFY)
            continue;
        const auto* notify = reinterpret_cast<const xcb_selection_notify_event_t*>(event.get());
        if (notify->requestor != requestor)
            continue;
        answered = true;
        if (notify->property == XCB_ATOM_NONE)
            break;
        Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
            c, xcb_get_property(c, 1, requestor, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 1 << 20), nullptr));
        // INCR (a selection sent in pieces) is larger than anyone selects to look up.
        if (reply && reply->type == utf8)
            text = QString::fromUtf8(static_cast<const char*>(xcb_get_property_value(reply.get())),
                                     xcb_get_property_value_length(reply.get()));
    }
    xcb_destroy_window(c, requestor);
    xcb_flush(c);
    return text;
}

std::optional<QPoint> pointerPosition()
{
    xcb_connection_t* c = anyConnection();
    if (!c)
        return std::nullopt;
    Reply<xcb_query_pointer_reply_t> reply(xcb_query_pointer_reply(c, xcb_query_pointer(c, rootWindow(c)), nullptr));
    if (!reply)
        return std::nullopt;
    return QPoint(reply->root_x, reply->root_y);
}

QImage grabRoot(const QRect& rect)
{
    xcb_connection_t* c = anyConnection();
    if (!c || rect.isEmpty())
        return {};
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(c)).data;
    const QRect onScreen = rect.intersected(QRect(0, 0, screen->width_in_pixels, screen->height_in_pixels));
    if (onScreen.isEmpty() || screen->root_depth < 24)
        return {};
    Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(
        c,
        xcb_get_image(c, XCB_IMAGE_FORMAT_Z_PIXMAP, screen->root, int16_t(onScreen.x()), int16_t(onScreen.y()),
                      uint16_t(onScreen.width()), uint16_t(onScreen.height()), ~0u),
        nullptr));
    if (!reply || xcb_get_image_data_length(reply.get()) < onScreen.width() * onScreen.height() * 4)
        return {};
    QImage image(rect.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    const QImage part(xcb_get_image_data(reply.get()), onScreen.width(), onScreen.height(), onScreen.width() * 4,
                      QImage::Format_RGB32);
    for (int y = 0; y < part.height(); ++y)
        std::memcpy(image.scanLine(y + onScreen.y() - rect.y()) + 4 * (onScreen.x() - rect.x()), part.constScanLine(y),
                    size_t(part.width()) * 4);
    return image;
}

} // namespace tolvane::x11
