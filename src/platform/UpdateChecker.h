// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>

namespace tolvane {

// Looks for a newer release of Tolvane.
class UpdateChecker
{
public:
    virtual ~UpdateChecker() = default;

    virtual bool canCheckForUpdates() const = 0;
    virtual void checkForUpdates() = 0;
};

} // namespace tolvane
