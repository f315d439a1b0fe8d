// SPDX-License-Identifier: GPL-3.0-or-later
// The D-Bus side against a stand-in notification server on a private bus: what goes over the
// wire, closings both ways, and that a server which hangs gives an error, not a stall. Capabilities
// and answers with a real server: x11/notifications/tst_ReminderNotifications.
#include "platform/linux/notifications/DbusNotificationServer.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusContext>
#include <QDBusMessage>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>
#include <QTimer>

using namespace tolvane;

namespace {

const QString serviceName = QStringLiteral("org.freedesktop.Notifications");
const QString objectPath = QStringLiteral("/org/freedesktop/Notifications");

// A notification server that records calls and answers as told.
class StandInServer final : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")
public:
    QStringList capabilityList{QStringLiteral("actions"), QStringLiteral("body-markup")};
    bool hang = false;
    QList<QDBusMessage> notifyCalls;
    QList<uint> closedIds;
    QList<QDBusMessage> unanswered; // kept so the calls stay open

public Q_SLOTS:
    QStringList GetCapabilities()
    {
        if (hang) {
            setDelayedReply(true);
            unanswered.append(message());
            return {};
        }
        return capabilityList;
    }
    uint Notify(const QString&, uint, const QString&, const QString&, const QString&, const QStringList&,
                const QVariantMap&, int)
    {
        notifyCalls.append(message());
        return 7;
    }
    void CloseNotification(uint id) { closedIds.append(id); }
};

// The stand-in, published on the private bus for as long as it lives.
struct Published
{
    Published(const QString& address, const QString& name)
        : m_name(name)
        , connection(QDBusConnection::connectToBus(address, name))
    {
        connection.registerObject(objectPath, &server, QDBusConnection::ExportAllSlots);
        connection.registerService(serviceName);
    }
    ~Published()
    {
        connection.unregisterService(serviceName);
        connection.unregisterObject(objectPath);
        QDBusConnection::disconnectFromBus(m_name);
    }
    QString m_name;
    QDBusConnection connection;
    StandInServer server;
};

} // namespace

class TestDbusNotificationServer : public QObject
{
    Q_OBJECT
    QProcess m_bus;
    QString m_address;

private Q_SLOTS:
    void initTestCase()
    {
        const QString daemon = QStandardPaths::findExecutable(QStringLiteral("dbus-daemon"));
        if (daemon.isEmpty())
            QSKIP("dbus-daemon is missing: run scripts/setup");
        m_bus.start(daemon, {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--nopidfile"),
                             QStringLiteral("--print-address=1")});
        QVERIFY(m_bus.waitForStarted());
        QTRY_VERIFY(m_bus.canReadLine());
        m_address = QString::fromUtf8(m_bus.readLine()).trimmed();
        QVERIFY(!m_address.isEmpty());
    }

    void cleanupTestCase()
    {
        if (m_bus.state() != QProcess::NotRunning) {
            m_bus.terminate();
            if (!m_bus.waitForFinished(3000))
                m_bus.kill();
        }
    }

    void notificationGoesOutWithTypedHintsAndClosingGoesBothWays()
    {
        Published published(m_address, QStringLiteral("stand-in"));
        StandInServer& server = published.server;
        DbusNotificationServer client(QDBusConnection::connectToBus(m_address, QStringLiteral("client-1")));
        QList<quint32> closed;
        client.setHandlers([](quint32, const QString&) {}, [&](quint32 id) { closed.append(id); });

        ServerNotification n;
        n.summary = QStringLiteral("cat");
        n.body = QStringLiteral("&lt;b&gt;");
        n.actions = {QStringLiteral("default"), QStringLiteral("Open"), QStringLiteral("FLASHCARD_KNOW_IT"),
                     QStringLiteral("I know this")};
        n.sound = true;
        std::optional<quint32> id;
        client.notify(n, [&](std::optional<quint32> i, const QString&) { id = i.value_or(0); });
        QTRY_VERIFY(id.has_value());
        QCOMPARE(*id, 7u);

        QCOMPARE(server.notifyCalls.size(), 1);
        const QDBusMessage call = server.notifyCalls.first();
        QCOMPARE(call.signature(), QStringLiteral("susssasa{sv}i"));
        const QList<QVariant> args = call.arguments();
        QCOMPARE(args.at(0).toString(), QStringLiteral("Tolvane"));
        QCOMPARE(args.at(3).toString(), n.summary);
        QCOMPARE(args.at(4).toString(), n.body);
        QCOMPARE(args.at(5).toStringList(), n.actions);
        QCOMPARE(args.at(7).toInt(), -1);
        const QDBusArgument hintsArgument = args.at(6).value<QDBusArgument>();
        QVariantMap hints;
        hintsArgument >> hints;
        // Servers that check types refuse an urgency that is not a single byte.
        QCOMPARE(hints.value(QStringLiteral("urgency")).metaType(), QMetaType::fromType<uchar>());
        QCOMPARE(hints.value(QStringLiteral("urgency")).value<uchar>(), uchar(1));
        QVERIFY(hints.contains(QStringLiteral("sound-name")));

        client.close(7);
        QTRY_COMPARE(server.closedIds, QList<uint>{7});

        QDBusMessage gone = QDBusMessage::createSignal(objectPath, serviceName, QStringLiteral("NotificationClosed"));
        gone << uint(7) << uint(2);
        QVERIFY(published.connection.send(gone));
        QTRY_COMPARE(closed, QList<quint32>{7});
    }

    void aHangingServerGivesAnErrorWhileTheLoopRuns()
    {
        Published published(m_address, QStringLiteral("stand-in-hanging"));
        published.server.hang = true;
        DbusNotificationServer client(QDBusConnection::connectToBus(m_address, QStringLiteral("client-2")));
        std::optional<QString> error;
        client.capabilities([&](std::optional<QStringList> c, const QString& e) {
            QVERIFY(!c);
            error = e;
        });
        // The call returned at once; the loop keeps turning while the server says nothing.
        QVERIFY(!error);
        int ticks = 0;
        QTimer ticker;
        connect(&ticker, &QTimer::timeout, this, [&] { ++ticks; });
        ticker.start(100);
        QTRY_VERIFY_WITH_TIMEOUT(error.has_value(), DbusNotificationServer::callTimeoutMs + 5000);
        QVERIFY(!error->isEmpty());
        QVERIFY(ticks > 0);
        QCOMPARE(published.server.unanswered.size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestDbusNotificationServer)
#include "tst_DbusNotificationServer.moc"
