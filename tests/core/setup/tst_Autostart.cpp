// SPDX-License-Identifier: GPL-3.0-or-later
// Start at login is one entry in the autostart folder, written whole and removed whole.
#include "core/setup/Autostart.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace tolvane;

class TestAutostart : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void turningOnWritesAnEntryThatStartsThisExecutableAndTurningOffRemovesIt()
    {
        QTemporaryDir home;
        Autostart autostart(home.path() + QStringLiteral("/config/autostart"), QStringLiteral("/opt/My $Apps/tolvane"));
        QVERIFY(!autostart.isEnabled());
        QVERIFY(autostart.setEnabled(true).ok());
        QVERIFY(autostart.isEnabled());
        QFile entry(autostart.entryPath());
        QVERIFY(entry.open(QIODevice::ReadOnly));
        const QByteArray text = entry.readAll();
        QVERIFY(text.startsWith("[Desktop Entry]\nType=Application\n"));
        // The path is quoted and its reserved characters escaped, so the desktop runs exactly it.
        QVERIFY2(text.contains("\nExec=\"/opt/My \\$Apps/tolvane\"\n"), text.constData());
        QVERIFY(autostart.setEnabled(false).ok());
        QVERIFY(!autostart.isEnabled());
        QVERIFY(autostart.setEnabled(false).ok()); // already off: nothing to do
    }
};

QTEST_GUILESS_MAIN(TestAutostart)
#include "tst_Autostart.moc"
