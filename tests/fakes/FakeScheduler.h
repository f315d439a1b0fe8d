// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/Clock.h"
#include "core/support/Scheduler.h"

#include <QMutex>
#include <QTimeZone>

#include <deque>
#include <vector>

namespace tolvane {

// A clock that stands still until told to move, or moves by a step at every reading.
class FakeClock final : public Clock
{
public:
    explicit FakeClock(QDateTime start = QDateTime(QDate(2026, 3, 2), QTime(9, 0), Qt::UTC))
        : m_now(std::move(start))
    {}
    QDateTime now() const override
    {
        m_now = m_now.addMSecs(m_stepPerReading.count());
        return m_now;
    }
    void setNow(QDateTime now) { m_now = std::move(now); }
    void advance(Duration by) { m_now = m_now.addMSecs(by.count()); }
    void setStepPerReading(Duration step) { m_stepPerReading = step; }

private:
    mutable QDateTime m_now;
    Duration m_stepPerReading{0};
};

// Virtual time: nothing runs until the test says so. advance() moves the clock timer by timer and
// runs each due timer, then every task posted meanwhile, in order; timers due at the same moment
// run in the order they were made.
class FakeScheduler final : public Scheduler
{
public:
    explicit FakeScheduler(FakeClock* clock = nullptr)
        : m_clock(clock)
    {}

    void post(Task task) override;
    TimerHandle singleShot(Duration delay, Task task) override;
    TimerHandle repeating(Duration period, Task task) override;

    // Runs posted tasks, including those they post, until none is left. Returns how many ran.
    int runPosted();
    void advance(Duration by);
    Duration elapsed() const { return m_elapsed; }
    int activeTimerCount() const;
    int postedCount() const;

private:
    struct Timer
    {
        Duration due;
        quint64 sequence;
        Duration period; // zero for one-shots
        Task task;
        std::shared_ptr<TimerHandle::State> state;
    };

    FakeClock* m_clock;
    Duration m_elapsed{0};
    quint64 m_sequence = 0;
    std::vector<Timer> m_timers;
    mutable QMutex m_postedMutex; // workers may post
    std::deque<Task> m_posted;
};

} // namespace tolvane
