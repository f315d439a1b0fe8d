// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/hotkeys/HotkeyConflictChecker.h"

#include "core/support/PlatformWording.h"

#include <array>

namespace tolvane {

namespace {

QString bareKeyReason()
{
    return QStringLiteral("This is a single key with no modifier (⌘/⌥/⌃/⇧). Bare keys are global shortcuts, so "
                          "they can stop that key or system action from working normally in other apps.");
}

QString knownShortcutReason(const QString& name)
{
    return QStringLiteral("This matches a common desktop shortcut: ") + name +
           onThisPlatform(QStringLiteral(". Using it may stop that shortcut from working, or Tolvane's hotkey may not "
                                         "register at all. (This is a best-effort list of well-known shortcuts, not "
                                         "a complete check of every shortcut on your Mac.)"));
}

QString refusedReason()
{
    return onThisPlatform(QStringLiteral("macOS refused to register this combination — something else (a system "
                                         "feature or another app) has already claimed it."));
}

} // namespace

std::span<const HotkeyConflictChecker::KnownShortcut> HotkeyConflictChecker::knownShortcuts()
{
    using namespace CarbonModifier;
    static const std::array table{
        KnownShortcut{49, option, QStringLiteral("Window menu (⌥Space)")},
        KnownShortcut{48, option, QStringLiteral("Window switcher (⌥Tab)")},
        KnownShortcut{118, option, QStringLiteral("Close window (⌥F4)")},
        KnownShortcut{120, option, QStringLiteral("Run command (⌥F2)")},
        KnownShortcut{49, command, QStringLiteral("Switch input source (⌘Space)")},
        KnownShortcut{17, control | option, QStringLiteral("Terminal (⌃⌥T)")},
        KnownShortcut{37, command, QStringLiteral("Lock screen (⌘L)")},
        KnownShortcut{HotkeyCombination::modifierOnlyKeyCode, command, QStringLiteral("Activities overview (⌘)")},
    };
    return table;
}

std::optional<HotkeyConflictChecker::Conflict> HotkeyConflictChecker::check(quint32 keyCode, quint32 modifiers,
                                                                            std::optional<HotkeyCombination> current,
                                                                            GlobalHotkeyService& service)
{
    QStringList reasons;
    if (modifiers == 0)
        reasons.append(bareKeyReason());

    for (const KnownShortcut& shortcut : knownShortcuts()) {
        if (shortcut.keyCode == keyCode && shortcut.modifiers == modifiers) {
            reasons.append(knownShortcutReason(shortcut.name));
            break;
        }
    }

    const bool isCurrent = current && current->keyCode == keyCode && current->modifiers == modifiers;
    if (!isCurrent && keyCode != HotkeyCombination::modifierOnlyKeyCode) {
        const Result<void> probe = service.registerHotkey(keyCode, modifiers, probeID);
        // Released whatever the outcome, so that nothing of the probe outlives the check.
        service.unregisterHotkey(probeID);
        if (!probe.ok())
            reasons.append(refusedReason());
    }

    if (reasons.isEmpty())
        return std::nullopt;
    return Conflict{reasons};
}

} // namespace tolvane
