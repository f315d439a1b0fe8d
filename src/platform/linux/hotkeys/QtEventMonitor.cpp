// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/hotkeys/QtEventMonitor.h"

#include "core/hotkeys/CarbonModifiers.h"
#include "core/hotkeys/HotkeyKeyTable.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QWindow>

#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>

#include <memory>

namespace tolvane {

namespace {

struct KeySymbolsDeleter
{
    void operator()(xcb_key_symbols_t* symbols) const { xcb_key_symbols_free(symbols); }
};

quint32 carbonFromQt(Qt::KeyboardModifiers modifiers)
{
    quint32 mask = 0;
    if (modifiers & Qt::MetaModifier)
        mask |= CarbonModifier::command;
    if (modifiers & Qt::ShiftModifier)
        mask |= CarbonModifier::shift;
    if (modifiers & Qt::AltModifier)
        mask |= CarbonModifier::option;
    if (modifiers & Qt::ControlModifier)
        mask |= CarbonModifier::control;
    return mask;
}

quint32 modifierBitForQtKey(int key)
{
    switch (key) {
    case Qt::Key_Shift:
        return CarbonModifier::shift;
    case Qt::Key_Control:
        return CarbonModifier::control;
    case Qt::Key_Alt:
        return CarbonModifier::option;
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
        return CarbonModifier::command;
    default:
        return 0;
    }
}

// The keysym of the key without Shift or other levels: the key's identity, not the character it
// typed this time ("1", not "!").
std::optional<quint32> baseKeysym(quint32 scanCode)
{
    if (scanCode == 0 || scanCode > 255)
        return std::nullopt;
    auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    if (!x11 || !x11->connection())
        return std::nullopt;
    // Read afresh each time: capturing is rare, and a layout switch must not leave stale names.
    std::unique_ptr<xcb_key_symbols_t, KeySymbolsDeleter> symbols(xcb_key_symbols_alloc(x11->connection()));
    const xcb_keysym_t keysym = xcb_key_symbols_get_keysym(symbols.get(), xcb_keycode_t(scanCode), 0);
    if (keysym == XCB_NO_SYMBOL)
        return std::nullopt;
    return quint32(keysym);
}

} // namespace

QtEventMonitor::QtEventMonitor(QObject* parent)
    : QObject(parent)
{}

QtEventMonitor::~QtEventMonitor()
{
    if (m_filterInstalled && QCoreApplication::instance())
        QCoreApplication::instance()->removeEventFilter(this);
}

EventMonitor::Token QtEventMonitor::addLocalKeyMonitor(KeyHandler handler)
{
    m_keyMonitors.insert(++m_next, std::move(handler));
    updateFilter();
    return m_next;
}

EventMonitor::Token QtEventMonitor::addClickMonitor(ClickHandler handler)
{
    m_clickMonitors.insert(++m_next, std::move(handler));
    updateFilter();
    return m_next;
}

EventMonitor::Token QtEventMonitor::addKeyPressMonitor(ClickHandler handler)
{
    m_keyPressMonitors.insert(++m_next, std::move(handler));
    updateFilter();
    return m_next;
}

void QtEventMonitor::removeMonitor(Token token)
{
    m_keyMonitors.remove(token);
    m_clickMonitors.remove(token);
    m_keyPressMonitors.remove(token);
    updateFilter();
}

void QtEventMonitor::activateApplication()
{
    if (QGuiApplication::focusWindow())
        return;
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (auto it = windows.crbegin(); it != windows.crend(); ++it) {
        QWindow* window = *it;
        if (window->isVisible() && (window->type() == Qt::Window || window->type() == Qt::Dialog)) {
            window->requestActivate();
            return;
        }
    }
}

void QtEventMonitor::updateFilter()
{
    const bool wanted = !m_keyMonitors.isEmpty() || !m_clickMonitors.isEmpty() || !m_keyPressMonitors.isEmpty();
    if (wanted == m_filterInstalled || !QCoreApplication::instance())
        return;
    if (wanted)
        QCoreApplication::instance()->installEventFilter(this);
    else
        QCoreApplication::instance()->removeEventFilter(this);
    m_filterInstalled = wanted;
}

std::optional<KeyEvent> QtEventMonitor::toKeyEvent(const QKeyEvent& event)
{
    const bool press = event.type() == QEvent::KeyPress;
    KeyEvent result;
    result.modifierFlags = carbonFromQt(event.modifiers());
    if (const quint32 bit = modifierBitForQtKey(event.key())) {
        // The set held after the change, whichever way Qt counts the key itself.
        result.type = KeyEvent::Type::flagsChanged;
        result.modifierFlags = press ? (result.modifierFlags | bit) : (result.modifierFlags & ~bit);
        const auto key = HotkeyKeyTable::byQtKey(event.key(), false);
        result.keyCode = key ? key->keyCode : 0;
        return result;
    }
    if (!press)
        return std::nullopt;

    std::optional<HotkeyKey> key;
    if (const auto keysym = baseKeysym(event.nativeScanCode()))
        key = HotkeyKeyTable::byKeysym(*keysym);
    if (!key)
        key = HotkeyKeyTable::byQtKey(event.key(), event.modifiers() & Qt::KeypadModifier);
    if (!key)
        return std::nullopt;
    result.type = KeyEvent::Type::keyDown;
    result.keyCode = key->keyCode;
    result.characters = event.text();
    result.isRepeat = event.isAutoRepeat();
    return result;
}

bool QtEventMonitor::eventFilter(QObject* watched, QEvent* event)
{
    // Key and mouse events reach a widget's window first and then the widget: look once.
    const QEvent::Type type = event->type();
    if (type == QEvent::ShortcutOverride && !m_keyMonitors.isEmpty()) {
        // While keys are watched, no menu or button shortcut of ours may take them first.
        event->accept();
        return true;
    }
    if (!watched->isWindowType())
        return false;
    if (type == QEvent::MouseButtonPress) {
        const auto monitors = m_clickMonitors;
        for (const auto& handler : monitors)
            handler();
        return false;
    }
    if (type != QEvent::KeyPress && type != QEvent::KeyRelease)
        return false;
    const auto& keyEvent = static_cast<const QKeyEvent&>(*event);
    if (type == QEvent::KeyPress) {
        const auto monitors = m_keyPressMonitors;
        for (const auto& handler : monitors)
            handler();
    }
    const auto converted = toKeyEvent(keyEvent);
    if (!converted)
        return false;
    // A flags change is a change: the same set told twice (a key seen by two windows, a modifier
    // repeating) is not news.
    const bool repeatedFlags =
        converted->type == KeyEvent::Type::flagsChanged && converted->modifierFlags == m_lastModifierFlags;
    m_lastModifierFlags = converted->modifierFlags;
    if (repeatedFlags)
        return false;
    bool swallowed = false;
    const auto monitors = m_keyMonitors;
    for (auto it = monitors.cbegin(); it != monitors.cend(); ++it) {
        // A handler may remove others (or itself) while the event is delivered.
        if (m_keyMonitors.contains(it.key()))
            swallowed = it.value()(*converted) || swallowed;
    }
    return swallowed;
}

} // namespace tolvane
