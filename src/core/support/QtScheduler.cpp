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
    auto state = std::make_shared<TimerHandle::State>();
    auto* timer = new QTimer(this);
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer);
    QPointer<QTimer> guard(timer);
    connect(timer, &QTimer::timeout, this, [state, timer, task = std::move(task)] {
        timer->deleteLater();
        if (state->cancelled)
            return;
        state->fired = true;
        task();
    });
    state->onCancel = [guard] {
        if (guard) {
            guard->stop();
            guard->deleteLater();
        }
    };
    timer->start(delay);
    return TimerHandle(state);
}

TimerHandle QtScheduler::repeating(Duration period, Task task)
{
    auto state = std::make_shared<TimerHandle::State>();
    auto* timer = new QTimer(this);
    QPointer<QTimer> guard(timer);
    connect(timer, &QTimer::timeout, this, [state, task = std::move(task)] {
        if (!state->cancelled)
            task();
    });
    state->onCancel = [guard] {
        if (guard) {
            guard->stop();
            guard->deleteLater();
        }
    };
    timer->start(period);
    return TimerHandle(state);
}

} // namespace tolvane
