// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace tolvane {

using Duration = std::chrono::milliseconds;
using Task = std::function<void()>;

// A handle on a timer. Copies share the timer; dropping every copy leaves the timer running, so a
// one-shot may be fired and forgotten. cancel() stops it for good and is safe to repeat.
class TimerHandle
{
public:
    struct State
    {
        bool cancelled = false;
        bool fired = false; // one-shots only
        std::function<void()> onCancel;
    };

    TimerHandle() = default;
    explicit TimerHandle(std::shared_ptr<State> state)
        : m_state(std::move(state))
    {}

    void cancel();
    // True while the timer may still fire.
    bool isActive() const { return m_state && !m_state->cancelled && !m_state->fired; }

private:
    std::shared_ptr<State> m_state;
};

// Main-thread tasks and timers. All state of the application lives on the main thread; work done
// elsewhere comes back through post(), which is the one member that may be called from any thread.
class Scheduler
{
public:
    virtual ~Scheduler() = default;

    // Runs task on the main thread after the current event has been handled, in posting order.
    virtual void post(Task task) = 0;
    virtual TimerHandle singleShot(Duration delay, Task task) = 0;
    // Runs task every period until cancelled; the first run is one period from now.
    virtual TimerHandle repeating(Duration period, Task task) = 0;
};

} // namespace tolvane
