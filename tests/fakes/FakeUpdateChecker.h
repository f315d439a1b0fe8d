// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/UpdateChecker.h"

namespace tolvane {

class FakeUpdateChecker final : public UpdateChecker
{
public:
    bool available = true;
    int checks = 0;
    bool canCheckForUpdates() const override { return available; }
    void checkForUpdates() override { ++checks; }
};

} // namespace tolvane
