// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/progress/ProgressStatistics.h"

#include <memory>

class QObject;

namespace tolvane {

class InstanceCommands;
class MilestoneWindowManager;
class StatsWindowManager;
struct LookupMilestone;

// The learner's progress on screen: the statistics window (also `tolvane open stats`) and the
// celebration of each look-up milestone.
class ProgressWiring final
{
public:
    // application: the object that holds the application's one share presenter.
    ProgressWiring(const ProgressSources& sources, InstanceCommands& commands, QObject& application);
    ~ProgressWiring();

    // The milestone manager's handler: opens the celebration before the look-up goes on.
    void celebrate(const LookupMilestone& milestone);

    StatsWindowManager& statsWindows() const { return *m_stats; }
    MilestoneWindowManager& milestoneWindows() const { return *m_milestones; }

private:
    std::unique_ptr<StatsWindowManager> m_stats;
    std::unique_ptr<MilestoneWindowManager> m_milestones;
};

} // namespace tolvane
