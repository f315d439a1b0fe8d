// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/hotkeys/HotkeyKeyTable.h"

#include "core/hotkeys/CarbonModifiers.h"

#include <QtCore/qnamespace.h>

#include <array>

namespace tolvane {

namespace {

constexpr quint32 functionKeysym(int n)
{
    return 0xffbe + quint32(n - 1); // F1 … F35 are consecutive
}
constexpr int functionQtKey(int n)
{
    return Qt::Key_F1 + (n - 1);
}

// Letters are named by their lower-case keysym, which is what the key gives without Shift.
constexpr std::array keys{
    HotkeyKey{0, 'a', Qt::Key_A, false},
    HotkeyKey{1, 's', Qt::Key_S, false},
    HotkeyKey{2, 'd', Qt::Key_D, false},
    HotkeyKey{3, 'f', Qt::Key_F, false},
    HotkeyKey{4, 'h', Qt::Key_H, false},
    HotkeyKey{5, 'g', Qt::Key_G, false},
    HotkeyKey{6, 'z', Qt::Key_Z, false},
    HotkeyKey{7, 'x', Qt::Key_X, false},
    HotkeyKey{8, 'c', Qt::Key_C, false},
    HotkeyKey{9, 'v', Qt::Key_V, false},
    HotkeyKey{10, 0xa7, Qt::Key_section, false},
    HotkeyKey{11, 'b', Qt::Key_B, false},
    HotkeyKey{12, 'q', Qt::Key_Q, false},
    HotkeyKey{13, 'w', Qt::Key_W, false},
    HotkeyKey{14, 'e', Qt::Key_E, false},
    HotkeyKey{15, 'r', Qt::Key_R, false},
    HotkeyKey{16, 'y', Qt::Key_Y, false},
    HotkeyKey{17, 't', Qt::Key_T, false},
    HotkeyKey{18, '1', Qt::Key_1, false},
    HotkeyKey{19, '2', Qt::Key_2, false},
    HotkeyKey{20, '3', Qt::Key_3, false},
    HotkeyKey{21, '4', Qt::Key_4, false},
    HotkeyKey{22, '6', Qt::Key_6, false},
    HotkeyKey{23, '5', Qt::Key_5, false},
    HotkeyKey{24, '=', Qt::Key_Equal, false},
    HotkeyKey{25, '9', Qt::Key_9, false},
    HotkeyKey{26, '7', Qt::Key_7, false},
    HotkeyKey{27, '-', Qt::Key_Minus, false},
    HotkeyKey{28, '8', Qt::Key_8, false},
    HotkeyKey{29, '0', Qt::Key_0, false},
    HotkeyKey{30, ']', Qt::Key_BracketRight, false},
    HotkeyKey{31, 'o', Qt::Key_O, false},
    HotkeyKey{32, 'u', Qt::Key_U, false},
    HotkeyKey{33, '[', Qt::Key_BracketLeft, false},
    HotkeyKey{34, 'i', Qt::Key_I, false},
    HotkeyKey{35, 'p', Qt::Key_P, false},
    HotkeyKey{36, 0xff0d, Qt::Key_Return, false},
    HotkeyKey{37, 'l', Qt::Key_L, false},
    HotkeyKey{38, 'j', Qt::Key_J, false},
    HotkeyKey{39, '\'', Qt::Key_Apostrophe, false},
    HotkeyKey{40, 'k', Qt::Key_K, false},
    HotkeyKey{41, ';', Qt::Key_Semicolon, false},
    HotkeyKey{42, '\\', Qt::Key_Backslash, false},
    HotkeyKey{43, ',', Qt::Key_Comma, false},
    HotkeyKey{44, '/', Qt::Key_Slash, false},
    HotkeyKey{45, 'n', Qt::Key_N, false},
    HotkeyKey{46, 'm', Qt::Key_M, false},
    HotkeyKey{47, '.', Qt::Key_Period, false},
    HotkeyKey{48, 0xff09, Qt::Key_Tab, false},
    HotkeyKey{49, ' ', Qt::Key_Space, false},
    HotkeyKey{50, '`', Qt::Key_QuoteLeft, false},
    HotkeyKey{51, 0xff08, Qt::Key_Backspace, false},
    HotkeyKey{53, 0xff1b, Qt::Key_Escape, false},
    HotkeyKey{54, 0xffec, Qt::Key_Super_R, false},  // Super_R
    HotkeyKey{55, 0xffeb, Qt::Key_Super_L, false},  // Super_L
    HotkeyKey{56, 0xffe1, Qt::Key_Shift, false},    // Shift_L
    HotkeyKey{57, 0xffe5, Qt::Key_CapsLock, false}, // Caps_Lock
    HotkeyKey{58, 0xffe9, Qt::Key_Alt, false},      // Alt_L
    HotkeyKey{59, 0xffe3, Qt::Key_Control, false},  // Control_L
    HotkeyKey{60, 0xffe2, Qt::Key_unknown, false},  // Shift_R: Qt does not tell the sides apart
    HotkeyKey{61, 0xffea, Qt::Key_unknown, false},  // Alt_R
    HotkeyKey{62, 0xffe4, Qt::Key_unknown, false},  // Control_R
    HotkeyKey{64, functionKeysym(17), functionQtKey(17), false},
    HotkeyKey{65, 0xffae, Qt::Key_Period, true},   // KP_Decimal
    HotkeyKey{67, 0xffaa, Qt::Key_Asterisk, true}, // KP_Multiply
    HotkeyKey{69, 0xffab, Qt::Key_Plus, true},     // KP_Add
    HotkeyKey{71, 0xff0b, Qt::Key_Clear, true},    // Clear
    HotkeyKey{72, 0x1008ff13, Qt::Key_VolumeUp, false},
    HotkeyKey{73, 0x1008ff11, Qt::Key_VolumeDown, false},
    HotkeyKey{74, 0x1008ff12, Qt::Key_VolumeMute, false},
    HotkeyKey{75, 0xffaf, Qt::Key_Slash, true}, // KP_Divide
    HotkeyKey{76, 0xff8d, Qt::Key_Enter, true}, // KP_Enter
    HotkeyKey{78, 0xffad, Qt::Key_Minus, true}, // KP_Subtract
    HotkeyKey{79, functionKeysym(18), functionQtKey(18), false},
    HotkeyKey{80, functionKeysym(19), functionQtKey(19), false},
    HotkeyKey{81, 0xffbd, Qt::Key_Equal, true}, // KP_Equal
    HotkeyKey{82, 0xffb0, Qt::Key_0, true},
    HotkeyKey{83, 0xffb1, Qt::Key_1, true},
    HotkeyKey{84, 0xffb2, Qt::Key_2, true},
    HotkeyKey{85, 0xffb3, Qt::Key_3, true},
    HotkeyKey{86, 0xffb4, Qt::Key_4, true},
    HotkeyKey{87, 0xffb5, Qt::Key_5, true},
    HotkeyKey{88, 0xffb6, Qt::Key_6, true},
    HotkeyKey{89, 0xffb7, Qt::Key_7, true},
    HotkeyKey{90, functionKeysym(20), functionQtKey(20), false},
    HotkeyKey{91, 0xffb8, Qt::Key_8, true},
    HotkeyKey{92, 0xffb9, Qt::Key_9, true},
    HotkeyKey{96, functionKeysym(5), functionQtKey(5), false},
    HotkeyKey{97, functionKeysym(6), functionQtKey(6), false},
    HotkeyKey{98, functionKeysym(7), functionQtKey(7), false},
    HotkeyKey{99, functionKeysym(3), functionQtKey(3), false},
    HotkeyKey{100, functionKeysym(8), functionQtKey(8), false},
    HotkeyKey{101, functionKeysym(9), functionQtKey(9), false},
    HotkeyKey{103, functionKeysym(11), functionQtKey(11), false},
    HotkeyKey{105, functionKeysym(13), functionQtKey(13), false},
    HotkeyKey{106, functionKeysym(16), functionQtKey(16), false},
    HotkeyKey{107, functionKeysym(14), functionQtKey(14), false},
    HotkeyKey{109, functionKeysym(10), functionQtKey(10), false},
    HotkeyKey{111, functionKeysym(12), functionQtKey(12), false},
    HotkeyKey{113, functionKeysym(15), functionQtKey(15), false},
    HotkeyKey{114, 0xff63, Qt::Key_Insert, false}, // Help sits where PC keyboards have Insert
    HotkeyKey{115, 0xff50, Qt::Key_Home, false},
    HotkeyKey{116, 0xff55, Qt::Key_PageUp, false},
    HotkeyKey{117, 0xffff, Qt::Key_Delete, false},
    HotkeyKey{118, functionKeysym(4), functionQtKey(4), false},
    HotkeyKey{119, 0xff57, Qt::Key_End, false},
    HotkeyKey{120, functionKeysym(2), functionQtKey(2), false},
    HotkeyKey{121, 0xff56, Qt::Key_PageDown, false},
    HotkeyKey{122, functionKeysym(1), functionQtKey(1), false},
    HotkeyKey{123, 0xff51, Qt::Key_Left, false},
    HotkeyKey{124, 0xff53, Qt::Key_Right, false},
    HotkeyKey{125, 0xff54, Qt::Key_Down, false},
    HotkeyKey{126, 0xff52, Qt::Key_Up, false},
};

// Keysyms a keypad key gives while Num Lock is off: the same physical key, so the same code.
struct KeypadAlias
{
    quint32 keysym;
    quint32 keyCode;
};
constexpr std::array keypadAliases{
    KeypadAlias{0xff9e, 82}, // KP_Insert
    KeypadAlias{0xff9c, 83}, // KP_End
    KeypadAlias{0xff99, 84}, // KP_Down
    KeypadAlias{0xff9b, 85}, // KP_Next
    KeypadAlias{0xff96, 86}, // KP_Left
    KeypadAlias{0xff9d, 87}, // KP_Begin
    KeypadAlias{0xff98, 88}, // KP_Right
    KeypadAlias{0xff95, 89}, // KP_Home
    KeypadAlias{0xff97, 91}, // KP_Up
    KeypadAlias{0xff9a, 92}, // KP_Prior
    KeypadAlias{0xff9f, 65}, // KP_Delete
};

} // namespace

namespace HotkeyKeyTable {

std::optional<HotkeyKey> byKeyCode(quint32 keyCode)
{
    for (const HotkeyKey& key : keys) {
        if (key.keyCode == keyCode)
            return key;
    }
    return std::nullopt;
}

std::optional<HotkeyKey> byKeysym(quint32 keysym)
{
    // Upper-case letters are the same keys as their lower-case keysyms.
    if (keysym >= 'A' && keysym <= 'Z')
        keysym += 'a' - 'A';
    for (const HotkeyKey& key : keys) {
        if (key.keysym == keysym)
            return key;
    }
    for (const KeypadAlias& alias : keypadAliases) {
        if (alias.keysym == keysym)
            return byKeyCode(alias.keyCode);
    }
    switch (keysym) {
    case 0xfe20: // ISO_Left_Tab: Shift+Tab
        return byKeyCode(48);
    default:
        return std::nullopt;
    }
}

std::optional<HotkeyKey> byQtKey(int qtKey, bool keypad)
{
    if (qtKey == Qt::Key_unknown)
        return std::nullopt;
    if (qtKey == Qt::Key_Backtab)
        return byKeyCode(48);
    for (const HotkeyKey& key : keys) {
        if (key.qtKey == qtKey && key.keypad == keypad)
            return key;
    }
    // Keypad keys that Qt does not mark as keypad keys are still the keys they name.
    for (const HotkeyKey& key : keys) {
        if (key.qtKey == qtKey)
            return key;
    }
    return std::nullopt;
}

quint32 modifierForKeysym(quint32 keysym)
{
    switch (keysym) {
    case 0xffe1: // Shift_L
    case 0xffe2: // Shift_R
        return CarbonModifier::shift;
    case 0xffe3: // Control_L
    case 0xffe4: // Control_R
        return CarbonModifier::control;
    case 0xffe7: // Meta_L
    case 0xffe8: // Meta_R
    case 0xffe9: // Alt_L
    case 0xffea: // Alt_R
        return CarbonModifier::option;
    case 0xffeb: // Super_L
    case 0xffec: // Super_R
        return CarbonModifier::command;
    default:
        return 0;
    }
}

} // namespace HotkeyKeyTable

} // namespace tolvane
