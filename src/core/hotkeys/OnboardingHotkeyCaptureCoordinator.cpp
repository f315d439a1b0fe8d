// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/hotkeys/OnboardingHotkeyCaptureCoordinator.h"

#include "core/hotkeys/HotkeyCaptureCoordinator.h"
#include "core/hotkeys/HotkeyCaptureTexts.h"
#include "core/hotkeys/HotkeyManager.h"
#include "core/hotkeys/KeyNames.h"

#include <QPointer>

namespace tolvane {

OnboardingHotkeyCaptureCoordinator::OnboardingHotkeyCaptureCoordinator(EventMonitor& monitor, HotkeyManager& manager,
                                                                       QObject* parent)
    : QObject(parent)
    , m_eventMonitor(monitor)
    , m_manager(manager)
    , m_keyMonitor(monitor)
{}

OnboardingHotkeyCaptureCoordinator::~OnboardingHotkeyCaptureCoordinator()
{
    stopCapture();
}

void OnboardingHotkeyCaptureCoordinator::startCapture()
{
    setCapturing(true);
    setValidationMessage(std::nullopt);
    m_eventMonitor.activateApplication();
    QPointer<OnboardingHotkeyCaptureCoordinator> self(this);
    m_keyMonitor.install([self](const KeyEvent& event) {
        if (!self || event.type != KeyEvent::Type::keyDown)
            return false;
        self->handleKeyDown(event);
        return true;
    });
}

void OnboardingHotkeyCaptureCoordinator::stopCapture()
{
    m_keyMonitor.remove();
    setCapturing(false);
}

void OnboardingHotkeyCaptureCoordinator::handleKeyDown(const KeyEvent& event)
{
    const quint32 modifiers = event.modifierFlags & CarbonModifier::all;
    if (event.keyCode == HotkeyCaptureCoordinator::escapeKeyCode) {
        stopCapture();
        return;
    }
    if (modifiers == 0) {
        setValidationMessage(HotkeyCaptureTexts::bareKey(keyName(event.keyCode)));
    } else {
        m_manager.updateHotkey(event.keyCode, modifiers);
        setValidationMessage(std::nullopt);
    }
    stopCapture();
}

void OnboardingHotkeyCaptureCoordinator::setCapturing(bool capturing)
{
    if (capturing == m_isCapturing)
        return;
    m_isCapturing = capturing;
    Q_EMIT isCapturingChanged();
}

void OnboardingHotkeyCaptureCoordinator::setValidationMessage(std::optional<QString> message)
{
    if (message == m_validationMessage)
        return;
    m_validationMessage = std::move(message);
    Q_EMIT validationMessageChanged();
}

} // namespace tolvane
