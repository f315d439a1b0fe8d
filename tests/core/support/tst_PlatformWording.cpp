// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/support/PlatformWording.h"

#include <QTest>

using namespace tolvane;

class TestPlatformWording : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void saysTheDesktopsWords_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QTest::newRow("sentence start") << QStringLiteral("macOS could not register the hotkey.")
                                        << "The desktop could not register the hotkey.";
        QTest::newRow("your Mac") << QStringLiteral("Nothing leaves your Mac.") << "Nothing leaves your computer.";
        QTest::newRow("footer") << QStringLiteral("TOLVANE FOR MAC") << "TOLVANE FOR LINUX";
        QTest::newRow("whole words only")
            << QStringLiteral("Machine translation on iMac") << "Machine translation on iMac";
        QTest::newRow("after a sentence") << QStringLiteral("Done. macOS keeps it.") << "Done. The desktop keeps it.";
    }
    void saysTheDesktopsWords()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(onThisPlatform(text), expected);
    }

    void namesKeysAsThisDesktopsKeyboards_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QTest::newRow("combination") << QStringLiteral("the default ⌃⌥Space.") << "the default Ctrl+Alt+Space.";
        QTest::newRow("symbol key then full stop")
            << QStringLiteral("like ⌥Space or ⌥`.") << "like Alt+Space or Alt+`.";
        QTest::newRow("bare symbols") << QStringLiteral("(⌘/⌥/⌃/⇧)") << "(Super/Alt/Ctrl/Shift)";
        QTest::newRow("modifiers alone, order kept") << QStringLiteral("⇧⌘ or ⌃⌥") << "Shift+Super or Ctrl+Alt";
        QTest::newRow("no symbols") << QStringLiteral("Alt+Tab") << "Alt+Tab";
    }
    void namesKeysAsThisDesktopsKeyboards()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(keysOnThisPlatform(text), expected);
    }
};

QTEST_GUILESS_MAIN(TestPlatformWording)
#include "tst_PlatformWording.moc"
