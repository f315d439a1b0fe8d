// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/InstanceCommands.h"

#include "app/SingleInstance.h"
#include "core/support/Logging.h"

#include <QTextStream>

#include <cstdio>

TOLVANE_DEFINE_LOG(lcInstanceCommands, "InstanceCommands")

namespace tolvane {

namespace {

const QString openWord = QStringLiteral("open");
const QString lookupWord = QStringLiteral("lookup");

int sendToRunningInstance(const QStringList& words)
{
    const Result<void> sent = SingleInstance::send(SingleInstance::defaultName(), words);
    if (sent)
        return 0;
    QTextStream(stderr) << "tolvane: " << sent.error().message << '\n';
    return 1;
}

} // namespace

const QStringList& InstanceCommands::windowNames()
{
    static const QStringList names = {
        QStringLiteral("settings"),
        QStringLiteral("guide"),
        QStringLiteral("accessibility-permission"),
        QStringLiteral("screen-recording-permission"),
        QStringLiteral("review"),
        QStringLiteral("stats"),
        QStringLiteral("updates"),
    };
    return names;
}

void InstanceCommands::addWindow(const QString& name, std::function<void()> open)
{
    Q_ASSERT(windowNames().contains(name));
    m_windows.insert(name, std::move(open));
}

QString InstanceCommands::handle(const QStringList& words) const
{
    if (words.size() == 2 && words.first() == openWord) {
        const auto window = m_windows.constFind(words.at(1));
        if (window == m_windows.cend())
            return QStringLiteral("Tolvane has no window called \"%1\".").arg(words.at(1));
        qCInfo(lcInstanceCommands).noquote() << "Opening" << words.at(1) << "as asked from the command line";
        (*window)();
        return {};
    }
    if (words.size() == 1 && words.first() == lookupWord) {
        if (!m_lookup)
            return QStringLiteral("Look-ups are not available.");
        m_lookup();
        return {};
    }
    return QStringLiteral("Tolvane did not understand the command.");
}

int runOpenCommand(const QStringList& arguments)
{
    if (arguments.size() != 1 || !InstanceCommands::windowNames().contains(arguments.first())) {
        QTextStream(stderr) << "usage: tolvane open " << InstanceCommands::windowNames().join(u'|') << '\n';
        return 2;
    }
    return sendToRunningInstance({openWord, arguments.first()});
}

int runLookupCommand(const QStringList& arguments)
{
    if (!arguments.isEmpty()) {
        QTextStream(stderr) << "usage: tolvane lookup\n";
        return 2;
    }
    return sendToRunningInstance({lookupWord});
}

} // namespace tolvane
