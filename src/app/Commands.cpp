// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CommandLine.h"

namespace tolvane {

const QList<Subcommand>& subcommands()
{
    static const QList<Subcommand> table = {};
    return table;
}

} // namespace tolvane
