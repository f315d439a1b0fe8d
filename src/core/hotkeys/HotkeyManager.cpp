// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/hotkeys/HotkeyManager.h"

#include "core/hotkeys/KeyNames.h"
#include "core/support/Logging.h"
#include "core/support/PlatformWording.h"

#include <QPointer>

TOLVANE_DEFINE_LOG(lcHotkeyManager, "HotkeyManager")

namespace tolvane {

namespace {

// The texts under the hotkey control in the settings screen and the guide.
QString previousHotkeyKeptText()
{
    return onThisPlatform(QStringLiteral("macOS could not register that hotkey because it is already in use. Your "
                                         "previous hotkey remains active."));
}

QString chooseDifferentText()
{
    return onThisPlatform(QStringLiteral("macOS could not register this hotkey because it is already in use. Choose "
                                         "a different combination."));
}

} // namespace

HotkeyManager::HotkeyManager(Preferences& preferences, GlobalHotkeyService& service, QObject* parent)
    : QObject(parent)
    , m_preferences(preferences)
    , m_service(service)
{
    const HotkeyCombination stored = m_preferences.customHotkey();
    m_currentKeyCode = stored.keyCode;
    m_currentModifiers = stored.modifiers;
}

HotkeyManager::~HotkeyManager()
{
    unregisterHotkey();
}

bool HotkeyManager::updateHotkey(quint32 keyCode, quint32 modifiers)
{
    const quint32 previousKeyCode = m_currentKeyCode;
    const quint32 previousModifiers = m_currentModifiers;
    const bool wasActive = m_hotKeyRegistered || m_standaloneMonitorsInstalled;

    unregisterHotkey();

    if (registerHotkey(keyCode, modifiers)) {
        const bool keyChanged = keyCode != m_currentKeyCode;
        const bool modifiersChanged = modifiers != m_currentModifiers;
        m_currentKeyCode = keyCode;
        m_currentModifiers = modifiers;
        m_preferences.setInteger(PreferenceKey::customHotkeyKeyCode, qint64(keyCode));
        m_preferences.setInteger(PreferenceKey::customHotkeyModifiers, qint64(modifiers));
        setRegistrationError(std::nullopt);
        if (keyChanged)
            Q_EMIT currentKeyCodeChanged();
        if (modifiersChanged)
            Q_EMIT currentModifiersChanged();
        return true;
    }

    if (wasActive && registerHotkey(previousKeyCode, previousModifiers))
        setRegistrationError(previousHotkeyKeptText());
    else
        setRegistrationError(chooseDifferentText());
    return false;
}

void HotkeyManager::unregisterHotkey()
{
    if (m_hotKeyRegistered) {
        m_service.unregisterHotkey(hotKeyID);
        m_hotKeyRegistered = false;
    }
    if (m_eventHandlerInstalled) {
        m_service.setEventHandler(nullptr);
        m_eventHandlerInstalled = false;
    }
    if (m_standaloneMonitorsInstalled) {
        m_service.stopModifierMonitor();
        m_standaloneMonitorsInstalled = false;
    }
    m_standaloneHeldModifiers = 0;
}

bool HotkeyManager::registerHotkey(quint32 keyCode, quint32 modifiers)
{
    if (keyCode == modifierOnlyKeyCode) {
        installModifierOnlyMonitors(modifiers);
        return true;
    }

    QPointer<HotkeyManager> self(this);
    m_service.setEventHandler([self](HotkeyIdentifier identifier, HotkeyEventKind kind) {
        if (self)
            self->handleHotKeyEvent(identifier, kind);
    });
    m_eventHandlerInstalled = true;

    const Result<void> registered = m_service.registerHotkey(keyCode, modifiers, hotKeyID);
    if (registered.ok()) {
        m_hotKeyRegistered = true;
        return true;
    }
    qCInfo(lcHotkeyManager).noquote() << QStringLiteral("Could not register %1 (%2, %3): %4")
                                             .arg(hotkeyDisplayString(keyCode, modifiers))
                                             .arg(keyCode)
                                             .arg(modifiers)
                                             .arg(registered.error().message);
    m_service.setEventHandler(nullptr);
    m_eventHandlerInstalled = false;
    return false;
}

void HotkeyManager::installModifierOnlyMonitors(quint32 target)
{
    m_standaloneHeldModifiers = 0;
    QPointer<HotkeyManager> self(this);
    const Result<void> started = m_service.startModifierMonitor([self, target](quint32 held) {
        if (self)
            self->handleModifierOnlyFlagsChanged(held, target);
    });
    // The combination still counts as registered: it simply cannot fire, as when a desktop
    // withholds other applications' keys.
    if (!started.ok())
        qCWarning(lcHotkeyManager).noquote() << "Modifier keys cannot be watched:" << started.error().message;
    m_standaloneMonitorsInstalled = true;
}

void HotkeyManager::handleModifierOnlyFlagsChanged(quint32 held, quint32 target)
{
    const quint32 m = held & CarbonModifier::all;
    if (m != 0) {
        m_standaloneHeldModifiers = m;
        return;
    }
    const bool fires = m_standaloneHeldModifiers == target;
    m_standaloneHeldModifiers = 0;
    if (!fires)
        return;
    // A callback may replace the hotkey; keep our own copies alive for the pair.
    const auto pressed = onHotkeyPressed;
    const auto released = onHotkeyReleased;
    if (pressed)
        pressed();
    if (released)
        released();
}

void HotkeyManager::handleHotKeyEvent(HotkeyIdentifier identifier, HotkeyEventKind kind)
{
    // Another registration sharing the service (the conflict probe) is not ours to answer.
    if (identifier != hotKeyID)
        return;
    const auto& callback = kind == HotkeyEventKind::pressed ? onHotkeyPressed : onHotkeyReleased;
    if (callback) {
        const auto call = callback;
        call();
    }
}

void HotkeyManager::setRegistrationError(std::optional<QString> message)
{
    if (message == m_registrationError)
        return;
    m_registrationError = std::move(message);
    Q_EMIT registrationErrorChanged();
}

} // namespace tolvane
