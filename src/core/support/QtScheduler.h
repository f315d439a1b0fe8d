// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/Scheduler.h"

#include <QObject>

namespace tolvane {

// The scheduler of the running application: the Qt event loop of the thread that created it.
class QtScheduler final : public QObject, public Scheduler
{
    Q_OBJECT
public:
    explicit QtScheduler(QObject* parent = nullptr);

    void post(Task task) override;
    TimerHandle singleShot(Duration delay, Task task) override;
    TimerHandle repeating(Duration period, Task task) override;

private:
    TimerHandle start(Duration interval, bool once, Task task);
};

} // namespace tolvane
