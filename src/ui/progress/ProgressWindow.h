// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/components/WindowActivation.h"

#include <QSize>
#include <QString>

class QWidget;

namespace tolvane {

// What the statistics and celebration windows share: a titled, closable window of a fixed
// content size, centred on the screen under the pointer, and brought to the front on request
// (bringToFront of WindowActivation.h).
void makeFixedWindow(QWidget* window, const QString& title, QSize contentSize, bool minimizable);
void centreOnPointerScreen(QWidget* window);

} // namespace tolvane
