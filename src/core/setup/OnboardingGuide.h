// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/hotkeys/HotkeyCaptureCoordinator.h"

#include <QList>
#include <QObject>
#include <QString>

#include <optional>

namespace tolvane {

class EventMonitor;
class HotkeyManager;
class LiveTranslationService;
class NotificationCenter;
class NotificationScheduler;
class Preferences;
class Scheduler;

// The first-run guide's state: which step is shown, the preparation of the chosen language's
// model, the hotkey capture, the notification request and the finish. The window shows it; a new
// guide is made each time the window opens, so every opening starts at the welcome with no model
// ready. Main thread only.
class OnboardingGuide final : public QObject
{
    Q_OBJECT
public:
    enum Step { welcome = 0, language = 1, hotkey = 2, reminders = 3, summary = 4 };
    static constexpr int stepCount = 5;
    // The word whose translation makes the language's model ready.
    static inline const QString preparationWord = QStringLiteral("hello");

    struct Services
    {
        Preferences& preferences;
        Scheduler& scheduler;
        LiveTranslationService& translation;
        NotificationCenter& notifications;
        NotificationScheduler& reminders;
        EventMonitor& eventMonitor;
        HotkeyManager& hotkeys;
    };

    explicit OnboardingGuide(Services services, QObject* parent = nullptr);
    ~OnboardingGuide() override;

    int currentStep() const { return m_currentStep; }
    bool hasSelectedLanguage() const { return m_hasSelectedLanguage; }
    bool isDownloadingModel() const { return m_isDownloadingModel; }
    bool modelReady() const { return m_modelReady; }
    const std::optional<QString>& downloadError() const { return m_downloadError; }
    int downloadTaskId() const { return m_downloadTaskId; }
    OnboardingHotkeyCaptureCoordinator& captureCoordinator() { return m_capture; }

    // Whether the primary button may be pressed: on the language step only once the last picked
    // language's model is ready.
    bool canContinue() const;
    bool showsBack() const { return m_currentStep >= language && m_currentStep <= reminders; }

    // "Back": stops a running capture and returns one step.
    void goBack();
    // "Get Started" / "Continue": stops a running capture; leaving the reminders step asks for
    // notification permission (every time); then the next step.
    void goForward();
    // A tap on a language row; ignored while a preparation runs.
    void chooseLanguage(const QString& code);
    // "Start using Tolvane": the guide is done, reminders are planned, and finished() asks the
    // window to close.
    void finish();

    // The picker's row for the stored interval (absent or not positive: the default), or -1 when
    // the stored value is none of the choices.
    int reminderFrequencyIndex() const;
    void setReminderFrequencyIndex(int index);

Q_SIGNALS:
    // Any of the fields above changed.
    void changed();
    void finished();

private:
    void preparationEnded(int token, const std::optional<QString>& error);

    Services m_services;
    int m_currentStep = welcome;
    bool m_hasSelectedLanguage = false;
    bool m_isDownloadingModel = false;
    bool m_modelReady = false;
    std::optional<QString> m_downloadError;
    int m_downloadTaskId = 0;
    OnboardingHotkeyCaptureCoordinator m_capture;
};

} // namespace tolvane
