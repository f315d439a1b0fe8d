// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/Result.h"

#include <QString>

namespace tolvane {

// Counts the opening; an error text makes it fail with that text.
inline Result<void> openedSettings(int& openings, const QString& error)
{
    ++openings;
    if (!error.isEmpty())
        return Error{error};
    return {};
}

} // namespace tolvane
