// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/Scheduler.h"

#include <QObject>

#include <array>

namespace tolvane {

// How a change of the welcome demonstration's phase is animated.
struct DemoAnimation
{
    enum class Curve { none, easeInOut, easeOut, spring };
    Curve curve = Curve::none;
    double durationSeconds = 0; // ease curves
    double response = 0;        // spring: period of the undamped oscillation, seconds
    double dampingFraction = 0; // spring: 1 is critically damped

    // How long the change runs: the ease duration, or the time until a spring has settled.
    double totalSeconds() const;
    // Progress from 0 to 1 at `seconds` into the change; a spring may overshoot 1 on the way.
    double progress(double seconds) const;
};

// One row of the demonstration's loop: the phase it sets, how, and how long it then waits.
struct DemoStep
{
    int phase;
    DemoAnimation animation;
    double waitSeconds;
};

// What the demonstration shows at rest in a phase; the widget draws these values and eases
// between them.
struct DemoFrame
{
    double pointer = 0;   // 0 at rest below the sentence, 1 on the word
    double highlight = 0; // the word set apart
    double press = 0;     // the hotkey going down
    double card = 0;      // the small card with the translation
    double speaker = 0;   // the speaker sounding

    static DemoFrame forPhase(int phase);
    // from + (to − from) × t, field by field.
    static DemoFrame mix(const DemoFrame& from, const DemoFrame& to, double t);
};

double easeInOut(double t);
double easeOut(double t);

// Plays the loop while started: sets the phase, reports it with its animation, waits, and goes
// on; stop() leaves no timer behind. Time comes from the scheduler.
class OnboardingDemoTimeline final : public QObject
{
    Q_OBJECT
public:
    static const std::array<DemoStep, 7>& steps();

    explicit OnboardingDemoTimeline(Scheduler& scheduler, QObject* parent = nullptr);
    ~OnboardingDemoTimeline() override;

    void start();
    void stop();
    bool isRunning() const { return m_running; }
    int phase() const { return m_phase; }

Q_SIGNALS:
    void phaseChanged(int phase, const tolvane::DemoAnimation& animation);

private:
    void runStep(std::size_t index);

    Scheduler& m_scheduler;
    bool m_running = false;
    int m_phase = 0;
    TimerHandle m_wait;
};

} // namespace tolvane
