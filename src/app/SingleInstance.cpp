// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SingleInstance.h"

#include "core/support/Logging.h"

#include <QLocalServer>
#include <QLocalSocket>

#include <unistd.h>

TOLVANE_DEFINE_LOG(lcSingleInstance, "SingleInstance")

namespace tolvane {

SingleInstance::SingleInstance(QString name, QObject* parent)
    : QObject(parent)
    , m_name(std::move(name))
{}

QString SingleInstance::defaultName()
{
    return QStringLiteral("tolvane-%1").arg(::getuid());
}

bool SingleInstance::claim()
{
    {
        QLocalSocket probe;
        probe.connectToServer(m_name);
        if (probe.waitForConnected(500)) {
            probe.write("activate\n");
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
            Q_EMIT activationRequested();
        }
    });
    return true;
}

} // namespace tolvane
