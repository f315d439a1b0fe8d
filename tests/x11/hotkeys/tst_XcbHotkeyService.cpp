// SPDX-License-Identifier: GPL-3.0-or-later
// The hotkey manager against a real X server: xdotool plays the user, hotkey_holder plays another
// application that holds a combination.
#include "core/hotkeys/HotkeyConflictChecker.h"
#include "core/hotkeys/HotkeyManager.h"
#include "platform/linux/hotkeys/XcbHotkeyService.h"
#include "platform/null/MemoryPreferenceStore.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

using namespace tolvane;

namespace {

constexpr quint32 control = 4096, option = 2048, shift = 512;
constexpr quint32 modifierOnly = 4294967295u;
constexpr quint32 keyJ = 38, keyK = 40, keyL = 37;
constexpr quint32 xControlAlt = 4 | 8; // ControlMask | Mod1Mask

// Runs xdotool with its own sleeps inside, letting our events through meanwhile; then waits a
// little longer than the release window of modifier keys.
bool xdotool(const QString& script)
{
    QProcess process;
    QSignalSpy finished(&process, &QProcess::finished);
    process.start(QStringLiteral("xdotool"), script.split(QLatin1Char(' '), Qt::SkipEmptyParts));
    if (!finished.wait(15000) || process.exitCode() != 0)
        return false;
    QTest::qWait(300);
    return true;
}

int tryGrab(quint32 keysym, quint32 xModifiers)
{
    QProcess process;
    process.start(QStringLiteral(HOTKEY_HOLDER),
                  {QStringLiteral("try"), QString::number(keysym), QString::number(xModifiers)});
    process.waitForFinished(5000);
    return process.exitCode();
}

// Another client holding a combination for as long as this object lives.
struct Holder
{
    QProcess process;
    bool hold(quint32 keysym, quint32 xModifiers)
    {
        process.start(QStringLiteral(HOTKEY_HOLDER),
                      {QStringLiteral("hold"), QString::number(keysym), QString::number(xModifiers)});
        return process.waitForReadyRead(5000) && process.readLine().trimmed() == "held";
    }
    ~Holder()
    {
        process.closeWriteChannel();
        process.waitForFinished(5000);
    }
};

struct Rig
{
    MemoryPreferenceStore store;
    Preferences preferences{store};
    std::unique_ptr<GlobalHotkeyService> service = createXcbHotkeyService();
    std::unique_ptr<HotkeyManager> manager;
    QElapsedTimer clock;
    QList<qint64> presses, releases;

    Rig()
    {
        clock.start();
        if (!service)
            return;
        manager = std::make_unique<HotkeyManager>(preferences, *service);
        manager->onHotkeyPressed = [this] { presses.append(clock.elapsed()); };
        manager->onHotkeyReleased = [this] { releases.append(clock.elapsed()); };
    }
    void reset()
    {
        presses.clear();
        releases.clear();
    }
};

} // namespace

