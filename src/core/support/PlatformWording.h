// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace tolvane {

// Texts that name the platform are written once and said in this desktop's words: "macOS" is
// "the desktop", "your Mac" is "your computer", "System Settings" is "Settings", and so on. The
// table of words lives in PlatformWording.cpp and nowhere else.
QString onThisPlatform(const QString& text);

// Key symbols in a text said as this desktop's keyboards name them: "⌃⌥Space" is "Ctrl+Alt+Space",
// "⌥`" is "Alt+`", and a symbol on its own ("⌘/⌥") is the bare name ("Super/Alt").
QString keysOnThisPlatform(const QString& text);

} // namespace tolvane
