// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>
#include <QRectF>

class QPainter;

namespace tolvane {

// The pictures of the settings sections and the permission windows, drawn by Tolvane so they
// look the same whatever icon theme the desktop has.
enum class SetupSymbol { keyboard, appearance, quote, accessibility, viewfinder, timer, bell, power, arrowDown };

// Draws the symbol in the painter's pen colour inside rect (square).
void drawSetupSymbol(QPainter& painter, SetupSymbol symbol, const QRectF& rect);
QIcon setupSymbolIcon(SetupSymbol symbol);

} // namespace tolvane
