// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SingleInstance.h"

#include "core/support/Logging.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QLocalServer>
#include <QLocalSocket>

#include <unistd.h>

TOLVANE_DEFINE_LOG(lcSingleInstance, "SingleInstance")

namespace tolvane {

namespace {

// A command is a handful of short words; anything longer is not ours.
constexpr qsizetype maximumLineLength = 4096;
constexpr int answerTimeoutMs = 5000;
const QString activateWord = QStringLiteral("activate");

QByteArray encodeLine(const QStringList& words)
{
    return QJsonDocument(QJsonArray::fromStringList(words)).toJson(QJsonDocument::Compact) + '\n';
}

std::optional<QStringList> decodeLine(const QByteArray& line)
{
    const QJsonDocument document = QJsonDocument::fromJson(line);
    if (!document.isArray())
        return std::nullopt;
    QStringList words;
    for (const QJsonValue& value : document.array()) {
        if (!value.isString())
            return std::nullopt;
        words.append(value.toString());
    }
    return words;
}

} // namespace

SingleInstance::SingleInstance(QString name, QObject* parent)
    : QObject(parent)
    , m_name(std::move(name))
{}

QString SingleInstance::defaultName()
{
    const QString override = qEnvironmentVariable("TOLVANE_INSTANCE_NAME");
    return override.isEmpty() ? QStringLiteral("tolvane-%1").arg(::getuid()) : override;
}

bool SingleInstance::claim()
{
    {
        QLocalSocket probe;
        probe.connectToServer(m_name);
        if (probe.waitForConnected(500)) {
            probe.write(encodeLine({activateWord}));
            probe.waitForBytesWritten(500);
            probe.disconnectFromServer();
            return false;
        }
    }
    // Nobody answered: a socket left by a crashed instance is stale.
    QLocalServer::removeServer(m_name);
    m_server = new QLocalServer(this);
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    if (!m_server->listen(m_name)) {
        qCWarning(lcSingleInstance).noquote() << "Cannot listen on" << m_name + ":" << m_server->errorString();
        return true; // run anyway; a second start will simply not be noticed
    }
    connect(m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* socket = m_server->nextPendingConnection()) {
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QLocalSocket::readyRead, socket, [this, socket] {
                if (!socket->canReadLine()) {
                    if (socket->bytesAvailable() > maximumLineLength) {
                        qCWarning(lcSingleInstance)
                            << "Dropped a command line longer than" << maximumLineLength << "bytes";
                        socket->abort();
                    }
                    return;
                }
                const QString reply = answer(socket->readLine(maximumLineLength).trimmed());
                socket->write(reply.isEmpty() ? QByteArray("ok\n") : "error " + reply.toUtf8() + '\n');
                socket->disconnectFromServer();
            });
        }
    });
    return true;
}

QString SingleInstance::answer(const QByteArray& line)
{
    const std::optional<QStringList> words = decodeLine(line);
    if (!words || words->isEmpty()) {
        qCWarning(lcSingleInstance) << "Ignored a command that is not a list of words";
        return QStringLiteral("Tolvane did not understand the command.");
    }
    if (words->first() == activateWord) {
        Q_EMIT activationRequested();
        return {};
    }
    if (!m_handler)
        return QStringLiteral("Tolvane is still starting; try again in a moment.");
    return m_handler(*words);
}

Result<void> SingleInstance::send(const QString& name, const QStringList& words)
{
    QLocalSocket socket;
    socket.connectToServer(name);
    if (!socket.waitForConnected(1000))
        return Error{QStringLiteral("Tolvane is not running. Start it first (run tolvane, or open it from the "
                                    "application menu).")};
    socket.write(encodeLine(words));
    if (!socket.waitForBytesWritten(answerTimeoutMs))
        return Error{QStringLiteral("Tolvane did not take the command: %1").arg(socket.errorString())};
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(answerTimeoutMs))
            return Error{QStringLiteral("Tolvane did not answer in time.")};
    }
    const QByteArray reply = socket.readLine(maximumLineLength).trimmed();
    if (reply == "ok")
        return {};
    return Error{QString::fromUtf8(reply.startsWith("error ") ? reply.mid(6) : reply)};
}

} // namespace tolvane
