// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

class QLocalServer;

namespace tolvane {

// One Tolvane per user session: the first instance listens on a local socket; a later one tells
// it so and leaves.
class SingleInstance final : public QObject
{
    Q_OBJECT
public:
    explicit SingleInstance(QString name, QObject* parent = nullptr);

    // True when this process is the first instance (it is now listening); false when another
    // instance answered (it has been told).
    bool claim();

    static QString defaultName();

Q_SIGNALS:
    // Another start was attempted while this instance runs.
    void activationRequested();

private:
    QString m_name;
    QLocalServer* m_server = nullptr;
};

} // namespace tolvane
