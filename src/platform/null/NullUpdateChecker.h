// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/UpdateChecker.h"

namespace tolvane {

class NullUpdateChecker final : public UpdateChecker
{
public:
    bool canCheckForUpdates() const override { return false; }
    void checkForUpdates() override {}
};

} // namespace tolvane
