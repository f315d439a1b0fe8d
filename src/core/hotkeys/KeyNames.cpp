// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/hotkeys/KeyNames.h"

#include "core/hotkeys/CarbonModifiers.h"
#include "core/setup/Preferences.h"

#include <array>

namespace tolvane {

namespace {

struct NamedKey
{
    quint32 keyCode;
    const char16_t* name;
};

constexpr std::array namedKeys{
    NamedKey{0, u"A"},         NamedKey{1, u"S"},         NamedKey{2, u"D"},         NamedKey{3, u"F"},
    NamedKey{4, u"H"},         NamedKey{5, u"G"},         NamedKey{6, u"Z"},         NamedKey{7, u"X"},
    NamedKey{8, u"C"},         NamedKey{9, u"V"},         NamedKey{11, u"B"},        NamedKey{12, u"Q"},
    NamedKey{13, u"W"},        NamedKey{14, u"E"},        NamedKey{15, u"R"},        NamedKey{16, u"Y"},
    NamedKey{17, u"T"},        NamedKey{18, u"1"},        NamedKey{19, u"2"},        NamedKey{20, u"3"},
    NamedKey{21, u"4"},        NamedKey{22, u"6"},        NamedKey{23, u"5"},        NamedKey{24, u"="},
    NamedKey{25, u"9"},        NamedKey{26, u"7"},        NamedKey{27, u"-"},        NamedKey{28, u"8"},
    NamedKey{29, u"0"},        NamedKey{30, u"]"},        NamedKey{31, u"O"},        NamedKey{32, u"U"},
    NamedKey{33, u"["},        NamedKey{34, u"I"},        NamedKey{35, u"P"},        NamedKey{36, u"↩"},
    NamedKey{37, u"L"},        NamedKey{38, u"J"},        NamedKey{39, u"'"},        NamedKey{40, u"K"},
    NamedKey{41, u";"},        NamedKey{42, u"\\"},       NamedKey{43, u","},        NamedKey{44, u"/"},
    NamedKey{45, u"N"},        NamedKey{46, u"M"},        NamedKey{47, u"."},        NamedKey{48, u"⇥"},
    NamedKey{49, u"Space"},    NamedKey{50, u"`"},        NamedKey{51, u"⌫"},        NamedKey{53, u"⎋"},
    NamedKey{65, u"Keypad ."}, NamedKey{67, u"Keypad *"}, NamedKey{69, u"Keypad +"}, NamedKey{71, u"Keypad Clear"},
    NamedKey{75, u"Keypad /"}, NamedKey{76, u"Keypad ↩"}, NamedKey{78, u"Keypad -"}, NamedKey{81, u"Keypad ="},
    NamedKey{82, u"Keypad 0"}, NamedKey{83, u"Keypad 1"}, NamedKey{84, u"Keypad 2"}, NamedKey{85, u"Keypad 3"},
    NamedKey{86, u"Keypad 4"}, NamedKey{87, u"Keypad 5"}, NamedKey{88, u"Keypad 6"}, NamedKey{89, u"Keypad 7"},
    NamedKey{91, u"Keypad 8"}, NamedKey{92, u"Keypad 9"}, NamedKey{96, u"F5"},       NamedKey{97, u"F6"},
    NamedKey{98, u"F7"},       NamedKey{99, u"F3"},       NamedKey{100, u"F8"},      NamedKey{101, u"F9"},
    NamedKey{103, u"F11"},     NamedKey{109, u"F10"},     NamedKey{111, u"F12"},     NamedKey{118, u"F4"},
    NamedKey{120, u"F2"},      NamedKey{122, u"F1"},
};

const QString modifierSymbols = QStringLiteral("⌃⌥⇧⌘");

} // namespace

QString keyName(quint32 keyCode)
{
    if (keyCode == HotkeyCombination::modifierOnlyKeyCode)
        return {};
    for (const NamedKey& key : namedKeys) {
        if (key.keyCode == keyCode)
            return QString::fromUtf16(key.name);
    }
    return QLatin1Char('(') + QString::number(keyCode) + QLatin1Char(')');
}

QString hotkeyDisplayString(quint32 keyCode, quint32 modifiers)
{
    QString text;
    if (modifiers & CarbonModifier::control)
        text += modifierSymbols.at(0);
    if (modifiers & CarbonModifier::option)
        text += modifierSymbols.at(1);
    if (modifiers & CarbonModifier::shift)
        text += modifierSymbols.at(2);
    if (modifiers & CarbonModifier::command)
        text += modifierSymbols.at(3);
    return text + keyName(keyCode);
}

bool isTypingKey(quint32 keyCode)
{
    return keyCode <= 50 && keyCode != 10;
}

QStringList keycapLabels(const QString& displayString)
{
    QStringList caps;
    for (qsizetype i = 0; i < displayString.size(); ++i) {
        if (!modifierSymbols.contains(displayString.at(i))) {
            caps.append(displayString.mid(i));
            break;
        }
        caps.append(displayString.at(i));
    }
    return caps;
}

} // namespace tolvane
