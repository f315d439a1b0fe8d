// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/Result.h"

#include <QByteArray>

#include <functional>

namespace tolvane {

// Fetches Tolvane's release feed and checks its signature. It goes on the network only inside
// fetchReleaseFeed(), which runs only when the user asks for a check.
class UpdateChecker
{
public:
    // The signed release description (the feed's payload, signature checked), or why there is none.
    using FeedHandler = std::function<void(Result<QByteArray>)>;

    virtual ~UpdateChecker() = default;

    // Whether this build knows where its releases are announced and with which key.
    virtual bool canCheckForUpdates() const = 0;
    // Starts a fetch; done is called once, on the main thread, unless the fetch is cancelled.
    // A fetch started while another runs replaces it.
    virtual void fetchReleaseFeed(FeedHandler done) = 0;
    // Stops a running fetch; its handler is never called. Nothing happens when none runs.
    virtual void cancel() = 0;
};

} // namespace tolvane
