// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/hotkeys/HotkeyCaptureCoordinator.h"
#include "core/hotkeys/HotkeyManager.h"

#include "fakes/FakePlatform.h"

#include <QTest>

using namespace tolvane;

namespace {

constexpr quint32 control = 4096, option = 2048, shift = 512, command = 256;
constexpr quint32 modifierOnly = 4294967295u;

QString bareKeyText(const QString& k)
{
    return QStringLiteral("“%1” by itself would stop that key from typing normally. Use a modifier combo like ⌥%1, "
                          "⌃%1, or the default ⌃⌥Space.")
        .arg(k);
}

KeyEvent keyDown(quint32 keyCode, quint32 modifiers = 0)
{
    return KeyEvent{KeyEvent::Type::keyDown, keyCode, modifiers, QString(), false};
}

KeyEvent flags(quint32 modifiers)
{
    return KeyEvent{KeyEvent::Type::flagsChanged, 0, modifiers, QString(), false};
}

struct Rig
{
    FakePlatform platform;
    Preferences preferences{*platform.preferences};
    HotkeyManager manager{preferences, *platform.hotkeys};
    FakeEventMonitor& monitor = *platform.eventMonitor;
    FakeGlobalHotkeyService& hotkeys = *platform.hotkeys;
    HotkeyCaptureCoordinator capture{monitor, manager, hotkeys};

    Rig() { QVERIFY(manager.updateHotkey(49, option)); }
    HotkeyCaptureCoordinator& startCapture()
    {
        capture.startCapture();
        return capture;
    }
    HotkeyCombination active() const { return manager.currentCombination(); }
};

} // namespace

