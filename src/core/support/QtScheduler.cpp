// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/support/QtScheduler.h"

#include <QMetaObject>
#include <QPointer>
#include <QTimer>

namespace tolvane {

QtScheduler::QtScheduler(QObject* parent)
    : QObject(parent)
{}

void QtScheduler::post(Task task)
{
    // A queued invocation is thread-safe and keeps posting order on the receiving thread.
    QMetaObject::invokeMethod(this, std::move(task), Qt::QueuedConnection);
}

TimerHandle QtScheduler::singleShot(Duration delay, Task task)
{
    return start(delay, true, std::move(task));
}

TimerHandle QtScheduler::repeating(Duration period, Task task)
{
    return start(period, false, std::move(task));
}

TimerHandle QtScheduler::start(Duration interval, bool once, Task task)
{
    auto state = std::make_shared<TimerHandle::State>();
    auto* timer = new QTimer(this);
    timer->setSingleShot(once);
    if (once)
        timer->setTimerType(Qt::PreciseTimer);
    QPointer<QTimer> guard(timer);
    connect(timer, &QTimer::timeout, this, [state, timer, once, task = std::move(task)] {
        if (once)
            timer->deleteLater();
        if (state->cancelled)
            return;
        state->fired = once;
        task();
    });
    state->onCancel = [guard] {
        if (guard) {
            guard->stop();
            guard->deleteLater();
        }
    };
    timer->start(interval);
    return TimerHandle(state);
}

} // namespace tolvane
