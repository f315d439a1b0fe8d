// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/KeyReleaseMonitor.h"

namespace tolvane {

class NullKeyReleaseMonitor final : public KeyReleaseMonitor
{
public:
    Token addMonitor(Handler) override { return 0; }
    void removeMonitor(Token) override {}
};

} // namespace tolvane
