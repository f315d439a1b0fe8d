// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/null/NullAccessibilityService.h"

namespace tolvane {

namespace {
const QString noDesktop = QStringLiteral("No desktop is available in this session.");
}

Result<void> NullAccessibilityService::openSystemSettings()
{
    return Error{noDesktop};
}

} // namespace tolvane
