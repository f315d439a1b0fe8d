// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/overlay/TranslationOverlayLifetime.h"

#include "core/setup/PreferenceKeys.h"
#include "core/setup/Preferences.h"
#include "core/support/Clock.h"
#include "core/support/Logging.h"

#include <cmath>

TOLVANE_DECLARE_LOG(lcTranslationOverlay)
TOLVANE_DEFINE_LOG(lcTranslationOverlay, "TranslationOverlayWindow")

namespace tolvane {

namespace {
// A day: longer is no reading time but a stored mistake (1e300 would overflow the timer).
constexpr double longestReadingSeconds = 24 * 60 * 60;
} // namespace

TranslationOverlayLifetime::TranslationOverlayLifetime(const Preferences& preferences, const Clock& clock,
                                                       Scheduler& scheduler, EventMonitor& events,
                                                       std::function<void()> orderOut)
    : m_preferences(preferences)
    , m_clock(clock)
    , m_scheduler(scheduler)
    , m_events(events)
    , m_orderOut(std::move(orderOut))
{}

TranslationOverlayLifetime::~TranslationOverlayLifetime()
{
    // Nothing may call back into a card that is gone.
    m_dismissTimer.cancel();
    removeMonitors();
}

Duration TranslationOverlayLifetime::duration() const
{
    double seconds = m_preferences.passageOverlayDurationSeconds();
    if (!std::isfinite(seconds) || seconds <= 0 || seconds > longestReadingSeconds) {
        qCWarning(lcTranslationOverlay).noquote() << QStringLiteral("%1=%2 is no reading time; using %3 s")
                                                         .arg(PreferenceKey::passageOverlayDurationSeconds)
                                                         .arg(seconds)
                                                         .arg(Preferences::defaultPassageOverlayDurationSeconds);
        seconds = Preferences::defaultPassageOverlayDurationSeconds;
    }
    return Duration(qint64(std::llround(seconds * 1000)));
}

void TranslationOverlayLifetime::shown()
{
    m_showTime = m_clock.now();
    scheduleAutoDismiss();
    removeMonitors();
    // The handlers return nothing: the click or key goes on to its target.
    m_clickMonitor = m_events.addClickMonitor([this] { dismiss(); });
    m_keyMonitor = m_events.addKeyPressMonitor([this] { dismiss(); });
}

void TranslationOverlayLifetime::scheduleAutoDismiss()
{
    m_dismissTimer.cancel();
    m_dismissTimer = m_scheduler.singleShot(duration(), [this] { dismiss(); });
}

void TranslationOverlayLifetime::requestDismiss()
{
    if (!m_showTime) {
        dismiss();
        return;
    }
    const qint64 elapsed = m_showTime->msecsTo(m_clock.now());
    const Duration remaining = std::max(duration() - Duration(elapsed), Duration(0));
    m_dismissTimer.cancel();
    if (remaining <= Duration(0)) {
        dismiss();
        return;
    }
    m_dismissTimer = m_scheduler.singleShot(remaining, [this] { dismiss(); });
}

void TranslationOverlayLifetime::dismiss()
{
    m_dismissTimer.cancel();
    m_dismissTimer = {};
    m_showTime.reset();
    removeMonitors();
    if (m_orderOut)
        m_orderOut();
}

void TranslationOverlayLifetime::removeMonitors()
{
    if (m_clickMonitor)
        m_events.removeMonitor(*m_clickMonitor);
    if (m_keyMonitor)
        m_events.removeMonitor(*m_keyMonitor);
    m_clickMonitor.reset();
    m_keyMonitor.reset();
}

} // namespace tolvane
