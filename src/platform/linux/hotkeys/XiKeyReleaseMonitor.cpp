// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/hotkeys/XiKeyReleaseMonitor.h"

#include "core/hotkeys/CarbonModifiers.h"
#include "core/hotkeys/HotkeyKeyTable.h"
#include "core/support/Logging.h"
#include "platform/linux/XcbSupport.h"

#include <QSocketNotifier>

#include <xcb/xcb_keysyms.h>
#include <xcb/xinput.h>

TOLVANE_DEFINE_LOG(lcKeyRelease, "XiKeyReleaseMonitor")

namespace tolvane {

struct XiKeyReleaseMonitor::Display
{
    struct ConnectionDeleter
    {
        void operator()(xcb_connection_t* c) const { xcb_disconnect(c); }
    };
    struct SymbolsDeleter
    {
        void operator()(xcb_key_symbols_t* s) const { xcb_key_symbols_free(s); }
    };
    std::unique_ptr<xcb_connection_t, ConnectionDeleter> connection;
    std::unique_ptr<xcb_key_symbols_t, SymbolsDeleter> symbols;
    uint8_t opcode = 0;
    xcb_window_t root = XCB_WINDOW_NONE;
};

XiKeyReleaseMonitor::XiKeyReleaseMonitor() = default;

XiKeyReleaseMonitor::~XiKeyReleaseMonitor() = default;

bool XiKeyReleaseMonitor::open()
{
    if (m_display)
        return true;
    if (m_unavailable)
        return false;
    auto display = std::make_unique<Display>();
    display->connection.reset(xcb_connect(nullptr, nullptr));
    const auto unavailable = [this](const char* why) {
        qCInfo(lcKeyRelease) << why << "- a look-up ends with the hotkey's own release only";
        m_unavailable = true;
        return false;
    };
    if (xcb_connection_has_error(display->connection.get()))
        return unavailable("No connection to the display");
    const xcb_query_extension_reply_t* xinput = xcb_get_extension_data(display->connection.get(), &xcb_input_id);
    if (!xinput || !xinput->present)
        return unavailable("The display has no XInput extension");
    x11::Reply<xcb_input_xi_query_version_reply_t> version(xcb_input_xi_query_version_reply(
        display->connection.get(), xcb_input_xi_query_version(display->connection.get(), 2, 2), nullptr));
    if (!version || version->major_version < 2 || (version->major_version == 2 && version->minor_version < 2))
        return unavailable("The display's XInput is older than 2.2");
    display->opcode = xinput->major_opcode;
    display->root = x11::rootWindow(display->connection.get());
    display->symbols.reset(xcb_key_symbols_alloc(display->connection.get()));
    m_display = std::move(display);
    m_notifier =
        std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_display->connection.get()), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &XiKeyReleaseMonitor::readEvents);
    return true;
}

void XiKeyReleaseMonitor::select(bool watching)
{
    struct
    {
        xcb_input_event_mask_t header;
        uint32_t mask;
    } selection{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, watching ? uint32_t(XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE) : 0u};
    xcb_input_xi_select_events(m_display->connection.get(), m_display->root, 1, &selection.header);
    xcb_flush(m_display->connection.get());
}

KeyReleaseMonitor::Token XiKeyReleaseMonitor::addMonitor(Handler handler)
{
    if (!open())
        return 0;
    if (m_handlers.isEmpty())
        select(true);
    m_handlers.insert(++m_next, std::move(handler));
    return m_next;
}

void XiKeyReleaseMonitor::removeMonitor(Token token)
{
    if (!m_handlers.remove(token) || !m_handlers.isEmpty() || !m_display)
        return;
    select(false);
}

void XiKeyReleaseMonitor::readEvents()
{
    while (m_display) {
        x11::Reply<xcb_generic_event_t> event(xcb_poll_for_event(m_display->connection.get()));
        if (!event)
            break;
        const uint8_t type = event->response_type & 0x7f;
        if (type == XCB_GE_GENERIC) {
            const auto* generic = reinterpret_cast<const xcb_ge_generic_event_t*>(event.get());
            if (generic->extension == m_display->opcode && generic->event_type == XCB_INPUT_RAW_KEY_RELEASE)
                keyReleased(reinterpret_cast<const xcb_input_raw_key_release_event_t*>(event.get())->detail);
        } else if (type == XCB_MAPPING_NOTIFY) {
            m_display->symbols.reset(xcb_key_symbols_alloc(m_display->connection.get()));
        }
    }
    if (m_display && xcb_connection_has_error(m_display->connection.get())) {
        qCWarning(lcKeyRelease) << "The display connection broke; a look-up ends with the hotkey's own release only";
        m_notifier.reset();
        m_display.reset();
        m_unavailable = true;
    }
}

void XiKeyReleaseMonitor::keyReleased(quint32 keycode)
{
    if (m_handlers.isEmpty())
        return;
    const quint32 keysym = xcb_key_symbols_get_keysym(m_display->symbols.get(), xcb_keycode_t(keycode), 0);
    GlobalKeyEvent event;
    if (const quint32 modifier = HotkeyKeyTable::modifierForKeysym(keysym)) {
        // Raw events carry no modifier state; what matters is which modifier just went up.
        event.kind = GlobalKeyEvent::Kind::flagsChanged;
        event.modifierFlags = CarbonModifier::all & ~modifier;
    } else if (const auto key = HotkeyKeyTable::byKeysym(keysym)) {
        event.kind = GlobalKeyEvent::Kind::keyUp;
        event.keyCode = key->keyCode;
    } else {
        return;
    }
    // A handler may remove monitors, its own included.
    const auto handlers = m_handlers;
    for (auto it = handlers.cbegin(); it != handlers.cend(); ++it) {
        if (m_handlers.contains(it.key()))
            it.value()(event);
    }
}

} // namespace tolvane
