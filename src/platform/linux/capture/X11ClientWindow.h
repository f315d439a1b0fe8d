// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QString>

#include <optional>

// What the X server knows about other applications' windows, for reading their text: where the
// application's own window is, which process it names, and the primary selection it holds. Works
// with Qt's connection to the X server or, where Tolvane runs without a window system integration
// (the command line), with a connection of its own.
namespace tolvane::x11 {

struct ClientWindow
{
    quint32 window = 0;
    // Root device pixels: the window inside the window manager's frame.
    QRect rect;
    // _NET_WM_PID; some toolkits (and xterm under some builds) never set it.
    std::optional<qint64> pid;
    QString title;
    QString windowClass;
};

// The application window of the top-level window under a root-window point in device pixels.
std::optional<ClientWindow> clientWindowAt(int rootX, int rootY);
// What the X server says about one application window.
std::optional<ClientWindow> clientWindow(quint32 window);
// The window the window manager calls active (_NET_ACTIVE_WINDOW).
std::optional<ClientWindow> activeClientWindow();
// The primary selection, only when the application that made client also owns the selection (a
// selection left behind by another window is not what the user is looking at). Waits at most
// timeoutMs for the owner's answer; nothing when it is slow, gone, or sends the text in pieces.
std::optional<QString> primarySelectionOwnedBy(quint32 client, int timeoutMs);
// Where the pointer is, in root device pixels.
std::optional<QPoint> pointerPosition();
// A part of the screen as the X server draws it; a null image when it cannot be read.
QImage grabRoot(const QRect& rect);

} // namespace tolvane::x11
