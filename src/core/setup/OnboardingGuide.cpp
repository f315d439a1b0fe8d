// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/setup/OnboardingGuide.h"

#include "core/setup/SettingsChoices.h"

#include "core/review/NotificationScheduler.h"
#include "core/setup/Preferences.h"
#include "core/support/Logging.h"
#include "core/support/Scheduler.h"
#include "core/translation/LanguageTable.h"
#include "core/translation/LiveTranslationService.h"

#include <QPointer>

#include <cmath>

TOLVANE_DEFINE_LOG(lcOnboardingGuide, "OnboardingGuide")

namespace tolvane {

OnboardingGuide::OnboardingGuide(Services services, QObject* parent)
    : QObject(parent)
    , m_services(services)
    , m_capture(services.eventMonitor, services.hotkeys)
{
    connect(&m_capture, &OnboardingHotkeyCaptureCoordinator::isCapturingChanged, this, &OnboardingGuide::changed);
    connect(&m_capture, &OnboardingHotkeyCaptureCoordinator::validationMessageChanged, this, &OnboardingGuide::changed);
}

OnboardingGuide::~OnboardingGuide()
{
    // While every field is still whole, so that listeners hear of the capture ending.
    m_capture.stopCapture();
}

bool OnboardingGuide::canContinue() const
{
    if (m_currentStep == language)
        return m_modelReady;
    return m_currentStep < summary;
}

void OnboardingGuide::goBack()
{
    if (!showsBack())
        return;
    m_capture.stopCapture();
    --m_currentStep;
    Q_EMIT changed();
}

void OnboardingGuide::goForward()
{
    if (!canContinue())
        return;
    m_capture.stopCapture();
    if (m_currentStep == reminders) {
        // Asked on every pass, so a user who went back and forth is asked again; where nobody
        // answers, the reminders are simply not shown and the guide goes on.
        NotificationScheduler* reminderScheduler = &m_services.reminders;
        // The scheduler outlives every guide: the answer is kept even if the guide closed.
        m_services.notifications.requestAuthorization([reminderScheduler](bool granted, const QString& error) {
            if (!error.isEmpty())
                qCInfo(lcOnboardingGuide).noquote() << "Notifications not granted:" << error;
            reminderScheduler->handleAuthorizationResult(granted);
        });
    }
    ++m_currentStep;
    Q_EMIT changed();
}

void OnboardingGuide::chooseLanguage(const QString& code)
{
    if (m_isDownloadingModel)
        return;
    if (!findLanguageOption(code)) {
        qCWarning(lcOnboardingGuide).noquote() << "Ignored a language outside the table:" << code;
        return;
    }
    m_services.preferences.setString(PreferenceKey::targetLanguage, code);
    m_hasSelectedLanguage = true;
    m_modelReady = false;
    m_downloadError.reset();
    m_isDownloadingModel = true;
    const int token = ++m_downloadTaskId;
    Q_EMIT changed();

    QPointer<OnboardingGuide> self(this);
    m_services.translation.translate(preparationWord, englishLanguageCode(), code, [self, token](Result<QString> r) {
        // A guide closed in the meantime has nothing left to show.
        if (self)
            self->preparationEnded(token, r ? std::nullopt : std::optional<QString>(r.error().message));
    });
}

void OnboardingGuide::preparationEnded(int token, const std::optional<QString>& error)
{
    if (token != m_downloadTaskId)
        return;
    m_isDownloadingModel = false;
    if (error) {
        qCWarning(lcOnboardingGuide).noquote() << "Preparing the language model failed:" << *error;
        m_downloadError = error;
    } else {
        m_modelReady = true;
    }
    Q_EMIT changed();
}

void OnboardingGuide::finish()
{
    m_capture.stopCapture();
    m_services.preferences.setBool(PreferenceKey::onboardingComplete, true);
    NotificationScheduler* reminderScheduler = &m_services.reminders;
    m_services.scheduler.post([reminderScheduler] { reminderScheduler->reschedule(); });
    qCInfo(lcOnboardingGuide) << "Guide finished";
    Q_EMIT finished();
}

int OnboardingGuide::reminderFrequencyIndex() const
{
    return tolvane::reminderFrequencyIndex(m_services.preferences.notificationIntervalHours());
}

void OnboardingGuide::setReminderFrequencyIndex(int index)
{
    const QList<ReminderFrequencyChoice>& choices = reminderFrequencyChoices();
    if (index < 0 || index >= choices.size() || index == reminderFrequencyIndex())
        return;
    m_services.preferences.setDouble(PreferenceKey::notificationIntervalHours, choices.at(index).hours);
    Q_EMIT changed();
}

} // namespace tolvane
