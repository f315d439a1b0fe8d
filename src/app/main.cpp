// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Application.h"
#include "app/CommandLine.h"
#include "core/support/Logging.h"

#include <cstdlib>
#include <unistd.h>

namespace {

// Debian's Tesseract spreads each recognition over OpenMP threads, which makes a small strip ten
// times slower; OpenMP reads its limit only when the process starts, so start again with it set.
void restartWithOneRecognitionThread(char** argv)
{
    if (std::getenv("OMP_THREAD_LIMIT"))
        return;
    ::setenv("OMP_THREAD_LIMIT", "1", 1);
    ::execv("/proc/self/exe", argv);
    // Still here: the restart failed; run on, only slower.
}

} // namespace

int main(int argc, char** argv)
{
    restartWithOneRecognitionThread(argv);
    tolvane::installLogFormat();
    if (const auto exitCode = tolvane::runCommandLine(argc, argv))
        return *exitCode;
    return tolvane::runApplication(argc, argv);
}
