// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

namespace tolvane {

// `tolvane export [--format csv|anki] [--status new,knowIt,reviewAgain] [--added all|7|30|90]
// [--output FILE]`: the bytes the review window's "Export" tab writes for the same choices, from
// the deck file, to standard output or FILE. Needs no display.
int runExportCommand(const QStringList& arguments);

} // namespace tolvane
