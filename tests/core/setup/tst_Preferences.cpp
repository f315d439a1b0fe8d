// SPDX-License-Identifier: GPL-3.0-or-later
// The readers' defaults and their rules for absent and invalid values.
#include "core/setup/Preferences.h"
#include "platform/null/MemoryPreferenceStore.h"

#include <QSignalSpy>
#include <QTest>

#include <limits>

using namespace tolvane;
Q_DECLARE_METATYPE(tolvane::PreferenceValue)

class TestPreferences : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void freshInstallationReadsEveryDefault()
    {
        MemoryPreferenceStore store;
        Preferences prefs(store);
        prefs.registerStartupDefaults();
        QVERIFY(prefs.translationHelperEnabled());
        QCOMPARE(prefs.targetLanguage(), QStringLiteral("ru"));
        QVERIFY(!prefs.storedTargetLanguage().has_value());
        QVERIFY(prefs.axWordLookupEnabled());
        QVERIFY(prefs.ocrFallbackEnabled());
        QVERIFY(!prefs.passageAutoSaveEnabled());
        QVERIFY(!prefs.onboardingComplete());
        QCOMPARE(prefs.wordOverlayDurationSeconds(), 5.0);
        QCOMPARE(prefs.passageOverlayDurationSeconds(), 3.0);
        QCOMPARE(prefs.notificationIntervalSeconds(), 14400.0);
        QCOMPARE(prefs.customHotkey(), (HotkeyCombination{49, 6144})); // Ctrl+Alt+Space
        QCOMPARE(prefs.appearanceMode(), AppearanceMode::system);
        QCOMPARE(prefs.successfulWordLookupCount(), 0);
        QVERIFY(prefs.shownLookupMilestones().isEmpty());
        // Registered defaults answer reads but are not stored values.
        QVERIFY(store.storedValues().isEmpty());
    }

    void durationsAndIntervalsNotAboveZeroCountAsDefault_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<PreferenceValue>("stored");
        QTest::addColumn<double>("expected");
        using V = PreferenceValue;
        const QString interval = PreferenceKey::notificationIntervalHours;
        QTest::newRow("interval 0 → 4 h") << interval << V(0.0) << 4.0;
        QTest::newRow("interval -1 → 4 h") << interval << V(qint64(-1)) << 4.0;
        QTest::newRow("interval 2 (integer)") << interval << V(qint64(2)) << 2.0;
        QTest::newRow("interval 0.5") << interval << V(0.5) << 0.5;
        QTest::newRow("interval text") << interval << V(QStringLiteral("soon")) << 4.0;
        QTest::newRow("interval NaN") << interval << V(qQNaN()) << 4.0;
        QTest::newRow("word 2.5") << QString(PreferenceKey::wordOverlayDurationSeconds) << V(2.5) << 2.5;
        QTest::newRow("word 0") << QString(PreferenceKey::wordOverlayDurationSeconds) << V(0.0) << 5.0;
        QTest::newRow("passage -3") << QString(PreferenceKey::passageOverlayDurationSeconds) << V(-3.0) << 3.0;
    }
    void durationsAndIntervalsNotAboveZeroCountAsDefault()
    {
        QFETCH(QString, key);
        QFETCH(PreferenceValue, stored);
        QFETCH(double, expected);
        MemoryPreferenceStore store;
        Preferences prefs(store);
        store.set(key, stored);
        const double read = key == PreferenceKey::notificationIntervalHours    ? prefs.notificationIntervalHours()
                            : key == PreferenceKey::wordOverlayDurationSeconds ? prefs.wordOverlayDurationSeconds()
                                                                               : prefs.passageOverlayDurationSeconds();
        QCOMPARE(read, expected);
    }

    void wordOverlayHoldIsTenTimesTheReadingTimeButAtLeastAMinute()
    {
        MemoryPreferenceStore store;
        Preferences prefs(store);
        prefs.setDouble(PreferenceKey::wordOverlayDurationSeconds, 2.5);
        QCOMPARE(prefs.wordOverlayMaximumHoldSeconds(), 60.0);
        prefs.setDouble(PreferenceKey::wordOverlayDurationSeconds, 9);
        QCOMPARE(prefs.wordOverlayDurationSeconds(), 9.0);
        QCOMPARE(prefs.wordOverlayMaximumHoldSeconds(), 90.0);
    }

    void onlyAStoredBooleanFalseDisablesLookups()
    {
        MemoryPreferenceStore store;
        Preferences prefs(store);
        prefs.registerStartupDefaults(); // a stored value beats the registered default
        prefs.setBool(PreferenceKey::translationHelperEnabled, false);
        QVERIFY(!prefs.translationHelperEnabled());
        prefs.removeObject(PreferenceKey::translationHelperEnabled);
        QVERIFY(prefs.translationHelperEnabled());
        prefs.setInteger(PreferenceKey::translationHelperEnabled, 0);
        QVERIFY(prefs.translationHelperEnabled());
        prefs.setString(PreferenceKey::translationHelperEnabled, QStringLiteral("false"));
        QVERIFY(prefs.translationHelperEnabled());
    }

    void unknownAppearanceFollowsTheDesktop()
    {
        MemoryPreferenceStore store;
        Preferences prefs(store);
        prefs.setString(PreferenceKey::appearanceMode, QStringLiteral("dark"));
        QCOMPARE(prefs.appearanceMode(), AppearanceMode::dark);
        prefs.setString(PreferenceKey::appearanceMode, QStringLiteral("Dark"));
        QCOMPARE(prefs.appearanceMode(), AppearanceMode::system);
        prefs.setInteger(PreferenceKey::appearanceMode, 1);
        QCOMPARE(prefs.appearanceMode(), AppearanceMode::system);
    }

    void hotkeyFallsBackWhenNotAnIntegerOrOutOfRange_data()
    {
        QTest::addColumn<PreferenceValue>("keyCode");
        QTest::addColumn<PreferenceValue>("modifiers");
        QTest::addColumn<quint32>("expectedKey");
        QTest::addColumn<quint32>("expectedModifiers");
        using V = PreferenceValue;
        QTest::newRow("stored") << V(qint64(17)) << V(qint64(6144)) << 17u << 6144u;
        QTest::newRow("modifier-only") << V(qint64(4294967295)) << V(qint64(4096)) << 4294967295u << 4096u;
        QTest::newRow("key not an integer") << V(QStringLiteral("17")) << V(qint64(256)) << 49u << 256u;
        QTest::newRow("key a double") << V(17.0) << V(qint64(256)) << 49u << 256u;
        QTest::newRow("key negative") << V(qint64(-1)) << V(qint64(256)) << 49u << 6144u;
        QTest::newRow("mask too large") << V(qint64(17)) << V(qint64(4294967296)) << 49u << 6144u;
    }
    void hotkeyFallsBackWhenNotAnIntegerOrOutOfRange()
    {
        QFETCH(PreferenceValue, keyCode);
        QFETCH(PreferenceValue, modifiers);
        QFETCH(quint32, expectedKey);
        QFETCH(quint32, expectedModifiers);
        MemoryPreferenceStore store;
        Preferences prefs(store);
        store.set(PreferenceKey::customHotkeyKeyCode, keyCode);
        store.set(PreferenceKey::customHotkeyModifiers, modifiers);
        QCOMPARE(prefs.customHotkey(), (HotkeyCombination{expectedKey, expectedModifiers}));
    }

    void userDefaultsConversions()
    {
        MemoryPreferenceStore store;
        Preferences prefs(store);
        QVERIFY(!prefs.boolForKey(QStringLiteral("absent")));
        QCOMPARE(prefs.integerForKey(QStringLiteral("absent")), 0);
        QVERIFY(!prefs.stringForKey(QStringLiteral("absent")));
        prefs.setDouble(QStringLiteral("d"), 2.9);
        QCOMPARE(prefs.integerForKey(QStringLiteral("d")), 2);
        prefs.setString(QStringLiteral("s"), QStringLiteral("YES"));
        QVERIFY(prefs.boolForKey(QStringLiteral("s")));
        prefs.setDouble(QStringLiteral("huge"), 1e300);
        QCOMPARE(prefs.integerForKey(QStringLiteral("huge")), 0);
        prefs.setIntegerArray(PreferenceKey::shownLookupMilestones, {25, 100});
        QCOMPARE(prefs.shownLookupMilestones(), (QList<qint64>{25, 100}));
        QVERIFY(!prefs.arrayForKey(QStringLiteral("s")));
    }

    void everyChangeIsSignalledOnceThroughOneSignal()
    {
        MemoryPreferenceStore store;
        Preferences prefs(store);
        QSignalSpy spy(&prefs, &Preferences::changed);
        prefs.setBool(PreferenceKey::passageAutoSaveEnabled, true);
        prefs.setBool(PreferenceKey::passageAutoSaveEnabled, true); // unchanged: no signal
        prefs.removeObject(PreferenceKey::passageAutoSaveEnabled);
        prefs.removeObject(PreferenceKey::passageAutoSaveEnabled); // absent already
        prefs.setDouble(PreferenceKey::wordOverlayDurationSeconds, std::numeric_limits<double>::infinity());
        QCOMPARE(spy.count(), 2);
        QVERIFY(!store.object(PreferenceKey::wordOverlayDurationSeconds));
    }
};

QTEST_GUILESS_MAIN(TestPreferences)
#include "tst_Preferences.moc"
