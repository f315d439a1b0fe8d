// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/FakeScheduler.h"

#include <algorithm>

namespace tolvane {

void FakeScheduler::post(Task task)
{
    QMutexLocker lock(&m_postedMutex);
    m_posted.push_back(std::move(task));
}

TimerHandle FakeScheduler::singleShot(Duration delay, Task task)
{
    auto state = std::make_shared<TimerHandle::State>();
    m_timers.push_back(
        Timer{m_elapsed + std::max(delay, Duration(0)), m_sequence++, Duration(0), std::move(task), state});
    return TimerHandle(state);
}

TimerHandle FakeScheduler::repeating(Duration period, Task task)
{
    auto state = std::make_shared<TimerHandle::State>();
    const Duration step = std::max(period, Duration(1));
    m_timers.push_back(Timer{m_elapsed + step, m_sequence++, step, std::move(task), state});
    return TimerHandle(state);
}

int FakeScheduler::runPosted()
{
    int ran = 0;
    for (;;) {
        Task task;
        {
            QMutexLocker lock(&m_postedMutex);
            if (m_posted.empty())
                return ran;
            task = std::move(m_posted.front());
            m_posted.pop_front();
        }
        task();
        ++ran;
    }
}

void FakeScheduler::advance(Duration by)
{
    const Duration target = m_elapsed + std::max(by, Duration(0));
    runPosted();
    for (;;) {
        std::erase_if(m_timers, [](const Timer& t) { return t.state->cancelled || t.state->fired; });
        auto next = std::min_element(m_timers.begin(), m_timers.end(), [](const Timer& a, const Timer& b) {
            return a.due != b.due ? a.due < b.due : a.sequence < b.sequence;
        });
        if (next == m_timers.end() || next->due > target)
            break;
        if (m_clock)
            m_clock->advance(next->due - m_elapsed);
        m_elapsed = next->due;
        Task task = next->task; // the task may add timers, which moves the vector
        auto state = next->state;
        if (next->period.count() > 0) {
            next->due += next->period;
            next->sequence = m_sequence++;
        } else {
            state->fired = true;
        }
        task();
        runPosted();
    }
    if (m_clock)
        m_clock->advance(target - m_elapsed);
    m_elapsed = target;
    runPosted();
}

int FakeScheduler::activeTimerCount() const
{
    return int(std::count_if(m_timers.begin(), m_timers.end(),
                             [](const Timer& t) { return !t.state->cancelled && !t.state->fired; }));
}

int FakeScheduler::postedCount() const
{
    QMutexLocker lock(&m_postedMutex);
    return int(m_posted.size());
}

} // namespace tolvane
