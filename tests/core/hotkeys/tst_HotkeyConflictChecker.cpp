// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/hotkeys/HotkeyConflictChecker.h"

#include "fakes/FakePlatform.h"

#include <QTest>

using namespace tolvane;

namespace {

const QString bareKey = QStringLiteral(
    "This is a single key with no modifier (⌘/⌥/⌃/⇧). Bare keys are global shortcuts, so they can stop that key or "
    "system action from working normally in other apps.");
const QString refused = QStringLiteral("The desktop refused to register this combination — something else (a system "
                                       "feature or another app) has already claimed it.");

QString known(const QString& name)
{
    return QStringLiteral("This matches a common desktop shortcut: ") + name +
           QStringLiteral(". Using it may stop that shortcut from working, or Tolvane's hotkey may not register at "
                          "all. (This is a best-effort list of well-known shortcuts, not a complete check of every "
                          "shortcut on your computer.)");
}

const HotkeyCombination optionSpace{49, 2048};
const HotkeyIdentifier probe{0x546c7650u, 2};

} // namespace

class TestHotkeyConflictChecker : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void reasons_data()
    {
        QTest::addColumn<quint32>("keyCode");
        QTest::addColumn<quint32>("modifiers");
        QTest::addColumn<bool>("takenElsewhere");
        QTest::addColumn<QStringList>("reasons");
        QTest::newRow("⌘Space") << 49u << 256u << false << QStringList{known("Switch input source (⌘Space)")};
        QTest::newRow("⌘Space, refused too")
            << 49u << 256u << true << QStringList{known("Switch input source (⌘Space)"), refused};
        QTest::newRow("⌃⌥⇧T matches no row") << 17u << 6656u << false << QStringList{};
        QTest::newRow("F3 alone") << 99u << 0u << false << QStringList{bareKey};
        QTest::newRow("F3 alone, refused") << 99u << 0u << true << QStringList{bareKey, refused};
        QTest::newRow("⇧Tab: only the probe can object") << 48u << 512u << true << QStringList{refused};
        QTest::newRow("⌥Space elsewhere free") << 49u << 2048u << false << QStringList{known("Window menu (⌥Space)")};
        QTest::newRow("⌘ alone") << 4294967295u << 256u << false << QStringList{known("Activities overview (⌘)")};
        QTest::newRow("⌃⌥ alone") << 4294967295u << 6144u << true << QStringList{};
        QTest::newRow("no modifier, no key") << 4294967295u << 0u << false << QStringList{bareKey};
    }
    void reasons()
    {
        QFETCH(quint32, keyCode);
        QFETCH(quint32, modifiers);
        QFETCH(bool, takenElsewhere);
        QFETCH(QStringList, reasons);
        FakeGlobalHotkeyService service;
        if (takenElsewhere)
            service.takenByOthers.append({keyCode, modifiers});
        const auto conflict = HotkeyConflictChecker::check(keyCode, modifiers, HotkeyCombination{40, 6144}, service);
        QCOMPARE(conflict.has_value(), !reasons.isEmpty());
        if (conflict)
            QCOMPARE(conflict->reasons, reasons);
        // Nothing of the probe survives, whatever it found.
        QVERIFY(service.registered.isEmpty());
        const bool probed = !service.attempts.isEmpty();
        QCOMPARE(probed, keyCode != 4294967295u);
        if (probed) {
            QCOMPARE(service.attempts.size(), 1);
            QCOMPARE(service.attempts.first().identifier, probe);
            QCOMPARE(service.unregistered, QList<HotkeyIdentifier>{probe});
        }
    }

    void activeCombinationIsNeverProbed()
    {
        FakeGlobalHotkeyService service;
        // Tolvane itself holds it, so a probe would always be refused.
        service.takenByOthers.append({49, 2048});
        const auto conflict = HotkeyConflictChecker::check(49, 2048, optionSpace, service);
        QVERIFY(service.attempts.isEmpty());
        // On this desktop Option+Space is also the window menu, which still deserves the warning.
        QCOMPARE(conflict.value().reasons, QStringList{known("Window menu (⌥Space)")});

        QVERIFY(!HotkeyConflictChecker::check(40, 6144, HotkeyCombination{40, 6144}, service));
        QVERIFY(service.attempts.isEmpty());
        // Same key, other modifiers: not current, so probed.
        (void)HotkeyConflictChecker::check(40, 4096, HotkeyCombination{40, 6144}, service);
        QCOMPARE(service.attempts.size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestHotkeyConflictChecker)
#include "tst_HotkeyConflictChecker.moc"
