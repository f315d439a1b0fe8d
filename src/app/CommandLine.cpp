// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CommandLine.h"

#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>

namespace tolvane {

namespace {

void printHelp(QTextStream& out)
{
    out << "Usage: tolvane [--help] [--version]\n"
           "       tolvane COMMAND [ARGUMENTS…]\n\n"
           "Without a command, Tolvane starts in the tray: rest the pointer on a word in any\n"
           "application (or select a passage) and press the look-up hotkey (Ctrl+Alt+Space unless you\n"
           "choose another).\n";
    if (!subcommands().isEmpty()) {
        out << "\nCommands (no display needed):\n";
        for (const Subcommand& c : subcommands())
            out << "  " << c.name << ' ' << c.usage << "\n      " << c.summary << '\n';
    }
    out << "\nOptions:\n"
           "  --help       Show this text.\n"
           "  --version    Show the version.\n"
           "\nEnvironment:\n"
           "  TOLVANE_PLATFORM=null   Run without desktop services (preferences in memory).\n";
}

} // namespace

std::optional<int> runCommandLine(int argc, char** argv)
{
    if (argc < 2)
        return std::nullopt;
    const QString first = QString::fromLocal8Bit(argv[1]);
    QTextStream out(stdout);
    QTextStream err(stderr);
    if (first == QLatin1String("--version") || first == QLatin1String("-v")) {
        out << "Tolvane " << TOLVANE_VERSION << '\n';
        return 0;
    }
    if (first == QLatin1String("--help") || first == QLatin1String("-h")) {
        printHelp(out);
        return 0;
    }
    for (const Subcommand& command : subcommands()) {
        if (first != QLatin1String(command.name))
            continue;
        QCoreApplication app(argc, argv);
        QCoreApplication::setApplicationName(QStringLiteral("Tolvane"));
        QStringList arguments = QCoreApplication::arguments().mid(2);
        return command.run(arguments);
    }
    if (first.startsWith(u'-')) {
        err << "tolvane: unknown option " << first << "\nTry 'tolvane --help'.\n";
        return 2;
    }
    err << "tolvane: unknown command " << first << "\nTry 'tolvane --help'.\n";
    return 2;
}

} // namespace tolvane
