// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Workspace.h"

namespace tolvane {

class NullWorkspace final : public Workspace
{
public:
    bool openUrl(const QUrl&) override { return false; }
    QString frontmostApplicationName() const override { return {}; }
};

} // namespace tolvane
