// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Workspace.h"

namespace tolvane {

class DesktopWorkspace final : public Workspace
{
public:
    bool openUrl(const QUrl& url) override;
    QString frontmostApplicationName() const override;
};

} // namespace tolvane
