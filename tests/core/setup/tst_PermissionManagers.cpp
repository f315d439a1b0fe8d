// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/setup/PermissionManager.h"
#include "fakes/FakePlatform.h"
#include "fakes/FakeScheduler.h"

#include <QSignalSpy>
#include <QTest>

using namespace tolvane;
using namespace std::chrono_literals;

class TestPermissionManagers : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void accessibilityNoticesAChangeWithinAPollPeriod()
    {
        FakeScheduler scheduler;
        FakeAccessibilityService service;
        service.trusted = false;
        AccessibilityPermissionManager manager(service, scheduler);
        QSignalSpy changes(&manager, &PermissionManager::isGrantedChanged);
        QVERIFY(!manager.isGranted());

        // Two polls that read the same value say nothing.
        scheduler.advance(3000ms);
        QCOMPARE(changes.size(), 0);

        service.trusted = true; // switched on in the desktop's settings
        scheduler.advance(1499ms);
        QVERIFY(!manager.isGranted());
        scheduler.advance(1ms);
        QVERIFY(manager.isGranted());
        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes[0][0].toBool(), true);

        // Polling goes on once granted, so a revocation is noticed too.
        service.trusted = false;
        scheduler.advance(1500ms);
        QCOMPARE(changes.size(), 2);
    }

    void accessibilityRequestRefreshesAtOnceAndLeavesTheSettingsClosed()
    {
        FakeScheduler scheduler;
        FakeAccessibilityService service;
        AccessibilityPermissionManager granted(service, scheduler);
        QSignalSpy changes(&granted, &PermissionManager::isGrantedChanged);
        granted.requestAccess();
        QCOMPARE(service.trustRequests, 1);
        QCOMPARE(service.settingsOpened, 0);
        QVERIFY(granted.isGranted());
        QCOMPARE(changes.size(), 0);

        service.trusted = false;
        service.grantOnRequest = true;
        AccessibilityPermissionManager notYet(service, scheduler);
        notYet.requestAccess();
        QVERIFY(notYet.isGranted()); // refreshed at once, not at the next poll
    }

    void accessibilitySettingsExplainWhenThereAreNone()
    {
        FakeScheduler scheduler;
        FakeAccessibilityService service;
        AccessibilityPermissionManager manager(service, scheduler);
        manager.openSystemSettings();
        QCOMPARE(manager.settingsMessage(), QString());
        service.settingsError = QStringLiteral("Run gsettings …");
        QSignalSpy messages(&manager, &PermissionManager::settingsMessageChanged);
        manager.openSystemSettings();
        manager.openSystemSettings();
        QCOMPARE(service.settingsOpened, 3);
        QCOMPARE(manager.settingsMessage(), QStringLiteral("Run gsettings …"));
        QCOMPARE(messages.size(), 1);
    }

    void screenRecordingRequestAlwaysOpensSettings()
    {
        FakeScheduler scheduler;
        FakeScreenTextRecognizer recognizer;
        ScreenRecordingPermissionManager manager(recognizer, scheduler);
        QVERIFY(manager.isGranted());
        manager.requestAccess();
        QCOMPARE(recognizer.accessRequests, 1);
        QCOMPARE(recognizer.settingsOpened, 1);
    }

    void pollingStopsWithTheManager()
    {
        FakeScheduler scheduler;
        FakeAccessibilityService service;
        FakeScreenTextRecognizer recognizer;
        {
            AccessibilityPermissionManager accessibility(service, scheduler);
            ScreenRecordingPermissionManager screen(recognizer, scheduler);
            QCOMPARE(scheduler.activeTimerCount(), 2);
        }
        QCOMPARE(scheduler.activeTimerCount(), 0);
        scheduler.advance(5000ms); // nothing left to call into the destroyed managers
    }
};

QTEST_GUILESS_MAIN(TestPermissionManagers)
#include "tst_PermissionManagers.moc"
