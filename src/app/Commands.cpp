// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CommandLine.h"
#include "app/TranslateCommand.h"

namespace tolvane {

const QList<Subcommand>& subcommands()
{
    static const QList<Subcommand> table = {
        {"translate", "[--from CODE] [--to CODE] [--json] TEXT…",
         "Print the translation a card would show (target language from the preferences).", runTranslateCommand},
    };
    return table;
}

} // namespace tolvane
