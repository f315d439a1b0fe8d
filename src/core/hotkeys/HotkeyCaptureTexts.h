// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// The texts of capturing a new hotkey, shared by the settings screen and the guide.
namespace tolvane::HotkeyCaptureTexts {

// K is the key's display name: "A", "Space", "F5".
inline QString bareKey(const QString& k)
{
    return QStringLiteral("“") + k +
           QStringLiteral("” by itself would stop that key from typing normally. Use a modifier combo like ⌥") + k +
           QStringLiteral(", ⌃") + k + QStringLiteral(", or the default ⌃⌥Space.");
}

inline QString conflictTitle()
{
    return QStringLiteral("Possible Hotkey Conflict");
}
inline QString useAnyway()
{
    return QStringLiteral("Use Anyway");
}
inline QString chooseDifferent()
{
    return QStringLiteral("Choose Different");
}
inline QString changeButton()
{
    return QStringLiteral("Change…");
}
inline QString capturingButton()
{
    return QStringLiteral("Press combo…");
}
inline QString idleHint()
{
    return QStringLiteral("Use a modifier combo so normal typing still works. A new combo takes effect immediately.");
}
inline QString capturingHint()
{
    return QStringLiteral("Press a modifier combo, like ⌥Space or ⌥`. Click the button again to cancel.");
}

} // namespace tolvane::HotkeyCaptureTexts
