// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/hotkeys/XcbHotkeyService.h"

#include "core/hotkeys/CarbonModifiers.h"
#include "core/hotkeys/HotkeyKeyTable.h"
#include "core/hotkeys/KeyNames.h"
#include "core/support/Logging.h"
#include "platform/linux/XcbSupport.h"

#include <QAbstractNativeEventFilter>
#include <QGuiApplication>
#include <QHash>
#include <QSet>
#include <QSocketNotifier>
#include <QTimer>

#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>
#include <xcb/xinput.h>
// The XKB protocol header names a structure member "explicit".
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

TOLVANE_DEFINE_LOG(lcXcbHotkeys, "XcbHotkeyService")

namespace tolvane {

namespace {

using x11::Reply;

struct KeySymbolsDeleter
{
    void operator()(xcb_key_symbols_t* symbols) const { xcb_key_symbols_free(symbols); }
};
using KeySymbols = std::unique_ptr<xcb_key_symbols_t, KeySymbolsDeleter>;

struct ConnectionDeleter
{
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
using Connection = std::unique_ptr<xcb_connection_t, ConnectionDeleter>;

constexpr quint32 numLockKeysym = 0xff7f;
constexpr uint8_t badAccess = 10;
// The modifiers a grab is made for; Caps Lock, Num Lock and the others are let through.
constexpr uint16_t comboModifierMask = XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;
// Modifier keys let go within this time of each other (by the server's clock) count as let go
// together: two fingers never leave the keys in the same millisecond, and X reports each key on
// its own.
constexpr xcb_timestamp_t releaseChordMilliseconds = 100;

uint16_t xModifiers(quint32 carbon)
{
    uint16_t mask = 0;
    if (carbon & CarbonModifier::command)
        mask |= XCB_MOD_MASK_4;
    if (carbon & CarbonModifier::shift)
        mask |= XCB_MOD_MASK_SHIFT;
    if (carbon & CarbonModifier::option)
        mask |= XCB_MOD_MASK_1;
    if (carbon & CarbonModifier::control)
        mask |= XCB_MOD_MASK_CONTROL;
    return mask;
}

xcb_window_t rootWindow(xcb_connection_t* connection)
{
    xcb_screen_iterator_t it = xcb_setup_roots_iterator(xcb_get_setup(connection));
    return it.rem ? it.data->root : xcb_window_t(XCB_WINDOW_NONE);
}

void roundTrip(xcb_connection_t* connection)
{
    Reply<xcb_get_input_focus_reply_t>(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

std::optional<xcb_keycode_t> keycodeFor(xcb_key_symbols_t* symbols, quint32 keysym)
{
    Reply<xcb_keycode_t> codes(xcb_key_symbols_get_keycode(symbols, keysym));
    if (!codes || codes.get()[0] == XCB_NO_SYMBOL)
        return std::nullopt;
    return codes.get()[0];
}

const QString connectionLost = QStringLiteral("The connection to the display is lost.");

class XcbHotkeyService final : public QObject, public GlobalHotkeyService, public QAbstractNativeEventFilter
{
public:
    explicit XcbHotkeyService(xcb_connection_t* connection);
    ~XcbHotkeyService() override;

    Result<void> registerHotkey(quint32 keyCode, quint32 modifiers, HotkeyIdentifier identifier) override;
    void unregisterHotkey(HotkeyIdentifier identifier) override;
    void setEventHandler(EventHandler handler) override { m_handler = std::move(handler); }
    Result<void> startModifierMonitor(ModifierHandler handler) override;
    void stopModifierMonitor() override;

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    struct Grab
    {
        quint32 keyCode;
        quint32 modifiers;
        HotkeyIdentifier identifier;
        xcb_keycode_t xKeycode = 0; // 0 while the key is missing from the keyboard
        uint16_t xModifiers = 0;
        std::optional<xcb_keycode_t> heldKeycode;
    };

    bool connectionBroken() const { return xcb_connection_has_error(m_connection) != 0; }
    void loadKeyboard();
    std::vector<uint16_t> lockVariants() const;
    Result<void> grab(Grab& grab);
    void ungrab(const Grab& grab);
    void scheduleRegrab();
    void regrabAll();
    bool handleKeyPress(const xcb_key_press_event_t& event);
    bool handleKeyRelease(const xcb_key_release_event_t& event);

    void loadModifierKeys();
    void readRawEvents();
    void handleRawKey(xcb_keycode_t keycode, bool pressed, xcb_timestamp_t time);
    bool flushPendingRelease();
    void report(quint32 held);
    void closeModifierMonitor();

    xcb_connection_t* m_connection;
    xcb_window_t m_root;
    uint8_t m_xkbFirstEvent = 0;
    KeySymbols m_symbols;
    uint16_t m_numLockMask = 0;
    std::vector<Grab> m_grabs;
    EventHandler m_handler;
    bool m_regrabScheduled = false;

    Connection m_rawConnection;
    KeySymbols m_rawSymbols;
    uint8_t m_xinputOpcode = 0;
    std::unique_ptr<QSocketNotifier> m_rawNotifier;
    QHash<xcb_keycode_t, quint32> m_modifierKeys; // keycode → stored modifier bit
    QSet<xcb_keycode_t> m_heldModifierKeys;
    quint32 m_reportedModifiers = 0;
    // Part of the set went up: the smaller set is told only once it is clear that the rest did
    // not follow within the chord time.
    std::optional<quint32> m_pendingRelease;
    xcb_timestamp_t m_pendingReleaseTime = 0;
    ModifierHandler m_modifierHandler;
    quint64 m_monitorGeneration = 0;
};

XcbHotkeyService::XcbHotkeyService(xcb_connection_t* connection)
    : m_connection(connection)
    , m_root(rootWindow(connection))
{
    if (const xcb_query_extension_reply_t* xkb = xcb_get_extension_data(m_connection, &xcb_xkb_id);
        xkb && xkb->present) {
        m_xkbFirstEvent = xkb->first_event;
        Reply<xcb_xkb_use_extension_reply_t>(
            xcb_xkb_use_extension_reply(m_connection, xcb_xkb_use_extension(m_connection, 1, 0), nullptr));
        // A held key then gives presses without releases in between, instead of release-press
        // pairs that would look like the user tapping the hotkey.
        constexpr uint32_t detectable = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
        Reply<xcb_xkb_per_client_flags_reply_t> flags(xcb_xkb_per_client_flags_reply(
            m_connection,
            xcb_xkb_per_client_flags(m_connection, XCB_XKB_ID_USE_CORE_KBD, detectable, detectable, 0, 0, 0), nullptr));
        if (!flags || !(flags->value & detectable))
            qCInfo(lcXcbHotkeys)
                << "Detectable auto-repeat is not available: a held hotkey repeats its press and release";
    }
    loadKeyboard();
    qApp->installNativeEventFilter(this);
}

XcbHotkeyService::~XcbHotkeyService()
{
    closeModifierMonitor();
    if (!QCoreApplication::instance())
        return; // the display connection is gone, and the server released our grabs with it
    QCoreApplication::instance()->removeNativeEventFilter(this);
    if (connectionBroken())
        return;
    for (const Grab& g : m_grabs)
        ungrab(g);
    xcb_flush(m_connection);
}

void XcbHotkeyService::loadKeyboard()
{
    m_symbols.reset(xcb_key_symbols_alloc(m_connection));
    m_numLockMask = 0;
    const auto numLockCode = keycodeFor(m_symbols.get(), numLockKeysym);
    Reply<xcb_get_modifier_mapping_reply_t> mapping(
        xcb_get_modifier_mapping_reply(m_connection, xcb_get_modifier_mapping(m_connection), nullptr));
    if (!numLockCode || !mapping)
        return;
    const xcb_keycode_t* codes = xcb_get_modifier_mapping_keycodes(mapping.get());
    const int perModifier = mapping->keycodes_per_modifier;
    for (int modifier = 0; modifier < 8; ++modifier) {
        for (int i = 0; i < perModifier; ++i) {
            if (codes[modifier * perModifier + i] == *numLockCode)
                m_numLockMask = uint16_t(1u << modifier);
        }
    }
}

std::vector<uint16_t> XcbHotkeyService::lockVariants() const
{
    std::vector<uint16_t> variants{0, XCB_MOD_MASK_LOCK};
    if (m_numLockMask != 0 && m_numLockMask != XCB_MOD_MASK_LOCK) {
        variants.push_back(m_numLockMask);
        variants.push_back(uint16_t(m_numLockMask | XCB_MOD_MASK_LOCK));
    }
    return variants;
}

Result<void> XcbHotkeyService::registerHotkey(quint32 keyCode, quint32 modifiers, HotkeyIdentifier identifier)
{
    unregisterHotkey(identifier);
    if (connectionBroken())
        return Error{connectionLost};
    Grab g{keyCode, modifiers, identifier, 0, 0, std::nullopt};
    if (Result<void> grabbed = grab(g); !grabbed.ok())
        return grabbed;
    m_grabs.push_back(g);
    return {};
}

Result<void> XcbHotkeyService::grab(Grab& g)
{
    const auto key = HotkeyKeyTable::byKeyCode(g.keyCode);
    if (!key)
        return Error{QStringLiteral("Key code %1 names no key this desktop knows.").arg(g.keyCode)};
    const auto keycode = keycodeFor(m_symbols.get(), key->keysym);
    if (!keycode)
        return Error{QStringLiteral("The key %1 is not on this keyboard.").arg(keyName(g.keyCode))};

    const uint16_t modifiers = xModifiers(g.modifiers);
    const std::vector<uint16_t> variants = lockVariants();
    std::vector<xcb_void_cookie_t> cookies;
    for (uint16_t variant : variants) {
        cookies.push_back(xcb_grab_key_checked(m_connection, 0, m_root, uint16_t(modifiers | variant), *keycode,
                                               XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    std::vector<uint16_t> taken;
    bool refused = false;
    uint8_t errorCode = 0;
    for (std::size_t i = 0; i < cookies.size(); ++i) {
        Reply<xcb_generic_error_t> error(xcb_request_check(m_connection, cookies[i]));
        if (error) {
            refused = true;
            errorCode = error->error_code;
        } else {
            taken.push_back(variants[i]);
        }
    }
    if (refused) {
        for (uint16_t variant : taken)
            xcb_ungrab_key(m_connection, *keycode, m_root, uint16_t(modifiers | variant));
        roundTrip(m_connection);
        if (connectionBroken())
            return Error{connectionLost};
        if (errorCode == badAccess)
            return Error{
                QStringLiteral("Another application holds %1.").arg(hotkeyDisplayString(g.keyCode, g.modifiers))};
        return Error{QStringLiteral("The display refused %1 (X error %2).")
                         .arg(hotkeyDisplayString(g.keyCode, g.modifiers))
                         .arg(errorCode)};
    }
    g.xKeycode = *keycode;
    g.xModifiers = modifiers;
    return {};
}

void XcbHotkeyService::ungrab(const Grab& g)
{
    if (g.xKeycode == 0)
        return;
    for (uint16_t variant : lockVariants())
        xcb_ungrab_key(m_connection, g.xKeycode, m_root, uint16_t(g.xModifiers | variant));
}

void XcbHotkeyService::unregisterHotkey(HotkeyIdentifier identifier)
{
    const auto it =
        std::find_if(m_grabs.begin(), m_grabs.end(), [&](const Grab& g) { return g.identifier == identifier; });
    if (it == m_grabs.end())
        return;
    const Grab g = *it;
    m_grabs.erase(it);
    if (connectionBroken())
        return;
    ungrab(g);
    // Once this returns, another client can take the combination.
    roundTrip(m_connection);
}

void XcbHotkeyService::scheduleRegrab()
{
    if (m_regrabScheduled)
        return;
    m_regrabScheduled = true;
    // A mapping change arrives as several events; act once they are all in.
    QTimer::singleShot(0, this, [this] {
        m_regrabScheduled = false;
        regrabAll();
    });
}

void XcbHotkeyService::regrabAll()
{
    if (connectionBroken())
        return;
    for (const Grab& g : m_grabs)
        ungrab(g);
    loadKeyboard();
    for (Grab& g : m_grabs) {
        const auto held = g.heldKeycode;
        g.xKeycode = 0;
        if (Result<void> grabbed = grab(g); !grabbed.ok()) {
            qCWarning(lcXcbHotkeys).noquote() << "Lost" << hotkeyDisplayString(g.keyCode, g.modifiers)
                                              << "after a keyboard change:" << grabbed.error().message;
        }
        // A key held across the change still ends with its release.
        g.heldKeycode = held;
    }
    xcb_flush(m_connection);
    if (m_rawConnection)
        loadModifierKeys();
}

bool XcbHotkeyService::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const uint8_t type = event->response_type & 0x7f;
    switch (type) {
    case XCB_KEY_PRESS:
        return handleKeyPress(*reinterpret_cast<const xcb_key_press_event_t*>(event));
    case XCB_KEY_RELEASE:
        return handleKeyRelease(*reinterpret_cast<const xcb_key_release_event_t*>(event));
    case XCB_MAPPING_NOTIFY:
        scheduleRegrab();
        return false;
    default:
        break;
    }
    if (m_xkbFirstEvent != 0 && type == m_xkbFirstEvent) {
        const auto* xkb = reinterpret_cast<const xcb_xkb_new_keyboard_notify_event_t*>(event);
        if (xkb->xkbType == XCB_XKB_NEW_KEYBOARD_NOTIFY || xkb->xkbType == XCB_XKB_MAP_NOTIFY)
            scheduleRegrab();
    }
    return false; // Qt keeps its own view of the keyboard up to date too
}

bool XcbHotkeyService::handleKeyPress(const xcb_key_press_event_t& event)
{
    if (event.event != m_root)
        return false;
    const uint16_t modifiers = event.state & comboModifierMask;
    for (Grab& g : m_grabs) {
        if (g.xKeycode != event.detail || g.xModifiers != modifiers)
            continue;
        // A held key repeats its press; the hotkey went down once.
        if (g.heldKeycode)
            return true;
        g.heldKeycode = event.detail;
        if (m_handler) {
            const auto handler = m_handler;
            handler(g.identifier, HotkeyEventKind::pressed);
        }
        return true;
    }
    return false;
}

bool XcbHotkeyService::handleKeyRelease(const xcb_key_release_event_t& event)
{
    if (event.event != m_root)
        return false;
    // By key code alone: the modifiers may well have gone up first.
    for (Grab& g : m_grabs) {
        if (g.heldKeycode != event.detail)
            continue;
        g.heldKeycode.reset();
        if (m_handler) {
            const auto handler = m_handler;
            handler(g.identifier, HotkeyEventKind::released);
        }
        return true;
    }
    return false;
}

Result<void> XcbHotkeyService::startModifierMonitor(ModifierHandler handler)
{
    closeModifierMonitor();
    ++m_monitorGeneration;

    Connection connection(xcb_connect(nullptr, nullptr));
    if (xcb_connection_has_error(connection.get()))
        return Error{QStringLiteral("Could not open a second connection to the display.")};
    const xcb_query_extension_reply_t* xinput = xcb_get_extension_data(connection.get(), &xcb_input_id);
    if (!xinput || !xinput->present)
        return Error{QStringLiteral("The display has no XInput extension.")};
    Reply<xcb_input_xi_query_version_reply_t> version(xcb_input_xi_query_version_reply(
        connection.get(), xcb_input_xi_query_version(connection.get(), 2, 2), nullptr));
    if (!version || version->major_version < 2 || (version->major_version == 2 && version->minor_version < 2))
        return Error{QStringLiteral("The display's XInput is older than 2.2.")};

    struct
    {
        xcb_input_event_mask_t header;
        uint32_t mask;
    } selection{{XCB_INPUT_DEVICE_ALL_MASTER, 1},
                XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE};
    const xcb_window_t root = rootWindow(connection.get());
    Reply<xcb_generic_error_t> error(xcb_request_check(
        connection.get(), xcb_input_xi_select_events_checked(connection.get(), root, 1, &selection.header)));
    if (error)
        return Error{QStringLiteral("The display refused raw key events (X error %1).").arg(error->error_code)};

    m_rawConnection = std::move(connection);
    m_xinputOpcode = xinput->major_opcode;
    m_modifierHandler = std::move(handler);
    loadModifierKeys();

    m_rawNotifier =
        std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_rawConnection.get()), QSocketNotifier::Read);
    QObject::connect(m_rawNotifier.get(), &QSocketNotifier::activated, this, [this] { readRawEvents(); });
    // Replies above may have pulled events into the queue already; the socket will not say so.
    QTimer::singleShot(0, this, [this, generation = m_monitorGeneration] {
        if (generation == m_monitorGeneration && m_rawConnection)
            readRawEvents();
    });
    return {};
}

void XcbHotkeyService::stopModifierMonitor()
{
    closeModifierMonitor();
    ++m_monitorGeneration;
}

void XcbHotkeyService::closeModifierMonitor()
{
    m_pendingRelease.reset();
    if (m_rawNotifier) {
        m_rawNotifier->setEnabled(false);
        // It may be the notifier whose signal is being delivered right now.
        m_rawNotifier.release()->deleteLater();
    }
    m_rawSymbols.reset();
    m_rawConnection.reset(); // the server drops the event selection with the connection
    m_modifierHandler = nullptr;
    m_modifierKeys.clear();
    m_heldModifierKeys.clear();
    m_reportedModifiers = 0;
}

void XcbHotkeyService::loadModifierKeys()
{
    m_rawSymbols.reset(xcb_key_symbols_alloc(m_rawConnection.get()));
    m_modifierKeys.clear();
    const xcb_setup_t* setup = xcb_get_setup(m_rawConnection.get());
    for (int code = setup->min_keycode; code <= setup->max_keycode; ++code) {
        const auto keycode = xcb_keycode_t(code);
        if (const quint32 bit =
                HotkeyKeyTable::modifierForKeysym(xcb_key_symbols_get_keysym(m_rawSymbols.get(), keycode, 0)))
            m_modifierKeys.insert(keycode, bit);
    }
}

void XcbHotkeyService::readRawEvents()
{
    const quint64 generation = m_monitorGeneration;
    while (m_rawConnection && generation == m_monitorGeneration) {
        Reply<xcb_generic_event_t> event(xcb_poll_for_event(m_rawConnection.get()));
        if (!event)
            break;
        const uint8_t type = event->response_type & 0x7f;
        if (type == XCB_GE_GENERIC) {
            const auto* generic = reinterpret_cast<const xcb_ge_generic_event_t*>(event.get());
            if (generic->extension != m_xinputOpcode)
                continue;
            const auto* raw = reinterpret_cast<const xcb_input_raw_key_press_event_t*>(event.get());
            if (generic->event_type == XCB_INPUT_RAW_KEY_PRESS && !(raw->flags & XCB_INPUT_KEY_EVENT_FLAGS_KEY_REPEAT))
                handleRawKey(xcb_keycode_t(raw->detail), true, raw->time);
            else if (generic->event_type == XCB_INPUT_RAW_KEY_RELEASE)
                handleRawKey(xcb_keycode_t(raw->detail), false, raw->time);
        } else if (type == XCB_MAPPING_NOTIFY) {
            loadModifierKeys();
            scheduleRegrab();
        }
    }
    if (m_rawConnection && generation == m_monitorGeneration && xcb_connection_has_error(m_rawConnection.get())) {
        qCWarning(lcXcbHotkeys) << "The display connection for modifier keys broke; modifier-only hotkeys stop";
        closeModifierMonitor();
    }
}

void XcbHotkeyService::handleRawKey(xcb_keycode_t keycode, bool pressed, xcb_timestamp_t time)
{
    const quint32 bit = m_modifierKeys.value(keycode);
    if (bit == 0)
        return; // raw events carry no modifier state, and other keys do not change it
    if (pressed)
        m_heldModifierKeys.insert(keycode);
    else
        m_heldModifierKeys.remove(keycode);
    quint32 held = 0;
    for (xcb_keycode_t key : std::as_const(m_heldModifierKeys))
        held |= m_modifierKeys.value(key);

    const bool chord = m_pendingRelease && !pressed && time - m_pendingReleaseTime <= releaseChordMilliseconds;
    if (!chord && !flushPendingRelease())
        return;
    if (!pressed && held != 0 && (held & ~m_reportedModifiers) == 0) {
        if (!m_pendingRelease)
            m_pendingReleaseTime = time;
        m_pendingRelease = held;
        return;
    }
    // Everything went up, the rest in time: the whole set went up together.
    m_pendingRelease.reset();
    report(held);
}

bool XcbHotkeyService::flushPendingRelease()
{
    const auto pending = std::exchange(m_pendingRelease, std::nullopt);
    if (!pending)
        return true;
    const quint64 generation = m_monitorGeneration;
    report(*pending);
    return generation == m_monitorGeneration;
}

void XcbHotkeyService::report(quint32 held)
{
    if (held == m_reportedModifiers)
        return;
    m_reportedModifiers = held;
    if (m_modifierHandler) {
        const auto handler = m_modifierHandler;
        handler(held);
    }
}

} // namespace

std::unique_ptr<GlobalHotkeyService> createXcbHotkeyService()
{
    xcb_connection_t* connection = x11::connection();
    if (!connection || xcb_connection_has_error(connection))
        return nullptr;
    return std::make_unique<XcbHotkeyService>(connection);
}

} // namespace tolvane
