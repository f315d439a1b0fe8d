// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Application.h"
#include "app/CommandLine.h"
#include "core/support/Logging.h"

int main(int argc, char** argv)
{
    tolvane::installLogFormat();
    if (const auto exitCode = tolvane::runCommandLine(argc, argv))
        return *exitCode;
    return tolvane::runApplication(argc, argv);
}
