// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>

namespace tolvane {

// The small symbols of Tolvane's windows. Each comes from the desktop's icon theme when the theme
// has it, and otherwise is drawn by Tolvane itself in the window's text colour, so no button is
// ever left without its picture.
enum class Symbol {
    chevronLeft,
    chevronRight,
    trash,
    shuffle,
    share,
    checkmark,
    cardStack,
    document,
    filter,
    calendar,
};

QIcon symbolIcon(Symbol symbol);
// The drawn form alone, whatever the theme offers.
QIcon drawnSymbolIcon(Symbol symbol);

} // namespace tolvane
