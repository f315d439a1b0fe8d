// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/UpdateChecker.h"

#include <utility>

namespace tolvane {

// Keeps each fetch pending until the test answers it.
class FakeUpdateChecker final : public UpdateChecker
{
public:
    bool available = true;
    int fetches = 0;
    int cancels = 0;
    FeedHandler pending;

    bool canCheckForUpdates() const override { return available; }
    void fetchReleaseFeed(FeedHandler done) override
    {
        ++fetches;
        pending = std::move(done);
    }
    void cancel() override
    {
        ++cancels;
        pending = {};
    }
    // Answers the running fetch, if any.
    void answer(Result<QByteArray> result)
    {
        if (FeedHandler done = std::exchange(pending, {}))
            done(std::move(result));
    }
};

} // namespace tolvane
