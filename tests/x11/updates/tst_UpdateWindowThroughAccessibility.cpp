// SPDX-License-Identifier: GPL-3.0-or-later
// The software update window of the real Tolvane, as a screen reader reaches it: `tolvane open
// updates` against a feed server that does not answer shows "Checking for Updates…" with a named
// progress bar, and Cancel pressed through the accessibility bus drops the connection; against a
// missing feed the error is read out and OK closes the window.
#include "x11/AccessibleTree.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

#include <atspi/atspi.h>

#include <memory>

using namespace tolvane::testing;

namespace {

bool updateWindowShown()
{
    QProcess xdotool;
    xdotool.start(QStringLiteral("xdotool"), {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                              QStringLiteral("--name"), QStringLiteral("^Software Update$")});
    xdotool.waitForFinished(3000);
    return !xdotool.readAllStandardOutput().trimmed().isEmpty();
}

} // namespace

class TestUpdateWindowThroughAccessibility : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        if (qEnvironmentVariableIsEmpty("DISPLAY") || qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS"))
            QSKIP("No desktop: run inside scripts/virtual-desktop");
        if (QStandardPaths::findExecutable(QStringLiteral("xdotool")).isEmpty())
            QSKIP("xdotool is missing: run scripts/setup");
        atspi_init();
    }

    void checkingCancelsThroughTheBusAndAnErrorIsReadOut()
    {
        // The feed server: silent at first, then "404 Not Found".
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        bool answer = false;
        int connections = 0;
        int hungUp = 0;
        connect(&server, &QTcpServer::newConnection, this, [&] {
            while (QTcpSocket* socket = server.nextPendingConnection()) {
                ++connections;
                connect(socket, &QTcpSocket::disconnected, this, [&] { ++hungUp; });
                connect(socket, &QTcpSocket::readyRead, this, [&answer, socket] {
                    if (socket->readAll().contains("\r\n\r\n") && answer) {
                        socket->write("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
                        socket->disconnectFromHost();
                    }
                });
            }
        });

        QTemporaryDir profile;
        const QString configHome = profile.filePath(QStringLiteral("config"));
        QVERIFY(QDir().mkpath(configHome + QStringLiteral("/Tolvane")));
        QFile preferences(configHome + QStringLiteral("/Tolvane/preferences.json"));
        QVERIFY(preferences.open(QIODevice::WriteOnly));
        preferences.write("{\"onboardingComplete\": true}");
        preferences.close();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), configHome);
        environment.insert(QStringLiteral("XDG_DATA_HOME"), profile.filePath(QStringLiteral("data")));
        environment.insert(QStringLiteral("TOLVANE_INSTANCE_NAME"),
                           QStringLiteral("tolvane-updates-test-%1").arg(QCoreApplication::applicationPid()));
        environment.insert(QStringLiteral("TOLVANE_UPDATE_FEED_URL"),
                           QStringLiteral("http://127.0.0.1:%1/feed.json").arg(server.serverPort()));
        environment.insert(QStringLiteral("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"), QStringLiteral("1"));
        environment.insert(QStringLiteral("OMP_THREAD_LIMIT"), QStringLiteral("1"));
        environment.remove(QStringLiteral("TOLVANE_PLATFORM"));

        QProcess tolvane;
        tolvane.setProcessEnvironment(environment);
        tolvane.setProcessChannelMode(QProcess::ForwardedChannels);
        tolvane.start(QStringLiteral(TOLVANE_EXECUTABLE), {});
        QVERIFY(tolvane.waitForStarted());
        auto stop = qScopeGuard([&] {
            tolvane.terminate();
            if (!tolvane.waitForFinished(5000))
                tolvane.kill();
        });
        auto openUpdates = [&] {
            for (int attempt = 0; attempt < 50; ++attempt) {
                QProcess command;
                command.setProcessEnvironment(environment);
                command.start(QStringLiteral(TOLVANE_EXECUTABLE), {QStringLiteral("open"), QStringLiteral("updates")});
                command.waitForFinished(10000);
                if (command.exitCode() == 0)
                    return true;
                QTest::qWait(200); // not listening yet
            }
            return false;
        };

        QVERIFY(openUpdates());
        QTRY_COMPARE_WITH_TIMEOUT(connections, 1, 10000);
        QTRY_VERIFY_WITH_TIMEOUT(tolvaneControl(ATSPI_ROLE_PROGRESS_BAR, QStringLiteral("Checking for updates")),
                                 15000);
        AccessiblePtr cancel = tolvaneControl(ATSPI_ROLE_PUSH_BUTTON, QStringLiteral("Cancel"));
        QVERIFY(cancel);
        QVERIFY(press(cancel.get()));
        QTRY_COMPARE_WITH_TIMEOUT(hungUp, 1, 5000);
        QTRY_VERIFY_WITH_TIMEOUT(!updateWindowShown(), 5000);

        answer = true;
        QVERIFY(openUpdates());
        const QString error = QStringLiteral("The update feed was not found on the server (HTTP 404).");
        QTRY_VERIFY_WITH_TIMEOUT(tolvaneControl(ATSPI_ROLE_LABEL, error), 15000);
        QVERIFY(tolvaneControl(ATSPI_ROLE_LABEL, QStringLiteral("Update Error!")));
        AccessiblePtr ok = tolvaneControl(ATSPI_ROLE_PUSH_BUTTON, QStringLiteral("OK"));
        QVERIFY(ok);
        QVERIFY(press(ok.get()));
        QTRY_VERIFY_WITH_TIMEOUT(!updateWindowShown(), 5000);
    }
};

QTEST_GUILESS_MAIN(TestUpdateWindowThroughAccessibility)
#include "tst_UpdateWindowThroughAccessibility.moc"
