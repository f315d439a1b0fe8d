// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/Result.h"

#include <QtGlobal>

#include <functional>

namespace tolvane {

// Identifies one registration: a four-character signature and a number.
struct HotkeyIdentifier
{
    quint32 signature = 0;
    quint32 id = 0;
    friend bool operator==(const HotkeyIdentifier&, const HotkeyIdentifier&) = default;
};

enum class HotkeyEventKind { pressed, released };

// System-wide key combinations. Key codes and modifier masks are in Tolvane's stored convention
// (virtual key codes; Command 256, Shift 512, Option 2048, Control 4096).
class GlobalHotkeyService
{
public:
    virtual ~GlobalHotkeyService() = default;

    using EventHandler = std::function<void(HotkeyIdentifier, HotkeyEventKind)>;
    using ModifierHandler = std::function<void(quint32 carbonModifiers)>;

    // Claims the combination for the whole desktop. Fails when another client holds it or the key
    // does not exist on this keyboard.
    virtual Result<void> registerHotkey(quint32 keyCode, quint32 modifiers, HotkeyIdentifier identifier) = 0;
    virtual void unregisterHotkey(HotkeyIdentifier identifier) = 0;
    virtual void setEventHandler(EventHandler handler) = 0;

    // Reports the set of held modifier keys each time it changes, system-wide, for combinations
    // made of modifier keys alone. Keys let go together may be told as one change: the in-between
    // set of a chord being released is not news.
    virtual Result<void> startModifierMonitor(ModifierHandler handler) = 0;
    virtual void stopModifierMonitor() = 0;
};

} // namespace tolvane
