// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

namespace tolvane {

// `tolvane translate [--from CODE] [--to CODE] [--json] TEXT…`: prints the translation a card
// would show, on one line; --json adds the lemma, the lexical class and the ranked candidates.
int runTranslateCommand(const QStringList& arguments);

} // namespace tolvane
