// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace tolvane::overlay {

// The longest texts the cards lay out. A card shows a few hundred characters at most; laying out
// a megabyte only to clip it would stall the pointer's look-up.
inline constexpr qsizetype wordCardTextLimit = 2000;
inline constexpr qsizetype passageCardTextLimit = 20000;

// A text as a card shows it: literally, with anything beyond limit UTF-16 units replaced by "…"
// (never splitting a character) and each lone surrogate, which no font can draw, shown as U+FFFD.
QString displayText(const QString& text, qsizetype limit);

} // namespace tolvane::overlay
