// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/hotkeys/CarbonModifiers.h"
#include "core/hotkeys/HotkeyKeyTable.h"
#include "core/hotkeys/KeyNames.h"

#include <QTest>

using namespace tolvane;

class TestKeyNames : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void displayStrings_data()
    {
        QTest::addColumn<quint32>("keyCode");
        QTest::addColumn<quint32>("modifiers");
        QTest::addColumn<QString>("display");
        QTest::addColumn<QStringList>("keycaps");
        QTest::newRow("Option+Space") << 49u << 2048u << "⌥Space" << QStringList{"⌥", "Space"};
        QTest::newRow("modifier-only") << 4294967295u << 6144u << "⌃⌥" << QStringList{"⌃", "⌥"};
        QTest::newRow("section key has no name") << 10u << 0u << "(10)" << QStringList{"(10)"};
        QTest::newRow("all four, fixed order") << 21u << 7936u << "⌃⌥⇧⌘4" << QStringList{"⌃", "⌥", "⇧", "⌘", "4"};
        QTest::newRow("keypad name stays one cap") << 76u << 4096u << "⌃Keypad ↩" << QStringList{"⌃", "Keypad ↩"};
        QTest::newRow("nothing") << 4294967295u << 0u << "" << QStringList{};
        QTest::newRow("foreign bits ignored") << 53u << (2048u | 1u | 65536u) << "⌥⎋" << QStringList{"⌥", "⎋"};
    }
    void displayStrings()
    {
        QFETCH(quint32, keyCode);
        QFETCH(quint32, modifiers);
        QFETCH(QString, display);
        QFETCH(QStringList, keycaps);
        QCOMPARE(hotkeyDisplayString(keyCode, modifiers), display);
        QCOMPARE(keycapLabels(display), keycaps);
    }

    void keycapsSplitOnlyLeadingSymbols()
    {
        // A symbol after the key name belongs to the name.
        QCOMPARE(keycapLabels(QStringLiteral("⌥A⌘")), (QStringList{"⌥", "A⌘"}));
    }

    void carbonMaskFromEventFlags()
    {
        using namespace EventModifierFlag;
        QCOMPARE(carbonModifiers(control | option), 6144u);
        // Caps Lock (1 << 16), numeric pad (1 << 21), Function (1 << 23) and device bits are dropped.
        QCOMPARE(carbonModifiers((1u << 16) | (1u << 21) | (1u << 23) | 0x1u | option), 2048u);
    }

    // Every stored key code must survive a trip through the desktop's names for it, or a
    // combination captured from a key event would register a different key.
    void keyTableRoundTrips()
    {
        int checked = 0;
        for (quint32 code = 0; code < 128; ++code) {
            const auto key = HotkeyKeyTable::byKeyCode(code);
            if (!key)
                continue;
            ++checked;
            QCOMPARE(key->keyCode, code);
            const auto bySym = HotkeyKeyTable::byKeysym(key->keysym);
            QVERIFY2(bySym && bySym->keyCode == code, qPrintable(QString::number(code)));
            if (key->qtKey != Qt::Key_unknown) {
                const auto byQt = HotkeyKeyTable::byQtKey(key->qtKey, key->keypad);
                QVERIFY2(byQt && byQt->keyCode == code, qPrintable(QString::number(code)));
            }
        }
        QVERIFY(checked > 100);
        // Every named key can be registered.
        for (quint32 code = 0; code < 128; ++code) {
            if (!keyName(code).startsWith(QLatin1Char('(')))
                QVERIFY2(HotkeyKeyTable::byKeyCode(code).has_value(), qPrintable(QString::number(code)));
        }
    }

    void keyTableAliases()
    {
        QCOMPARE(HotkeyKeyTable::byKeysym('K')->keyCode, 40u);    // Shift+K reports the capital
        QCOMPARE(HotkeyKeyTable::byKeysym(0xff9c)->keyCode, 83u); // KP_End is Keypad 1 without Num Lock
        QCOMPARE(HotkeyKeyTable::byQtKey(Qt::Key_Backtab, false)->keyCode, 48u);
        QCOMPARE(HotkeyKeyTable::byQtKey(Qt::Key_5, true)->keyCode, 87u); // keypad 5, not the digit
        QVERIFY(!HotkeyKeyTable::byKeysym(0x6c1));                        // a Cyrillic letter
        QCOMPARE(HotkeyKeyTable::modifierForKeysym(0xffeb), 256u);        // Super is Command
        QCOMPARE(HotkeyKeyTable::modifierForKeysym('a'), 0u);
    }
};

QTEST_GUILESS_MAIN(TestKeyNames)
#include "tst_KeyNames.moc"
