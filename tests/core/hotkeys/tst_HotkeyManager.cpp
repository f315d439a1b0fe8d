// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/hotkeys/HotkeyManager.h"

#include "fakes/FakePlatform.h"

#include <QSignalSpy>
#include <QTest>

using namespace tolvane;

namespace {

constexpr quint32 modifierOnly = 4294967295u;
constexpr quint32 control = 4096, option = 2048, shift = 512, command = 256;

const QString previousKept = QStringLiteral(
    "The desktop could not register that hotkey because it is already in use. Your previous hotkey remains active.");
const QString chooseDifferent = QStringLiteral(
    "The desktop could not register this hotkey because it is already in use. Choose a different combination.");

struct Rig
{
    FakePlatform platform;
    Preferences preferences{*platform.preferences};
    std::unique_ptr<HotkeyManager> manager;
    QStringList calls;

    HotkeyManager& create()
    {
        manager = std::make_unique<HotkeyManager>(preferences, *platform.hotkeys);
        manager->onHotkeyPressed = [this] { calls.append(QStringLiteral("pressed")); };
        manager->onHotkeyReleased = [this] { calls.append(QStringLiteral("released")); };
        return *manager;
    }
    FakeGlobalHotkeyService& hotkeys() { return *platform.hotkeys; }
    // The stored integer; -1 when absent or of another type.
    qint64 stored(QLatin1String key) const
    {
        const auto value = platform.preferences->object(key);
        return value && std::holds_alternative<qint64>(*value) ? std::get<qint64>(*value) : -1;
    }

    // The one-mechanism rule, checked after every step that changes what is registered.
    void verifyOneMechanism() const
    {
        const bool grab = manager->isHotKeyRegistered();
        QCOMPARE(manager->isEventHandlerInstalled(), grab);
        QVERIFY(!(grab && manager->areStandaloneMonitorsInstalled()));
        QCOMPARE(bool(platform.hotkeys->handler), manager->isEventHandlerInstalled());
        QCOMPARE(bool(platform.hotkeys->modifierHandler), manager->areStandaloneMonitorsInstalled());
        QVERIFY(platform.hotkeys->registered.size() <= 1);
    }
};

} // namespace

