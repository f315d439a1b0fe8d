// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/progress/ProgressStatistics.h"

#include <QObject>
#include <QSize>

#include <memory>

namespace tolvane {

class StatsView;

// The one statistics window: raised when it is open, made anew (with fresh figures in the
// calendar of the moment) when it is not.
class StatsWindowManager final : public QObject
{
    Q_OBJECT
public:
    explicit StatsWindowManager(const ProgressSources& sources, StatsCalendarSource calendar = &StatsCalendar::current,
                                QObject* parent = nullptr);
    ~StatsWindowManager() override;

    void show();
    // The window, open or closed; none before the first show.
    StatsView* window() const { return m_window.get(); }

    static constexpr QSize contentSize{360, 460};

private:
    ProgressSources m_sources;
    StatsCalendarSource m_calendar;
    std::unique_ptr<StatsView> m_window;
};

} // namespace tolvane
