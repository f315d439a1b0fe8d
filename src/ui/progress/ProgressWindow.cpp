// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/progress/ProgressWindow.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace tolvane {

void makeFixedWindow(QWidget* window, const QString& title, QSize contentSize, bool minimizable)
{
    Qt::WindowFlags flags = Qt::Window | Qt::WindowTitleHint | Qt::WindowCloseButtonHint;
    if (minimizable)
        flags |= Qt::WindowMinimizeButtonHint;
    window->setWindowFlags(flags);
    window->setWindowTitle(title);
    window->setFixedSize(contentSize);
    // Closing hides the window; whoever holds it decides when it goes.
    window->setAttribute(Qt::WA_DeleteOnClose, false);
}

void centreOnPointerScreen(QWidget* window)
{
    QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    QRect frame(QPoint(0, 0), window->size());
    frame.moveCenter(screen->availableGeometry().center());
    window->move(frame.topLeft());
}

} // namespace tolvane
