// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

namespace tolvane {

// `tolvane capture-check [--at X Y] [--delay SECONDS] [--select] [--find WORD] [--brief] [--repeat N]`: reads
// the word under the pointer the way a look-up does (accessibility first, then the screen) and
// says which way found it, what the accessibility bus answered at each step and, for the cases
// known to fail, how to put them right. --at takes a root-window point in pixels instead of
// waiting for the user to point; --find prints where WORD is seen in the active window.
int runCaptureCheckCommand(const QStringList& arguments);

} // namespace tolvane
