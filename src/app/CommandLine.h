// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

#include <functional>
#include <optional>

namespace tolvane {

// A command that runs without a display: `tolvane NAME ARGS…`.
struct Subcommand
{
    const char* name;
    const char* usage;   // the arguments, for --help
    const char* summary; // one line, for --help
    std::function<int(const QStringList& arguments)> run;
};

// The table of subcommands (Commands.cpp).
const QList<Subcommand>& subcommands();

// Handles --help, --version and the subcommands, which need no display. Returns the exit code
// when the arguments asked for one of them, nothing when the application should start.
std::optional<int> runCommandLine(int argc, char** argv);

} // namespace tolvane
