// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/Result.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

class QLocalServer;

namespace tolvane {

// One Tolvane per user session: the first instance listens on a local socket; a later one tells
// it so and leaves. The same socket carries commands for the running instance (`tolvane open
// settings`, `tolvane lookup`): one line of words per connection, answered with one line.
class SingleInstance final : public QObject
{
    Q_OBJECT
public:
    // Carries out one command; returns an empty text when done, else what went wrong.
    using CommandHandler = std::function<QString(const QStringList& words)>;

    explicit SingleInstance(QString name, QObject* parent = nullptr);

    // True when this process is the first instance (it is now listening); false when another
    // instance answered (it has been told).
    bool claim();
    void setCommandHandler(CommandHandler handler) { m_handler = std::move(handler); }

    // Hands one command to the instance listening on name and waits for its answer.
    static Result<void> send(const QString& name, const QStringList& words);

    // Per user; TOLVANE_INSTANCE_NAME overrides it, so tests never meet the user's Tolvane.
    static QString defaultName();

Q_SIGNALS:
    // Another start was attempted while this instance runs.
    void activationRequested();

private:
    QString answer(const QByteArray& line);

    QString m_name;
    QLocalServer* m_server = nullptr;
    CommandHandler m_handler;
};

} // namespace tolvane
