// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/hotkeys/LocalKeyMonitor.h"
#include "platform/EventMonitor.h"

#include <QObject>

#include <optional>

namespace tolvane {

class HotkeyManager;

// Captures the lookup hotkey in the first-run guide: only a key with at least one modifier is
// taken, without a conflict check; modifier-only combinations cannot be chosen here.
class OnboardingHotkeyCaptureCoordinator final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isCapturing READ isCapturing NOTIFY isCapturingChanged)
    Q_PROPERTY(QString validationMessage READ validationMessageText NOTIFY validationMessageChanged)
public:
    OnboardingHotkeyCaptureCoordinator(EventMonitor& monitor, HotkeyManager& manager, QObject* parent = nullptr);
    ~OnboardingHotkeyCaptureCoordinator() override;

    bool isCapturing() const { return m_isCapturing; }
    const std::optional<QString>& validationMessage() const { return m_validationMessage; }
    QString validationMessageText() const { return m_validationMessage.value_or(QString()); }

    void startCapture();
    void stopCapture();

Q_SIGNALS:
    void isCapturingChanged();
    void validationMessageChanged();

private:
    void handleKeyDown(const KeyEvent& event);
    void setCapturing(bool capturing);
    void setValidationMessage(std::optional<QString> message);

    EventMonitor& m_eventMonitor;
    HotkeyManager& m_manager;
    bool m_isCapturing = false;
    std::optional<QString> m_validationMessage;
    LocalKeyMonitor m_keyMonitor;
};

} // namespace tolvane
