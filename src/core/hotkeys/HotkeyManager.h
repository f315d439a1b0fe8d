// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/hotkeys/CarbonModifiers.h"
#include "core/setup/Preferences.h"
#include "platform/GlobalHotkeyService.h"

#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace tolvane {

// Owns Tolvane's one global lookup hotkey: registers the stored combination with the desktop,
// reports each press and release, keeps the previous combination alive when a new one cannot be
// registered. A combination of modifier keys alone fires once, as a press at once followed by a
// release, when the modifiers are let go and the last set held was exactly the combination.
//
// At most one mechanism is active at a time: the key grab with its event handler, or the
// modifier monitor, or nothing.
class HotkeyManager final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(quint32 currentKeyCode READ currentKeyCode NOTIFY currentKeyCodeChanged)
    Q_PROPERTY(quint32 currentModifiers READ currentModifiers NOTIFY currentModifiersChanged)
    Q_PROPERTY(QString registrationError READ registrationErrorText NOTIFY registrationErrorChanged)
public:
    static constexpr quint32 modifierOnlyKeyCode = HotkeyCombination::modifierOnlyKeyCode;
    static constexpr HotkeyIdentifier hotKeyID{fourCharCode("TlvH"), 1};

    // Reads the stored combination; registers nothing until the first updateHotkey().
    HotkeyManager(Preferences& preferences, GlobalHotkeyService& service, QObject* parent = nullptr);
    ~HotkeyManager() override;

    // Assigned by whoever owns the lookup flow, before the first updateHotkey(). Called on the
    // main thread, synchronously from the desktop's event.
    std::function<void()> onHotkeyPressed;
    std::function<void()> onHotkeyReleased;

    quint32 currentKeyCode() const { return m_currentKeyCode; }
    quint32 currentModifiers() const { return m_currentModifiers; }
    HotkeyCombination currentCombination() const { return {m_currentKeyCode, m_currentModifiers}; }
    // The message of the last failed updateHotkey(); nothing after a success.
    const std::optional<QString>& registrationError() const { return m_registrationError; }
    QString registrationErrorText() const { return m_registrationError.value_or(QString()); }

    // Replaces the active combination and stores it. On failure the previous combination is
    // registered again where possible, nothing is stored and registrationError() says why.
    bool updateHotkey(quint32 keyCode, quint32 modifiers);
    // Removes whatever is registered. Called when the application terminates.
    void unregisterHotkey();

    // What is active right now, for the screens and for checking the one-mechanism rule.
    bool isHotKeyRegistered() const { return m_hotKeyRegistered; }
    bool isEventHandlerInstalled() const { return m_eventHandlerInstalled; }
    bool areStandaloneMonitorsInstalled() const { return m_standaloneMonitorsInstalled; }
    quint32 standaloneHeldModifiers() const { return m_standaloneHeldModifiers; }

Q_SIGNALS:
    void currentKeyCodeChanged();
    void currentModifiersChanged();
    void registrationErrorChanged();

private:
    bool registerHotkey(quint32 keyCode, quint32 modifiers);
    void installModifierOnlyMonitors(quint32 target);
    void handleModifierOnlyFlagsChanged(quint32 held, quint32 target);
    void handleHotKeyEvent(HotkeyIdentifier identifier, HotkeyEventKind kind);
    void setRegistrationError(std::optional<QString> message);

    Preferences& m_preferences;
    GlobalHotkeyService& m_service;
    quint32 m_currentKeyCode = HotkeyCombination{}.keyCode;
    quint32 m_currentModifiers = HotkeyCombination{}.modifiers;
    std::optional<QString> m_registrationError;
    bool m_hotKeyRegistered = false;
    bool m_eventHandlerInstalled = false;
    bool m_standaloneMonitorsInstalled = false;
    quint32 m_standaloneHeldModifiers = 0;
};

} // namespace tolvane
