// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QIcon>

namespace tolvane {

// The symbols of the statistics and celebration windows, drawn by Tolvane so they look the same
// on every desktop.
enum class ProgressSymbol {
    magnifier, // look-ups
    cardStack, // cards reviewed
    cardTower, // flashcards
    sparkles,  // milestones
    star,      // highlights
    flame,     // the streak
    arrowDown, // source above translation
};

// The symbol in one colour; section badges paint it white whatever the colour.
QIcon progressSymbol(ProgressSymbol symbol, const QColor& colour = Qt::white);

} // namespace tolvane
