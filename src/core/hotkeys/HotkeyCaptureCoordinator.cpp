// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/hotkeys/HotkeyCaptureCoordinator.h"

#include "core/hotkeys/HotkeyCaptureTexts.h"
#include "core/hotkeys/HotkeyManager.h"
#include "core/hotkeys/KeyNames.h"

#include <QPointer>

namespace tolvane {

HotkeyCaptureCoordinator::HotkeyCaptureCoordinator(EventMonitor& monitor, HotkeyManager& manager,
                                                   GlobalHotkeyService& hotkeys, QObject* parent)
    : HotkeyCaptureCoordinator(monitor, manager, Rules{true, &hotkeys}, parent)
{}

HotkeyCaptureCoordinator::HotkeyCaptureCoordinator(EventMonitor& monitor, HotkeyManager& manager, Rules rules,
                                                   QObject* parent)
    : QObject(parent)
    , m_monitor(monitor)
    , m_manager(manager)
    , m_rules(rules)
    , m_keyDownMonitor(monitor)
    , m_flagsMonitor(monitor)
{}

OnboardingHotkeyCaptureCoordinator::OnboardingHotkeyCaptureCoordinator(EventMonitor& monitor, HotkeyManager& manager,
                                                                       QObject* parent)
    : HotkeyCaptureCoordinator(monitor, manager, Rules{}, parent)
{}

HotkeyCaptureCoordinator::~HotkeyCaptureCoordinator()
{
    stopCapture();
}

void HotkeyCaptureCoordinator::startCapture()
{
    setCapturing(true);
    setValidationMessage(std::nullopt);
    m_monitor.activateApplication();
    m_lastHeldModifiers = 0;

    QPointer<HotkeyCaptureCoordinator> self(this);
    m_keyDownMonitor.install([self](const KeyEvent& event) {
        return self && event.type == KeyEvent::Type::keyDown && self->handleKeyDown(event);
    });
    if (!m_rules.modifierOnly)
        return;
    m_flagsMonitor.install([self](const KeyEvent& event) {
        if (self && event.type == KeyEvent::Type::flagsChanged)
            self->handleFlagsChanged(event);
        return false;
    });
}

void HotkeyCaptureCoordinator::stopCapture()
{
    m_keyDownMonitor.remove();
    m_flagsMonitor.remove();
    m_lastHeldModifiers = 0;
    setCapturing(false);
}

bool HotkeyCaptureCoordinator::handleKeyDown(const KeyEvent& event)
{
    if (event.keyCode == escapeKeyCode)
        stopCapture();
    else
        commit(event.keyCode, event.modifierFlags & CarbonModifier::all);
    // Consumed: the key must not also reach the window.
    return true;
}

void HotkeyCaptureCoordinator::handleFlagsChanged(const KeyEvent& event)
{
    const quint32 held = event.modifierFlags & CarbonModifier::all;
    if (held != 0) {
        m_lastHeldModifiers = held;
        return;
    }
    if (m_lastHeldModifiers == 0)
        return;
    const quint32 modifiers = m_lastHeldModifiers;
    m_lastHeldModifiers = 0;
    commit(HotkeyCombination::modifierOnlyKeyCode, modifiers);
}

void HotkeyCaptureCoordinator::commit(quint32 keyCode, quint32 modifiers)
{
    if (modifiers == 0 && (isTypingKey(keyCode) || !m_rules.conflictsWith)) {
        setValidationMessage(HotkeyCaptureTexts::bareKey(hotkeyDisplayString(keyCode, 0)));
    } else if (auto conflict = conflictOf(keyCode, modifiers)) {
        setPendingConflict(PendingConflict{keyCode, modifiers, std::move(*conflict)});
    } else {
        // A refusal by the desktop shows as the manager's registrationError.
        m_manager.updateHotkey(keyCode, modifiers);
        setValidationMessage(std::nullopt);
    }
    stopCapture();
}

std::optional<HotkeyConflictChecker::Conflict> HotkeyCaptureCoordinator::conflictOf(quint32 keyCode,
                                                                                    quint32 modifiers) const
{
    if (!m_rules.conflictsWith)
        return std::nullopt;
    return HotkeyConflictChecker::check(keyCode, modifiers, m_manager.currentCombination(), *m_rules.conflictsWith);
}

void HotkeyCaptureCoordinator::confirmPendingConflict()
{
    if (!m_pendingConflict)
        return;
    const PendingConflict pending = *m_pendingConflict;
    m_manager.updateHotkey(pending.keyCode, pending.modifiers);
    setPendingConflict(std::nullopt);
    setValidationMessage(std::nullopt);
}

void HotkeyCaptureCoordinator::dismissPendingConflict()
{
    setPendingConflict(std::nullopt);
    setValidationMessage(std::nullopt);
}

void HotkeyCaptureCoordinator::setCapturing(bool capturing)
{
    if (capturing == m_isCapturing)
        return;
    m_isCapturing = capturing;
    Q_EMIT isCapturingChanged();
}

void HotkeyCaptureCoordinator::setValidationMessage(std::optional<QString> message)
{
    if (message == m_validationMessage)
        return;
    m_validationMessage = std::move(message);
    Q_EMIT validationMessageChanged();
}

void HotkeyCaptureCoordinator::setPendingConflict(std::optional<PendingConflict> pending)
{
    if (!pending && !m_pendingConflict)
        return;
    m_pendingConflict = std::move(pending);
    Q_EMIT pendingConflictChanged();
}

} // namespace tolvane
