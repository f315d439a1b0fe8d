// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/UpdateChecker.h"

namespace tolvane {

class NullUpdateChecker final : public UpdateChecker
{
public:
    bool canCheckForUpdates() const override { return false; }
    void fetchReleaseFeed(FeedHandler done) override
    {
        done(Error{QStringLiteral("This build of Tolvane cannot check for updates.")});
    }
    void cancel() override {}
};

} // namespace tolvane
