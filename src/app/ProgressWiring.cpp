// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ProgressWiring.h"

#include "app/InstanceCommands.h"
#include "ui/progress/MilestoneWindowManager.h"
#include "ui/progress/StatsWindowManager.h"
#include "ui/share/SharePresenter.h"

namespace tolvane {

ProgressWiring::ProgressWiring(const ProgressSources& sources, InstanceCommands& commands, QObject& application)
    : m_stats(std::make_unique<StatsWindowManager>(sources))
    , m_milestones(std::make_unique<MilestoneWindowManager>(SharePresenter::sharedBy(application)))
{
    StatsWindowManager* stats = m_stats.get();
    commands.addWindow(QStringLiteral("stats"), [stats] { stats->show(); });
}

ProgressWiring::~ProgressWiring() = default;

void ProgressWiring::celebrate(const LookupMilestone& milestone)
{
    m_milestones->show(milestone);
}

} // namespace tolvane