class TestHotkeyCaptureCoordinator : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void keyCombinationBecomesTheHotkeyAndIsConsumed()
    {
        Rig rig;
        HotkeyCaptureCoordinator& capture = rig.startCapture();
        QVERIFY(capture.isCapturing());
        QCOMPARE(rig.monitor.activations, 1);
        QCOMPARE(rig.monitor.monitorCount(), 2);

        QVERIFY(rig.monitor.sendKey(keyDown(40, option))); // the K press never reaches the window
        QCOMPARE(rig.active(), (HotkeyCombination{40, option}));
        QVERIFY(!capture.isCapturing());
        QCOMPARE(rig.monitor.monitorCount(), 0);
        // Keys after capturing are ordinary keys again.
        QVERIFY(!rig.monitor.sendKey(keyDown(37, option)));
        QCOMPARE(rig.active(), (HotkeyCombination{40, option}));
    }

    void bareTypingKeysAreRefused_data()
    {
        QTest::addColumn<quint32>("keyCode");
        QTest::addColumn<QString>("name");
        QTest::newRow("A") << 0u << "A";
        QTest::newRow("Space") << 49u << "Space";
        QTest::newRow("Return") << 36u << "↩";
    }
    void bareTypingKeysAreRefused()
    {
        QFETCH(quint32, keyCode);
        QFETCH(QString, name);
        Rig rig;
        HotkeyCaptureCoordinator& capture = rig.startCapture();
        rig.monitor.sendKey(keyDown(keyCode));
        QCOMPARE(capture.validationMessageText(), bareKeyText(name));
        QCOMPARE(rig.active(), (HotkeyCombination{49, option}));
        QVERIFY(!capture.isCapturing());
        QVERIFY(!capture.pendingConflict());
        // Starting again clears the message.
        capture.startCapture();
        QVERIFY(!capture.validationMessage());
    }

    void conflictsWaitForUseAnywayOrChooseDifferent()
    {
        Rig rig;
        HotkeyCaptureCoordinator& capture = rig.startCapture();
        rig.monitor.sendKey(keyDown(96)); // F5
        QVERIFY(!capture.isCapturing());
        QCOMPARE(capture.pendingConflict()->conflict.reasons.size(), 1);
        QVERIFY(capture.pendingConflict()->conflict.reasons.first().startsWith("This is a single key"));
        QCOMPARE(rig.active(), (HotkeyCombination{49, option}));

        capture.confirmPendingConflict(); // "Use Anyway"
        QCOMPARE(rig.active(), (HotkeyCombination{96, 0}));
        QVERIFY(!capture.pendingConflict());
        capture.confirmPendingConflict(); // nothing pending: nothing happens
        QCOMPARE(rig.active(), (HotkeyCombination{96, 0}));

        capture.startCapture();
        rig.monitor.sendKey(keyDown(49, command));
        QVERIFY(capture.pendingConflict()->conflict.reasons.first().contains("Switch input source (⌘Space)"));
        capture.dismissPendingConflict(); // "Choose Different"
        QVERIFY(!capture.pendingConflict());
        QCOMPARE(rig.active(), (HotkeyCombination{96, 0}));
    }

    void modifiersAloneProposeTheLastSet_data()
    {
        QTest::addColumn<QList<quint32>>("sets");
        QTest::addColumn<quint32>("committed");
        QTest::newRow("⌃ then ⌃⌥") << QList<quint32>{control, control | option, 0} << (control | option);
        QTest::newRow("⇧ alone") << QList<quint32>{shift, 0} << shift;
        QTest::newRow("released one by one") << QList<quint32>{control, control | option, control, 0} << control;
    }
    void modifiersAloneProposeTheLastSet()
    {
        QFETCH(QList<quint32>, sets);
        QFETCH(quint32, committed);
        Rig rig;
        HotkeyCaptureCoordinator& capture = rig.startCapture();
        for (quint32 set : sets)
            QVERIFY(!rig.monitor.sendKey(flags(set))); // flags changes pass through
        QCOMPARE(rig.active(), (HotkeyCombination{modifierOnly, committed}));
        QVERIFY(!capture.isCapturing());
        QVERIFY(rig.hotkeys.attempts.size() == 1); // modifier-only candidates are never probed
    }

    void keyWhileModifiersHeldCommitsTheKey()
    {
        Rig rig;
        rig.startCapture();
        rig.monitor.sendKey(flags(control));
        rig.monitor.sendKey(keyDown(37, control)); // ⌃L
        QCOMPARE(rig.active(), (HotkeyCombination{37, control}));
        rig.monitor.sendKey(flags(0)); // the release comes after capturing ended
        QCOMPARE(rig.active(), (HotkeyCombination{37, control}));
    }

    void refusedCandidateLeavesTheManagersMessage()
    {
        Rig rig;
        // Free when probed, taken by the time it is registered.
        HotkeyCaptureCoordinator& capture = rig.startCapture();
        rig.hotkeys.takenByOthers.append({40, control});
        rig.monitor.sendKey(keyDown(40, control));
        QVERIFY(capture.pendingConflict()); // the probe already saw it taken
        capture.confirmPendingConflict();
        QCOMPARE(rig.active(), (HotkeyCombination{49, option}));
        QVERIFY(rig.manager.registrationError());
        QVERIFY(!capture.validationMessage());
    }

    void escapeEndsCaptureQuietly()
    {
        Rig rig;
        HotkeyCaptureCoordinator& capture = rig.startCapture();
        QVERIFY(rig.monitor.sendKey(keyDown(53)));
        QVERIFY(!capture.isCapturing());
        QVERIFY(!capture.validationMessage());
        QCOMPARE(rig.active(), (HotkeyCombination{49, option}));
    }

    void monitorsGoWithTheScreen()
    {
        Rig rig;
        {
            HotkeyCaptureCoordinator capture(rig.monitor, rig.manager, rig.hotkeys);
            capture.startCapture();
            capture.startCapture(); // a second start does not stack monitors
            QCOMPARE(rig.monitor.monitorCount(), 2);
        }
        QCOMPARE(rig.monitor.monitorCount(), 0);
    }

    void guideTakesOnlyKeysWithModifiers()
    {
        Rig rig;
        OnboardingHotkeyCaptureCoordinator capture(rig.monitor, rig.manager);
        capture.startCapture();
        QCOMPARE(rig.monitor.monitorCount(), 1);
        QVERIFY(!rig.monitor.sendKey(flags(control))); // modifier-only cannot be captured here
        QVERIFY(!rig.monitor.sendKey(flags(0)));
        QVERIFY(capture.isCapturing());

        QVERIFY(rig.monitor.sendKey(keyDown(96))); // F5 alone
        QCOMPARE(capture.validationMessageText(), bareKeyText(QStringLiteral("F5")));
        QVERIFY(!capture.isCapturing());
        QCOMPARE(rig.active(), (HotkeyCombination{49, option}));

        capture.startCapture();
        QVERIFY(!capture.validationMessage());
        rig.monitor.sendKey(keyDown(49, command)); // no conflict check in the guide
        QCOMPARE(rig.active(), (HotkeyCombination{49, command}));

        capture.startCapture();
        rig.monitor.sendKey(keyDown(53));
        QVERIFY(!capture.isCapturing());
        QCOMPARE(rig.active(), (HotkeyCombination{49, command}));
        QCOMPARE(rig.monitor.monitorCount(), 0);
    }
};

QTEST_GUILESS_MAIN(TestHotkeyCaptureCoordinator)
#include "tst_HotkeyCaptureCoordinator.moc"
