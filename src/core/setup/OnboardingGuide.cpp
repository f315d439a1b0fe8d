// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/setup/OnboardingGuide.h"

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

const QList<ReminderFrequency>& OnboardingGuide::reminderFrequencies()
{
    static const QList<ReminderFrequency> frequencies = {
        {QStringLiteral("Every 15 minutes"), 0.25},
        {QStringLiteral("Every 30 minutes"), 0.5},
        {QStringLiteral("Every 1 hour"), 1},
        {QStringLiteral("Every 2 hours"), 2},
        {QStringLiteral("Every 4 hours (default)"), 4},
        {QStringLiteral("Every 8 hours"), 8},
        {QStringLiteral("Once a day"), 24},
    };
    return frequencies;
}

int OnboardingGuide::reminderFrequencyIndex() const
{
    const double hours = m_services.preferences.notificationIntervalHours();
    const QList<ReminderFrequency>& frequencies = reminderFrequencies();
    for (qsizetype i = 0; i < frequencies.size(); ++i) {
        if (std::abs(frequencies.at(i).hours - hours) < 1e-9)
            return int(i);
    }
    return -1;
}

void OnboardingGuide::setReminderFrequencyIndex(int index)
{
    if (index < 0 || index >= reminderFrequencies().size() || index == reminderFrequencyIndex())
        return;
    m_services.preferences.setDouble(PreferenceKey::notificationIntervalHours, reminderFrequencies().at(index).hours);
    Q_EMIT changed();
}

} // namespace tolvane
