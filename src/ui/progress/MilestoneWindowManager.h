// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/progress/LookupMilestone.h"

#include <QObject>
#include <QPointer>
#include <QSize>

namespace tolvane {

class MilestoneCelebrationView;
class SharePresenter;

// Opens a celebration window for each milestone reached. Milestones that follow each other
// quickly leave one window each; the manager holds the last.
class MilestoneWindowManager final : public QObject
{
    Q_OBJECT
public:
    explicit MilestoneWindowManager(SharePresenter& presenter, QObject* parent = nullptr);
    ~MilestoneWindowManager() override;

    void show(const LookupMilestone& milestone);
    MilestoneCelebrationView* window() const;

    static constexpr QSize contentSize{390, 360};

private:
    SharePresenter& m_presenter;
    QPointer<MilestoneCelebrationView> m_window;
};

} // namespace tolvane
