// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <string_view>

namespace tolvane {

// The stored modifier convention: one bit per modifier, or-ed together.
namespace CarbonModifier {
inline constexpr quint32 command = 256;
inline constexpr quint32 shift = 512;
inline constexpr quint32 option = 2048;
inline constexpr quint32 control = 4096;
inline constexpr quint32 all = command | shift | option | control;
} // namespace CarbonModifier

// Event modifier flags in the layout key events carry on the Mac side of the stored convention.
namespace EventModifierFlag {
inline constexpr quint64 shift = 1u << 17;
inline constexpr quint64 control = 1u << 18;
inline constexpr quint64 option = 1u << 19;
inline constexpr quint64 command = 1u << 20;
inline constexpr quint64 deviceIndependent = shift | control | option | command; // 0x1E0000
} // namespace EventModifierFlag

// Event flags to the stored mask. Caps Lock, Function, keypad and device-dependent bits are dropped.
constexpr quint32 carbonModifiers(quint64 eventFlags)
{
    quint32 mask = 0;
    if (eventFlags & EventModifierFlag::command)
        mask |= CarbonModifier::command;
    if (eventFlags & EventModifierFlag::shift)
        mask |= CarbonModifier::shift;
    if (eventFlags & EventModifierFlag::option)
        mask |= CarbonModifier::option;
    if (eventFlags & EventModifierFlag::control)
        mask |= CarbonModifier::control;
    return mask;
}

// The first four bytes of a UTF-8 text folded into one number, first byte most significant.
constexpr quint32 fourCharCode(std::string_view utf8)
{
    quint32 code = 0;
    for (std::size_t i = 0; i < utf8.size() && i < 4; ++i)
        code = code * 256 + static_cast<unsigned char>(utf8[i]);
    return code;
}

} // namespace tolvane
