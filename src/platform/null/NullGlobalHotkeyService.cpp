// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/null/NullGlobalHotkeyService.h"

namespace tolvane {

namespace {
const QString noDesktop = QStringLiteral("No desktop is available in this session.");
}

Result<void> NullGlobalHotkeyService::registerHotkey(quint32, quint32, HotkeyIdentifier)
{
    return Error{noDesktop};
}

Result<void> NullGlobalHotkeyService::startModifierMonitor(ModifierHandler)
{
    return Error{noDesktop};
}

} // namespace tolvane
