// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/progress/MilestoneWindowManager.h"

#include "core/progress/ProgressTexts.h"
#include "core/support/Logging.h"
#include "ui/progress/MilestoneCelebrationView.h"
#include "ui/progress/ProgressWindow.h"

TOLVANE_DEFINE_LOG(lcMilestoneWindowManager, "MilestoneWindowManager")

namespace tolvane {

MilestoneWindowManager::MilestoneWindowManager(SharePresenter& presenter, QObject* parent)
    : QObject(parent)
    , m_presenter(presenter)
{}

MilestoneWindowManager::~MilestoneWindowManager()
{
    delete m_window;
}

MilestoneCelebrationView* MilestoneWindowManager::window() const
{
    return m_window;
}

void MilestoneWindowManager::show(const LookupMilestone& milestone)
{
    qCInfo(lcMilestoneWindowManager) << "Celebrating" << milestone.count << "look-ups";
    if (m_window) {
        // An earlier celebration stays on screen until it is closed, and then it goes.
        if (m_window->isVisible())
            m_window->setAttribute(Qt::WA_DeleteOnClose);
        else
            m_window->deleteLater();
    }
    m_window = new MilestoneCelebrationView(milestone, m_presenter);
    makeFixedWindow(m_window, progress_texts::celebrationWindowTitle, contentSize, false);
    centreOnPointerScreen(m_window);
    bringToFront(m_window);
}

} // namespace tolvane
