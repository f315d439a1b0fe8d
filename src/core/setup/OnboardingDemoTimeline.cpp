// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/setup/OnboardingDemoTimeline.h"

#include <QPointer>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tolvane {

namespace {

using Curve = DemoAnimation::Curve;

// The x or y of a cubic Bézier from (0,0) to (1,1) with control values a and b, at parameter s.
double bezier(double a, double b, double s)
{
    const double r = 1 - s;
    return 3 * r * r * s * a + 3 * r * s * s * b + s * s * s;
}

// The curve's y where its x is t, found by bisection (x is monotonic for these control points).
double cubicCurve(double x1, double y1, double x2, double y2, double t)
{
    t = std::clamp(t, 0.0, 1.0);
    double low = 0, high = 1;
    for (int i = 0; i < 40; ++i) {
        const double mid = (low + high) / 2;
        (bezier(x1, x2, mid) < t ? low : high) = mid;
    }
    return bezier(y1, y2, (low + high) / 2);
}

// A spring counts as settled once its remaining swing is under a thousandth of the change.
constexpr double settledFraction = 0.001;

DemoAnimation spring(double response, double dampingFraction)
{
    return {Curve::spring, 0, response, dampingFraction};
}
DemoAnimation ease(Curve curve, double seconds)
{
    return {curve, seconds, 0, 0};
}

} // namespace

double easeInOut(double t)
{
    return cubicCurve(0.42, 0, 0.58, 1, t);
}

double easeOut(double t)
{
    return cubicCurve(0, 0, 0.58, 1, t);
}

double DemoAnimation::totalSeconds() const
{
    switch (curve) {
    case Curve::none:
        return 0;
    case Curve::easeInOut:
    case Curve::easeOut:
        return durationSeconds;
    case Curve::spring: {
        const double omega = 2 * std::numbers::pi / response;
        return -std::log(settledFraction) / (std::min(dampingFraction, 1.0) * omega);
    }
    }
    return 0;
}

double DemoAnimation::progress(double seconds) const
{
    const double total = totalSeconds();
    if (total <= 0 || seconds >= total)
        return 1;
    if (seconds <= 0)
        return 0;
    switch (curve) {
    case Curve::none:
        return 1;
    case Curve::easeInOut:
        return easeInOut(seconds / total);
    case Curve::easeOut:
        return easeOut(seconds / total);
    case Curve::spring: {
        // An underdamped oscillator released from rest, one unit from where it settles.
        const double omega = 2 * std::numbers::pi / response;
        const double zeta = std::clamp(dampingFraction, 0.01, 0.999);
        const double damped = omega * std::sqrt(1 - zeta * zeta);
        const double envelope = std::exp(-zeta * omega * seconds);
        return 1 - envelope * (std::cos(damped * seconds) + zeta * omega / damped * std::sin(damped * seconds));
    }
    }
    return 1;
}

DemoFrame DemoFrame::forPhase(int phase)
{
    // 0 rest; 1 the pointer arrives; 2 the word is set apart; 3 the hotkey goes down; 4 the card
    // appears; 5 the speaker sounds; 6 everything returns to rest while the card fades.
    switch (phase) {
    case 1:
        return {1, 0, 0, 0, 0};
    case 2:
        return {1, 1, 0, 0, 0};
    case 3:
        return {1, 1, 1, 0, 0};
    case 4:
        return {1, 1, 0, 1, 0};
    case 5:
        return {1, 1, 0, 1, 1};
    default:
        return {};
    }
}

DemoFrame DemoFrame::mix(const DemoFrame& from, const DemoFrame& to, double t)
{
    const auto at = [t](double a, double b) { return a + (b - a) * t; };
    return {at(from.pointer, to.pointer), at(from.highlight, to.highlight), at(from.press, to.press),
            at(from.card, to.card), at(from.speaker, to.speaker)};
}

const std::array<DemoStep, 7>& OnboardingDemoTimeline::steps()
{
    static const std::array<DemoStep, 7> table = {{
        {0, {}, 0.65},
        {1, ease(Curve::easeInOut, 0.8), 0.9},
        {2, spring(0.38, 0.82), 1.6},
        {3, ease(Curve::easeOut, 0.25), 0.35},
        {4, ease(Curve::easeInOut, 1.0), 1.15},
        {5, ease(Curve::easeOut, 0.2), 0.65},
        {6, spring(0.4, 0.84), 2.0},
    }};
    return table;
}

OnboardingDemoTimeline::OnboardingDemoTimeline(Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_scheduler(scheduler)
{}

OnboardingDemoTimeline::~OnboardingDemoTimeline()
{
    stop();
}

void OnboardingDemoTimeline::start()
{
    if (m_running)
        return;
    m_running = true;
    runStep(0);
}

void OnboardingDemoTimeline::stop()
{
    m_running = false;
    m_wait.cancel();
}

void OnboardingDemoTimeline::runStep(std::size_t index)
{
    const DemoStep& step = steps().at(index);
    m_phase = step.phase;
    Q_EMIT phaseChanged(step.phase, step.animation);
    if (!m_running) // a listener stopped the loop
        return;
    QPointer<OnboardingDemoTimeline> self(this);
    const std::size_t next = (index + 1) % steps().size();
    m_wait = m_scheduler.singleShot(Duration(qRound64(step.waitSeconds * 1000)), [self, next] {
        if (self && self->m_running)
            self->runStep(next);
    });
}

} // namespace tolvane
