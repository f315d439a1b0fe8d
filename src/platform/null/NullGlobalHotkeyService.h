// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/GlobalHotkeyService.h"

namespace tolvane {

class NullGlobalHotkeyService final : public GlobalHotkeyService
{
public:
    Result<void> registerHotkey(quint32, quint32, HotkeyIdentifier) override;
    void unregisterHotkey(HotkeyIdentifier) override {}
    void setEventHandler(EventHandler) override {}
    Result<void> startModifierMonitor(ModifierHandler) override;
    void stopModifierMonitor() override {}
};

} // namespace tolvane
