// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <optional>

namespace tolvane {

// One key of the stored convention (a virtual key code, positions of a US keyboard) with the X
// keysym that names it on this desktop and the Qt key a key event carries for it.
struct HotkeyKey
{
    quint32 keyCode;
    quint32 keysym;
    int qtKey;
    bool keypad; // Qt reports keypad keys as the main key plus the keypad modifier
};

// The one table between stored key codes, X keysyms and Qt keys, both ways.
namespace HotkeyKeyTable {

std::optional<HotkeyKey> byKeyCode(quint32 keyCode);
std::optional<HotkeyKey> byKeysym(quint32 keysym);
std::optional<HotkeyKey> byQtKey(int qtKey, bool keypad);

// The stored modifier bit a modifier key stands for (Super is Command, Alt is Option); 0 for
// other keys.
quint32 modifierForKeysym(quint32 keysym);

} // namespace HotkeyKeyTable

} // namespace tolvane