class TestHotkeyManager : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void freshStoreRegistersTheDefaultAndHearsOnlyItsOwnKey()
    {
        Rig rig;
        HotkeyManager& manager = rig.create();
        QVERIFY(rig.hotkeys().attempts.isEmpty()); // creation registers nothing
        QCOMPARE(rig.stored(PreferenceKey::customHotkeyKeyCode), qint64(-1));
        QCOMPARE(manager.currentCombination(), (HotkeyCombination{49, control | option}));

        QVERIFY(manager.updateHotkey(manager.currentKeyCode(), manager.currentModifiers()));
        QCOMPARE(rig.stored(PreferenceKey::customHotkeyKeyCode), qint64(49));
        QCOMPARE(rig.stored(PreferenceKey::customHotkeyModifiers), qint64(6144));
        rig.verifyOneMechanism();

        // Press and release reach the callbacks only for our identifier.
        const HotkeyIdentifier ours{0x546c7648u, 1};
        rig.hotkeys().press(ours);
        rig.hotkeys().release(ours);
        QCOMPARE(rig.calls, (QStringList{"pressed", "released"}));

        rig.calls.clear();
        rig.hotkeys().press({0x546c7648u, 2});
        rig.hotkeys().release({0x546c7650u, 1}); // the conflict probe's signature
        rig.hotkeys().press({0, 0});
        QVERIFY(rig.calls.isEmpty());
    }

    void rejectedCombinationKeepsThePreviousOne()
    {
        Rig rig;
        HotkeyManager& manager = rig.create();
        QVERIFY(manager.updateHotkey(49, option));
        rig.hotkeys().takenByOthers.append({40, command});
        QSignalSpy errorSpy(&manager, &HotkeyManager::registrationErrorChanged);
        QSignalSpy keySpy(&manager, &HotkeyManager::currentKeyCodeChanged);

        QVERIFY(!manager.updateHotkey(40, command));
        QCOMPARE(manager.registrationErrorText(), previousKept);
        QCOMPARE(errorSpy.size(), 1);
        QCOMPARE(keySpy.size(), 0);
        QCOMPARE(manager.currentKeyCode(), 49u);
        QCOMPARE(rig.stored(PreferenceKey::customHotkeyKeyCode), qint64(49));
        rig.verifyOneMechanism();
        rig.hotkeys().press(HotkeyManager::hotKeyID); // Option+Space still fires
        QCOMPARE(rig.calls, QStringList{"pressed"});

        // A later success clears the message.
        QVERIFY(manager.updateHotkey(40, control));
        QVERIFY(!manager.registrationError());
        QCOMPARE(keySpy.size(), 1);
        QCOMPARE(rig.stored(PreferenceKey::customHotkeyKeyCode), qint64(40));
        rig.verifyOneMechanism();
    }

    void failedRollbackLeavesNothingActive()
    {
        Rig rig;
        HotkeyManager& manager = rig.create();
        QVERIFY(manager.updateHotkey(49, option));
        // Another client takes Option+Space too, between our release and our retry.
        rig.hotkeys().takenByOthers = {{40, command}, {49, option}};
        QVERIFY(!manager.updateHotkey(40, command));
        QCOMPARE(manager.registrationErrorText(), chooseDifferent);
        QVERIFY(rig.hotkeys().registered.isEmpty());
        rig.verifyOneMechanism();
        QCOMPARE(rig.stored(PreferenceKey::customHotkeyKeyCode), qint64(49));
    }

    void failedStartupRegistration()
    {
        Rig rig;
        rig.hotkeys().takenByOthers.append({49, option});
        HotkeyManager& manager = rig.create();
        QVERIFY(!manager.updateHotkey(manager.currentKeyCode(), manager.currentModifiers()));
        QCOMPARE(manager.registrationErrorText(), chooseDifferent);
        // Nothing was active, so no retry was attempted.
        QCOMPARE(rig.hotkeys().attempts.size(), 1);
        rig.verifyOneMechanism();
    }

    void modifierOnlySequences_data()
    {
        QTest::addColumn<QList<quint32>>("sets");
        QTest::addColumn<int>("firings");
        QTest::newRow("both, then none") << QList<quint32>{control, control | option, 0} << 1;
        QTest::newRow("extra shift") << QList<quint32>{control, control | option, control | option | shift, 0} << 0;
        QTest::newRow("released one by one") << QList<quint32>{control, control | option, control, 0} << 0;
        QTest::newRow("shift pressed and released again")
            << QList<quint32>{control, control | option, control | option | shift, control | option, 0} << 1;
        QTest::newRow("twice") << QList<quint32>{option, control | option, 0, control | option, 0} << 2;
        QTest::newRow("only control") << QList<quint32>{control, 0} << 0;
        QTest::newRow("empty after empty") << QList<quint32>{control | option, 0, 0} << 1;
        QTest::newRow("command counts") << QList<quint32>{control | option | command, 0} << 0;
    }
    void modifierOnlySequences()
    {
        QFETCH(QList<quint32>, sets);
        QFETCH(int, firings);
        Rig rig;
        HotkeyManager& manager = rig.create();
        QVERIFY(manager.updateHotkey(modifierOnly, control | option));
        rig.verifyOneMechanism();
        QVERIFY(rig.hotkeys().registered.isEmpty());
        for (quint32 set : sets)
            rig.hotkeys().modifiersChanged(set);
        QStringList expected;
        for (int i = 0; i < firings; ++i)
            expected << QStringLiteral("pressed") << QStringLiteral("released");
        QCOMPARE(rig.calls, expected);
        QCOMPARE(manager.standaloneHeldModifiers(), 0u);
        QCOMPARE(rig.stored(PreferenceKey::customHotkeyKeyCode), qint64(4294967295));
        QCOMPARE(rig.stored(PreferenceKey::customHotkeyModifiers), qint64(6144));
    }

    void switchingMechanismsRemovesTheOther()
    {
        Rig rig;
        HotkeyManager& manager = rig.create();
        QVERIFY(manager.updateHotkey(modifierOnly, control | option));
        rig.hotkeys().modifiersChanged(control);
        QCOMPARE(manager.standaloneHeldModifiers(), control);

        // To a key combination: the monitor goes.
        QVERIFY(manager.updateHotkey(40, option));
        QCOMPARE(manager.standaloneHeldModifiers(), 0u);
        rig.verifyOneMechanism();
        rig.hotkeys().modifiersChanged(control | option); // a stale report is not ours any more
        rig.hotkeys().modifiersChanged(0);
        QVERIFY(rig.calls.isEmpty());

        // And back: grab and handler are released.
        QVERIFY(manager.updateHotkey(modifierOnly, command));
        QCOMPARE(rig.hotkeys().unregistered.last(), HotkeyManager::hotKeyID);
        rig.verifyOneMechanism();
        rig.hotkeys().press(HotkeyManager::hotKeyID);
        QVERIFY(rig.calls.isEmpty());
    }

    void modifierOnlyWithoutAMonitorStillCounts()
    {
        Rig rig;
        rig.hotkeys().modifierMonitorFails = true;
        HotkeyManager& manager = rig.create();
        QVERIFY(manager.updateHotkey(modifierOnly, control | option));
        QVERIFY(!manager.registrationError());
        QCOMPARE(manager.currentKeyCode(), modifierOnly);
    }

    void callbackThatReplacesTheHotkeyIsSafe()
    {
        Rig rig;
        HotkeyManager& manager = rig.create();
        QVERIFY(manager.updateHotkey(modifierOnly, control));
        int released = 0;
        manager.onHotkeyPressed = [&] {
            manager.onHotkeyPressed = nullptr;
            manager.updateHotkey(49, option);
        };
        manager.onHotkeyReleased = [&] { ++released; };
        rig.hotkeys().modifiersChanged(control);
        rig.hotkeys().modifiersChanged(0);
        QCOMPARE(released, 1);
        QCOMPARE(manager.currentKeyCode(), 49u);
        rig.verifyOneMechanism();
    }

    void unregisterAndDestructionReleaseEverything()
    {
        Rig rig;
        HotkeyManager& manager = rig.create();
        QVERIFY(manager.updateHotkey(49, option));
        manager.unregisterHotkey();
        QVERIFY(rig.hotkeys().registered.isEmpty());
        rig.verifyOneMechanism();

        QVERIFY(manager.updateHotkey(modifierOnly, shift));
        rig.manager.reset();
        QVERIFY(!rig.hotkeys().modifierHandler);
        QVERIFY(rig.hotkeys().registered.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestHotkeyManager)
#include "tst_HotkeyManager.moc"
