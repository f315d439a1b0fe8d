// SPDX-License-Identifier: GPL-3.0-or-later
// The long run of the crash test: a writer process killed with SIGKILL at random moments, many
// times over; prints how many kills, how many fell inside a write, and what was lost (nothing).
// Usage: bench_records_crash [kills=1000] [seed] [directory]
#include "core/records/CrashingWriter.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

using namespace tolvane;

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const int kills = argc > 1 ? std::atoi(argv[1]) : 1000;
    const auto seed = quint32(argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 1);
    QTemporaryDir temporary;
    const QString dir = argc > 3 ? QString::fromLocal8Bit(argv[3]) : temporary.path();

    QElapsedTimer timer;
    timer.start();
    const auto report = crashtest::run(dir, kills, std::chrono::hours(24), seed);
    std::printf("kills %d (inside a write: %d), reported changes %lld, undecodable files %d, lost changes %d, "
                "%.1f s\n",
                report.kills, report.interruptedWrites, static_cast<long long>(report.reportedChanges),
                report.undecodableFiles, report.lostChanges, double(timer.elapsed()) / 1000.0);
    for (const QString& problem : report.problems)
        std::printf("  %s\n", qPrintable(problem));
    return report.problems.isEmpty() ? 0 : 1;
}
