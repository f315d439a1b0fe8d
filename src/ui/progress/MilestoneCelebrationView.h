// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/progress/LookupMilestone.h"

#include <QWidget>

class QPushButton;

namespace tolvane {

class SharePresenter;

// The celebration of a look-up milestone: the number reached, the word that reached it with its
// translation, "Not Now" and "Share Milestone".
class MilestoneCelebrationView final : public QWidget
{
    Q_OBJECT
public:
    MilestoneCelebrationView(const LookupMilestone& milestone, SharePresenter& presenter, QWidget* parent = nullptr);

    const LookupMilestone& milestone() const { return m_milestone; }
    QPushButton* notNowButton() const { return m_notNow; }
    QPushButton* shareButton() const { return m_share; }

private:
    LookupMilestone m_milestone;
    SharePresenter& m_presenter;
    QPushButton* m_notNow;
    QPushButton* m_share;
};

} // namespace tolvane
