// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace tolvane {

// The name of a key as the user sees it: "A", "Space", "F5", "⌫"; "(123)" for a key without one;
// empty for the modifier-only code.
QString keyName(quint32 keyCode);

// Modifier symbols in the fixed order ⌃ ⌥ ⇧ ⌘, then the key's name: "⌥Space", "⌃⌥", "⇧⌘4".
QString hotkeyDisplayString(quint32 keyCode, quint32 modifiers);

// Keys that type text: letters, digits and punctuation of the main block, Return, Tab, Space and
// the grave-accent key. A bare typing key would be lost to every application as a hotkey.
bool isTypingKey(quint32 keyCode);

// The keycaps of a display string: one per leading modifier symbol, then the rest as one cap.
QStringList keycapLabels(const QString& displayString);

} // namespace tolvane
