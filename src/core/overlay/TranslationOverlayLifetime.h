// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/Scheduler.h"
#include "platform/EventMonitor.h"

#include <QDateTime>

#include <functional>
#include <optional>

namespace tolvane {

class Clock;
class Preferences;

// When the passage card closes: after its reading time (restarted by every update), on a click or
// key delivered to Tolvane's windows (the event still reaches its target), on a release of the
// hotkey once the reading time since the show has passed, or at once when told.
class TranslationOverlayLifetime final
{
public:
    // orderOut hides the card; it is called once per close.
    TranslationOverlayLifetime(const Preferences& preferences, const Clock& clock, Scheduler& scheduler,
                               EventMonitor& events, std::function<void()> orderOut);
    ~TranslationOverlayLifetime();
    TranslationOverlayLifetime(const TranslationOverlayLifetime&) = delete;
    TranslationOverlayLifetime& operator=(const TranslationOverlayLifetime&) = delete;

    // The card has just been shown: remember when, start the reading time, watch clicks and keys.
    void shown();
    // New content: the reading time starts again.
    void updated() { scheduleAutoDismiss(); }

    void scheduleAutoDismiss();
    // Closes now when the reading time since the show has passed, otherwise when it passes.
    void requestDismiss();
    void dismiss();

    bool isShown() const { return m_showTime.has_value(); }
    std::optional<QDateTime> showTime() const { return m_showTime; }
    // The reading time: passageOverlayDurationSeconds, or 3 s when it is absent, not above zero,
    // not a number or beyond any sensible reading time.
    Duration duration() const;

private:
    void removeMonitors();

    const Preferences& m_preferences;
    const Clock& m_clock;
    Scheduler& m_scheduler;
    EventMonitor& m_events;
    std::function<void()> m_orderOut;
    TimerHandle m_dismissTimer;
    std::optional<EventMonitor::Token> m_clickMonitor;
    std::optional<EventMonitor::Token> m_keyMonitor;
    std::optional<QDateTime> m_showTime;
};

} // namespace tolvane
