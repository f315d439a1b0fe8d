// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/hotkeys/HotkeyConflictChecker.h"
#include "core/hotkeys/LocalKeyMonitor.h"
#include "platform/EventMonitor.h"

#include <QObject>

#include <optional>

namespace tolvane {

class HotkeyManager;

// Captures a new lookup hotkey: the next key combination pressed. Built with the settings screen's
// rules: also the last set of modifiers pressed and let go on their own; bare typing keys are
// refused with a message, and anything the conflict checker worries about waits for the user's
// confirmation.
class HotkeyCaptureCoordinator : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isCapturing READ isCapturing NOTIFY isCapturingChanged)
    Q_PROPERTY(QString validationMessage READ validationMessageText NOTIFY validationMessageChanged)
public:
    static constexpr quint32 escapeKeyCode = 53;

    struct PendingConflict
    {
        quint32 keyCode;
        quint32 modifiers;
        HotkeyConflictChecker::Conflict conflict;
    };

    HotkeyCaptureCoordinator(EventMonitor& monitor, HotkeyManager& manager, GlobalHotkeyService& hotkeys,
                             QObject* parent = nullptr);
    ~HotkeyCaptureCoordinator() override;

    bool isCapturing() const { return m_isCapturing; }
    const std::optional<PendingConflict>& pendingConflict() const { return m_pendingConflict; }
    const std::optional<QString>& validationMessage() const { return m_validationMessage; }
    QString validationMessageText() const { return m_validationMessage.value_or(QString()); }

    void startCapture();
    // Also the action of the capture button pressed a second time.
    void stopCapture();
    void commit(quint32 keyCode, quint32 modifiers);
    // "Use Anyway".
    void confirmPendingConflict();
    // "Choose Different", or the dialog closed any other way.
    void dismissPendingConflict();

Q_SIGNALS:
    void isCapturingChanged();
    void pendingConflictChanged();
    void validationMessageChanged();

protected:
    // What a capture accepts.
    struct Rules
    {
        // Whether modifiers pressed and let go on their own are a candidate.
        bool modifierOnly = false;
        // What a candidate is checked against before it is taken. Without it a candidate is taken
        // at once, so every bare key is refused, not only the typing keys.
        GlobalHotkeyService* conflictsWith = nullptr;
    };

    HotkeyCaptureCoordinator(EventMonitor& monitor, HotkeyManager& manager, Rules rules, QObject* parent);

private:
    bool handleKeyDown(const KeyEvent& event);
    void handleFlagsChanged(const KeyEvent& event);
    std::optional<HotkeyConflictChecker::Conflict> conflictOf(quint32 keyCode, quint32 modifiers) const;
    void setCapturing(bool capturing);
    void setValidationMessage(std::optional<QString> message);
    void setPendingConflict(std::optional<PendingConflict> pending);

    EventMonitor& m_monitor;
    HotkeyManager& m_manager;
    Rules m_rules;
    bool m_isCapturing = false;
    std::optional<PendingConflict> m_pendingConflict;
    std::optional<QString> m_validationMessage;
    LocalKeyMonitor m_keyDownMonitor;
    LocalKeyMonitor m_flagsMonitor;
    quint32 m_lastHeldModifiers = 0; // stored mask of the last non-empty set seen
};

// Captures the lookup hotkey in the first-run guide: only a key with at least one modifier is
// taken, without a conflict check; modifier-only combinations cannot be chosen here.
class OnboardingHotkeyCaptureCoordinator final : public HotkeyCaptureCoordinator
{
public:
    OnboardingHotkeyCaptureCoordinator(EventMonitor& monitor, HotkeyManager& manager, QObject* parent = nullptr);
};

} // namespace tolvane
