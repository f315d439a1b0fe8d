// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

namespace tolvane {

// `tolvane detect --target CODE TEXT…`: the direction and the two probabilities.
int runDetectCommand(const QStringList& arguments);
// `tolvane reading --target CODE TEXT…`: the pinyin or hiragana reading, or nothing.
int runReadingCommand(const QStringList& arguments);
// `tolvane pos SENTENCE WORD`: the part-of-speech abbreviation of WORD in SENTENCE, or nothing.
int runPosCommand(const QStringList& arguments);

} // namespace tolvane
