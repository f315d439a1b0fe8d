// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/hotkeys/CarbonModifiers.h"
#include "core/setup/Preferences.h"
#include "platform/GlobalHotkeyService.h"

#include <QStringList>

#include <optional>
#include <span>

namespace tolvane {

// Reasons why a newly captured combination may be a poor hotkey: a bare key, a well-known desktop
// shortcut, or a combination the desktop refuses. It only warns: the probe it registers is
// released before the check returns.
class HotkeyConflictChecker final
{
public:
    HotkeyConflictChecker() = delete;

    struct Conflict
    {
        QStringList reasons; // never empty
    };

    struct KnownShortcut
    {
        quint32 keyCode;
        quint32 modifiers;
        QString name;
    };

    static constexpr HotkeyIdentifier probeID{fourCharCode("TlvP"), 2};

    // Best-effort list of shortcuts common Linux desktops claim, compared by exact equality.
    static std::span<const KnownShortcut> knownShortcuts();

    // current: the combination now active, which is never probed (Tolvane itself holds it).
    static std::optional<Conflict> check(quint32 keyCode, quint32 modifiers, std::optional<HotkeyCombination> current,
                                         GlobalHotkeyService& service);
};

} // namespace tolvane