class TestXcbHotkeyService : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("xdotool")).isEmpty())
            QSKIP("xdotool is missing: the X11 hotkey tests cannot play the user");
        QVERIFY2(createXcbHotkeyService() != nullptr, "not running on an X11 display");
    }

    void heldHotkeyGivesOnePressAndOneRelease()
    {
        Rig rig;
        QVERIFY(rig.manager->updateHotkey(keyK, control | option));
        const qint64 start = rig.clock.elapsed();
        QVERIFY(xdotool(QStringLiteral("keydown ctrl+alt+k sleep 1 keyup k sleep 0.1 keyup ctrl+alt")));
        QCOMPARE(rig.presses.size(), 1);
        QCOMPARE(rig.releases.size(), 1);
        // The key went up a second after it went down; a slow desktop can only make that later.
        QVERIFY2(rig.releases.first() - start >= 1000, qPrintable(QString::number(rig.releases.first() - start)));
        QVERIFY(rig.presses.first() < rig.releases.first());

        // Modifiers let go first: the release still arrives, matched by its key.
        rig.reset();
        QVERIFY(xdotool(QStringLiteral("keydown ctrl+alt+k sleep 0.2 keyup ctrl+alt sleep 0.2 keyup k")));
        QCOMPARE(rig.presses.size(), 1);
        QCOMPARE(rig.releases.size(), 1);

        // Other modifiers, or none, leave the hotkey alone.
        rig.reset();
        QVERIFY(xdotool(QStringLiteral("key ctrl+alt+shift+k key alt+k key k")));
        QVERIFY(rig.presses.isEmpty());
    }

    void firesWithCapsLockAndNumLockOn()
    {
        Rig rig;
        QVERIFY(rig.manager->updateHotkey(keyK, control | option));
        const bool fired =
            xdotool(QStringLiteral("key Num_Lock key ctrl+alt+k key Caps_Lock key ctrl+alt+k key Num_Lock "
                                   "key ctrl+alt+k key Caps_Lock"));
        QVERIFY(fired);
        QCOMPARE(rig.presses.size(), 3);
        QCOMPARE(rig.releases.size(), 3);
    }

    void combinationHeldElsewhereKeepsThePreviousHotkey()
    {
        Rig rig;
        QVERIFY(rig.manager->updateHotkey(keyK, control | option));
        Holder holder;
        QVERIFY(holder.hold('j', xControlAlt));

        QVERIFY(!rig.manager->updateHotkey(keyJ, control | option));
        QCOMPARE(rig.manager->registrationErrorText(),
                 QStringLiteral("The desktop could not register that hotkey because it is already in use. Your "
                                "previous hotkey remains active."));
        QCOMPARE(rig.manager->currentKeyCode(), keyK);
        QCOMPARE(rig.preferences.customHotkey(), (HotkeyCombination{keyK, control | option}));
        QVERIFY(xdotool(QStringLiteral("key ctrl+alt+k")));
        QCOMPARE(rig.presses.size(), 1);
        QCOMPARE(rig.releases.size(), 1);
    }

    void keysTheDesktopLacksAreRefusedCleanly()
    {
        Rig rig;
        QVERIFY(rig.manager->updateHotkey(keyK, control | option));
        // No keysym for the code at all; F20, which this keyboard does not have; § likewise.
        for (quint32 keyCode : {200u, 90u, 10u}) {
            QTest::ignoreMessage(QtInfoMsg, QRegularExpression(QStringLiteral("Could not register")));
            QVERIFY(!rig.manager->updateHotkey(keyCode, control));
            QCOMPARE(rig.manager->currentKeyCode(), keyK);
        }
        QVERIFY(xdotool(QStringLiteral("key ctrl+alt+k")));
        QCOMPARE(rig.presses.size(), 1);
    }

    void modifierOnlyFiresForTheExactLastSet_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<int>("firings");
        QTest::newRow("⌃, ⌃⌥, none") << "keydown ctrl sleep 0.3 keydown alt sleep 0.3 keyup ctrl+alt" << 1;
        QTest::newRow("⌃, ⌃⌥, ⌃, none") << "keydown ctrl sleep 0.3 keydown alt sleep 0.3 keyup alt sleep 0.3 keyup ctrl"
                                        << 0;
        QTest::newRow("⌃, ⌃⌥, ⌃⌥⇧, ⌃⌥, none") << "keydown ctrl sleep 0.3 keydown alt sleep 0.3 keydown shift "
                                                 "sleep 0.3 keyup shift sleep 0.3 keyup ctrl+alt"
                                              << 1;
    }
    void modifierOnlyFiresForTheExactLastSet()
    {
        QFETCH(QString, script);
        QFETCH(int, firings);
        Rig rig;
        QVERIFY(rig.manager->updateHotkey(modifierOnly, control | option));
        QVERIFY(xdotool(script));
        QCOMPARE(rig.presses.size(), firings);
        QCOMPARE(rig.releases.size(), firings);
    }

    void conflictProbeLeavesNoGrab()
    {
        std::unique_ptr<GlobalHotkeyService> service = createXcbHotkeyService();
        const auto free = HotkeyConflictChecker::check(keyL, control | option, HotkeyCombination{keyK, 6144}, *service);
        QVERIFY(!free);
        QCOMPARE(tryGrab('l', xControlAlt), 0);

        Holder holder;
        QVERIFY(holder.hold('l', xControlAlt));
        const auto held = HotkeyConflictChecker::check(keyL, control | option, std::nullopt, *service);
        QVERIFY(held);
        QCOMPARE(held->reasons.size(), 1);
        QVERIFY(held->reasons.first().startsWith(QStringLiteral("The desktop refused to register this combination")));
    }

    void nothingOutlivesUnregisterOrTheService()
    {
        {
            Rig rig;
            QVERIFY(rig.manager->updateHotkey(keyK, control | option));
            QCOMPARE(tryGrab('k', xControlAlt), 1); // ours
            rig.manager->unregisterHotkey();
            QCOMPARE(tryGrab('k', xControlAlt), 0);
            // A modifier-only hotkey holds no grab but watches the keyboard: that stops too.
            QVERIFY(rig.manager->updateHotkey(modifierOnly, control | shift));
            rig.manager->unregisterHotkey();
            QVERIFY(xdotool(QStringLiteral("keydown ctrl+shift sleep 0.2 keyup ctrl+shift")));
            QVERIFY(rig.presses.isEmpty());
            QVERIFY(rig.manager->updateHotkey(keyK, control | option));
        }
        QCOMPARE(tryGrab('k', xControlAlt), 0);
    }

    void keyboardMappingChangeMovesTheGrab()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("xmodmap")).isEmpty())
            QSKIP("xmodmap is missing");
        QProcess list;
        list.start(QStringLiteral("xmodmap"), {QStringLiteral("-pke")});
        QVERIFY(list.waitForFinished(5000));
        const QString table = QString::fromLocal8Bit(list.readAllStandardOutput());
        const auto codeOf = [&](const QString& keysym) {
            const auto match = QRegularExpression(QStringLiteral("keycode\\s+(\\d+) = %1 ").arg(keysym)).match(table);
            return match.hasMatch() ? match.captured(1) : QString();
        };
        const QString j = codeOf(QStringLiteral("j")), k = codeOf(QStringLiteral("k"));
        QVERIFY(!j.isEmpty() && !k.isEmpty());
        const auto remap = [](const QStringList& expressions) {
            QStringList arguments;
            for (const QString& e : expressions)
                arguments << QStringLiteral("-e") << e;
            return QProcess::execute(QStringLiteral("xmodmap"), arguments) == 0;
        };

        Rig rig;
        QVERIFY(rig.manager->updateHotkey(keyK, control | option));
        // K moves to the key that was J.
        QVERIFY(remap({QStringLiteral("keycode %1 = k K").arg(j), QStringLiteral("keycode %1 = j J").arg(k)}));
        QTest::qWait(300);
        const bool fired = xdotool(QStringLiteral("key ctrl+alt+k")) && rig.presses.size() == 1;
        const bool freed = tryGrab('j', xControlAlt) == 0;
        QVERIFY(remap({QStringLiteral("keycode %1 = j J").arg(j), QStringLiteral("keycode %1 = k K").arg(k)}));
        QVERIFY(fired);
        QVERIFY(freed); // the old key is no longer held
    }
};

QTEST_MAIN(TestXcbHotkeyService)
#include "tst_XcbHotkeyService.moc"
