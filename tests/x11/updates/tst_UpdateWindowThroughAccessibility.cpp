// SPDX-License-Identifier: GPL-3.0-or-later
// The software update window of the real Tolvane, as a screen reader reaches it: `tolvane open
// updates` against a feed server that does not answer shows "Checking for Updates…" with a named
// progress bar, and Cancel pressed through the accessibility bus drops the connection; against a
// missing feed the error is read out and OK closes the window.
#include "x11/AccessibleTree.h"
#include "x11/TolvaneProcess.h"

#include <QTcpServer>
#include <QTcpSocket>

using namespace tolvane::testing;

class TestUpdateWindowThroughAccessibility : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        if (const char* missing = missingDesktop())
            QSKIP(missing);
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

        TolvaneProcess tolvane(QStringLiteral("updates"));
        QVERIFY(tolvane.skipGuide());
        tolvane.environment().insert(QStringLiteral("TOLVANE_UPDATE_FEED_URL"),
                                     QStringLiteral("http://127.0.0.1:%1/feed.json").arg(server.serverPort()));
        tolvane.environment().insert(QStringLiteral("OMP_THREAD_LIMIT"), QStringLiteral("1"));
        tolvane.process().setProcessChannelMode(QProcess::ForwardedChannels);
        QVERIFY(tolvane.start());
        const QStringList openUpdates{QStringLiteral("open"), QStringLiteral("updates")};

        QVERIFY(tolvane.commandOnceListening(openUpdates));
        QTRY_COMPARE_WITH_TIMEOUT(connections, 1, 10000);
        QTRY_VERIFY_WITH_TIMEOUT(tolvaneControl(ATSPI_ROLE_PROGRESS_BAR, QStringLiteral("Checking for updates")),
                                 15000);
        AccessiblePtr cancel = tolvaneControl(ATSPI_ROLE_PUSH_BUTTON, QStringLiteral("Cancel"));
        QVERIFY(cancel);
        QVERIFY(press(cancel.get()));
        QTRY_COMPARE_WITH_TIMEOUT(hungUp, 1, 5000);
        QTRY_VERIFY_WITH_TIMEOUT(!windowShown(QStringLiteral("Software Update")), 5000);

        answer = true;
        QVERIFY(tolvane.commandOnceListening(openUpdates));
        const QString error = QStringLiteral("The update feed was not found on the server (HTTP 404).");
        QTRY_VERIFY_WITH_TIMEOUT(tolvaneControl(ATSPI_ROLE_LABEL, error), 15000);
        QVERIFY(tolvaneControl(ATSPI_ROLE_LABEL, QStringLiteral("Update Error!")));
        AccessiblePtr ok = tolvaneControl(ATSPI_ROLE_PUSH_BUTTON, QStringLiteral("OK"));
        QVERIFY(ok);
        QVERIFY(press(ok.get()));
        QTRY_VERIFY_WITH_TIMEOUT(!windowShown(QStringLiteral("Software Update")), 5000);
    }
};

QTEST_GUILESS_MAIN(TestUpdateWindowThroughAccessibility)
#include "tst_UpdateWindowThroughAccessibility.moc"
