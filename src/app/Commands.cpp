// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CaptureCheckCommand.h"
#include "app/CommandLine.h"
#include "app/ExportCommand.h"
#include "app/InstanceCommands.h"
#include "app/LanguageCommands.h"
#include "app/StatsCommand.h"
#include "app/TranslateCommand.h"

namespace tolvane {

const QList<Subcommand>& subcommands()
{
    static const QList<Subcommand> table = {
        {"detect", "--target CODE TEXT…", "Print which way TEXT would be translated, with the two probabilities.",
         runDetectCommand},
        {"reading", "--target CODE TEXT…", "Print the pinyin or hiragana reading of TEXT, if it has one.",
         runReadingCommand},
        {"pos", "SENTENCE WORD", "Print the part of speech of WORD in SENTENCE (n., v., adj., …), if any.",
         runPosCommand},
        {"translate", "[--from CODE] [--to CODE] [--json] TEXT…",
         "Print the translation a card would show (target language from the preferences).", runTranslateCommand},
        {"stats", "[--json]", "Print the statistics the Usage Stats window shows, from the record files.",
         runStatsCommand},
        {"export", "[--format csv|anki] [--status new,knowIt,reviewAgain] [--added all|7|30|90] [--output FILE]",
         "Write the flashcards as the review window's Export tab would, to standard output or FILE.", runExportCommand},
        {"open", "settings|guide|review|stats|updates|accessibility-permission|screen-recording-permission",
         "Ask the running Tolvane to open (or raise) one of its windows.", runOpenCommand},
        {"lookup", "", "Ask the running Tolvane to look up the word under the pointer, as a tap of the hotkey would.",
         runLookupCommand},
        {"capture-check", "[--at X Y] [--delay SECONDS] [--select] [--find WORD] [--brief] [--repeat N]",
         "Point at a word within 3 seconds: print which way it was read and what the accessibility bus answered.",
         runCaptureCheckCommand},
    };
    return table;
}

} // namespace tolvane
