// SPDX-License-Identifier: GPL-3.0-or-later
// What the settings window shows for stored values, hand-edited ones included, and which desktop
// window opens the notification settings.
#include "core/setup/DesktopSettingsCommand.h"
#include "core/setup/Preferences.h"
#include "core/setup/SettingsChoices.h"
#include "platform/null/MemoryPreferenceStore.h"

#include <QTest>

#include <limits>

using namespace tolvane;

class TestSettingsChoices : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void overlayStepperShowsAWholeNumberInRange_data()
    {
        QTest::addColumn<PreferenceValue>("stored");
        QTest::addColumn<int>("shown");
        constexpr double inf = std::numeric_limits<double>::infinity();
        QTest::newRow("2.5 shows 2") << PreferenceValue(2.5) << 2;
        QTest::newRow("integer") << PreferenceValue(qint64(7)) << 7;
        QTest::newRow("under one") << PreferenceValue(0.4) << 1;
        QTest::newRow("above ten") << PreferenceValue(11.0) << 10;
        QTest::newRow("beyond any integer") << PreferenceValue(1e300) << 10;
        QTest::newRow("infinite: the default") << PreferenceValue(inf) << 5;
        QTest::newRow("minus infinite: the default") << PreferenceValue(-inf) << 5;
        QTest::newRow("not a number: the default") << PreferenceValue(std::nan("")) << 5;
        QTest::newRow("negative: the default") << PreferenceValue(-3.0) << 5;
        QTest::newRow("wrong type: the default") << PreferenceValue(QStringLiteral("slow")) << 5;
        QTest::newRow("a list: the default") << PreferenceValue(QList<qint64>{9}) << 5;
    }
    void overlayStepperShowsAWholeNumberInRange()
    {
        QFETCH(PreferenceValue, stored);
        QFETCH(int, shown);
        MemoryPreferenceStore store;
        Preferences preferences(store);
        store.set(PreferenceKey::wordOverlayDurationSeconds, stored);
        QCOMPARE(OverlayDurationStepper::displayedSeconds(preferences.wordOverlayDurationSeconds()), shown);
        // The raw value too, for callers that hold one.
        QVERIFY(OverlayDurationStepper::displayedSeconds(std::nan("")) >= 1);
    }

    void reminderFrequencyFindsItsChoice_data()
    {
        QTest::addColumn<double>("hours");
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("otherTitle");
        QTest::newRow("15 minutes") << 0.25 << 0 << QString();
        QTest::newRow("default") << 4.0 << 4 << QString();
        QTest::newRow("once a day") << 24.0 << 6 << QString();
        QTest::newRow("hand-edited 3 hours") << 3.0 << -1 << "Every 3 hours";
        QTest::newRow("hand-edited 10 minutes") << 1.0 / 6.0 << -1 << "Every 10 minutes";
    }
    void reminderFrequencyFindsItsChoice()
    {
        QFETCH(double, hours);
        QFETCH(int, index);
        QFETCH(QString, otherTitle);
        QCOMPARE(reminderFrequencyIndex(hours), index);
        if (index < 0)
            QCOMPARE(otherReminderFrequencyTitle(hours), otherTitle);
        else
            QCOMPARE(reminderFrequencyChoices().at(index).hours, hours);
    }

    void notificationSettingsOpenTheDesktopsOwnWindow_data()
    {
        QTest::addColumn<QStringList>("desktops");
        QTest::addColumn<QStringList>("installed");
        QTest::addColumn<QStringList>("command"); // empty: the explanation
        QTest::newRow("GNOME") << QStringList{"GNOME"} << QStringList{"gnome-control-center", "xfce4-notifyd-config"}
                               << QStringList{"gnome-control-center", "notifications"};
        QTest::newRow("Ubuntu session") << QStringList{"ubuntu", "GNOME"} << QStringList{"gnome-control-center"}
                                        << QStringList{"gnome-control-center", "notifications"};
        QTest::newRow("KDE Plasma 5") << QStringList{"KDE"} << QStringList{"systemsettings5", "gnome-control-center"}
                                      << QStringList{"systemsettings5", "kcm_notifications"};
        QTest::newRow("Xfce beside GNOME's tools")
            << QStringList{"XFCE"} << QStringList{"gnome-control-center", "xfce4-notifyd-config"}
            << QStringList{"xfce4-notifyd-config"};
        QTest::newRow("openbox alone uses what is installed")
            << QStringList{} << QStringList{"xfce4-notifyd-config"} << QStringList{"xfce4-notifyd-config"};
        QTest::newRow("GNOME without its settings") << QStringList{"GNOME"} << QStringList{} << QStringList{};
    }
    void notificationSettingsOpenTheDesktopsOwnWindow()
    {
        QFETCH(QStringList, desktops);
        QFETCH(QStringList, installed);
        QFETCH(QStringList, command);
        const auto found =
            notificationSettingsCommand(desktops, [&](const QString& program) { return installed.contains(program); });
        if (command.isEmpty()) {
            QVERIFY(!found.ok());
            QVERIFY(found.error().message.contains(QLatin1String("notification server")));
            return;
        }
        QVERIFY(found.ok());
        QCOMPARE(QStringList{found.value().program} + found.value().arguments, command);
    }
};

QTEST_GUILESS_MAIN(TestSettingsChoices)
#include "tst_SettingsChoices.moc"
