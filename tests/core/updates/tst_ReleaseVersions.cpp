// SPDX-License-Identifier: GPL-3.0-or-later
// What the release feed may say and what Tolvane makes of it: version numbers and their order, the
// addresses a feed may come from, the release description, and the UpdaterManager's answers —
// Skip This Version and Remind Me Later kept across checks, a cancelled check's late answer
// dropped, a second "Check for Updates…" during a check not fetching again.

#include "core/records/RecordJson.h"
#include "core/setup/Preferences.h"
#include "core/updates/UpdaterManager.h"
#include "fakes/FakeScheduler.h"
#include "fakes/FakeUpdateChecker.h"
#include "platform/null/MemoryPreferenceStore.h"

#include <QSignalSpy>
#include <QTest>

using namespace tolvane;

namespace {

QByteArray description(const QString& version,
                       const QString& download = QStringLiteral("https://tolvane.app/download/"))
{
    return QStringLiteral("{\"version\": \"%1\", \"notes\": \"Fixes.\", \"download\": \"%2\"}")
        .arg(version, download)
        .toUtf8();
}

} // namespace

class tst_ReleaseVersions final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsThatAreNotVersionsAreRefused_data()
    {
        QTest::addColumn<QString>("text");
        for (const char* text :
             {"", "1", "v1.2.0", "1.2.x", "1..2", "1.2.", ".1.2", "1.2.3.4.5", "01.2.0", "1.2.0-", "1.2.0-beta..1",
              "1.2.0-béta", "1.2.0+build", " 1.2.0", "1.2.0\n", "-1.2.0", "1.2.-3", "9999999999.0",
              "1.2.0-aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa"})
            QTest::newRow(text) << QString::fromUtf8(text);
        // Digits of other scripts are digits to QChar, but no release is numbered in them.
        QTest::newRow("fullwidth digits") << QStringLiteral("１.２.３");
        QTest::newRow("arabic-indic digits") << QStringLiteral("١.٢");
    }
    void textsThatAreNotVersionsAreRefused()
    {
        QFETCH(QString, text);
        QVERIFY(!ReleaseVersion::parse(text));
    }

    void versionsOrderAsReleasesDo_data()
    {
        QTest::addColumn<QString>("lower");
        QTest::addColumn<QString>("higher");
        QTest::newRow("patch") << "0.1.0"
                               << "0.1.1";
        QTest::newRow("numbers, not characters") << "0.9.0"
                                                 << "0.10.0";
        QTest::newRow("major over minor") << "1.99.99"
                                          << "2.0.0";
        QTest::newRow("pre-release before release") << "1.0.0-rc.1"
                                                    << "1.0.0";
        QTest::newRow("numeric pre-release parts by value") << "1.0.0-beta.2"
                                                            << "1.0.0-beta.11";
        QTest::newRow("numbers before words") << "1.0.0-1"
                                              << "1.0.0-alpha";
        QTest::newRow("longer pre-release after its prefix") << "1.0.0-alpha"
                                                             << "1.0.0-alpha.1";
        QTest::newRow("four numbers") << "1.0.0"
                                      << "1.0.0.1";
        QTest::newRow("largest numbers") << "999999999.0"
                                         << "999999999.1";
    }
    void versionsOrderAsReleasesDo()
    {
        QFETCH(QString, lower);
        QFETCH(QString, higher);
        const auto a = ReleaseVersion::parse(lower);
        const auto b = ReleaseVersion::parse(higher);
        QVERIFY(a && b);
        QVERIFY(*a < *b);
        QVERIFY(*b > *a);
        QVERIFY(*a != *b);
    }

    void missingNumbersCountAsZero()
    {
        QCOMPARE(*ReleaseVersion::parse(QStringLiteral("1.4")), *ReleaseVersion::parse(QStringLiteral("1.4.0.0")));
    }

    void feedAddressesAreHttpsOrThisMachine_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        QTest::addColumn<bool>("allowed");
        QTest::newRow("https") << ""
                               << "https://tolvane.app/feed.json" << true;
        QTest::newRow("plain http elsewhere") << ""
                                              << "http://tolvane.app/feed.json" << false;
        QTest::newRow("plain http to 127.0.0.1") << ""
                                                 << "http://127.0.0.1:8080/feed.json" << true;
        QTest::newRow("plain http to 127.1.2.3") << ""
                                                 << "http://127.1.2.3/feed.json" << true;
        QTest::newRow("plain http to ::1") << ""
                                           << "http://[::1]:8080/feed.json" << true;
        QTest::newRow("plain http to localhost") << ""
                                                 << "http://LOCALHOST/feed.json" << true;
        QTest::newRow("a name that begins like loopback") << ""
                                                          << "http://127.0.0.1.example.com/" << false;
        QTest::newRow("ftp") << ""
                             << "ftp://tolvane.app/feed.json" << false;
        QTest::newRow("file") << ""
                              << "file:///tmp/feed.json" << false;
        QTest::newRow("user name in the address") << ""
                                                  << "https://user@tolvane.app/feed.json" << false;
        QTest::newRow("no host") << ""
                                 << "https:///feed.json" << false;
        QTest::newRow("redirect https to https") << "https://tolvane.app/a"
                                                 << "https://cdn.tolvane.app/b" << true;
        QTest::newRow("redirect https down to loopback http") << "https://tolvane.app/a"
                                                              << "http://127.0.0.1/b" << false;
        QTest::newRow("redirect loopback http to https") << "http://127.0.0.1/a"
                                                         << "https://tolvane.app/b" << true;
        QTest::newRow("redirect loopback http to plain http elsewhere") << "http://127.0.0.1/a"
                                                                        << "http://tolvane.app/b" << false;
    }
    void feedAddressesAreHttpsOrThisMachine()
    {
        QFETCH(QString, from);
        QFETCH(QString, to);
        QFETCH(bool, allowed);
        if (from.isEmpty())
            QCOMPARE(isAllowedFeedAddress(QUrl(to)), allowed);
        else
            QCOMPARE(isAllowedFeedRedirect(QUrl(from), QUrl(to)), allowed);
    }

    void releaseDescriptionsThatCannotBeUsedAreRefusedWithTheReason_data()
    {
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<QString>("reason");
        QTest::newRow("not JSON") << QByteArray("{\"version\": ") << "is not JSON";
        QTest::newRow("an array") << QByteArray("[]") << "not a JSON object";
        QTest::newRow("no version") << QByteArray("{\"download\": \"https://tolvane.app/\"}") << "names no version";
        QTest::newRow("version a number")
            << QByteArray("{\"version\": 2, \"download\": \"https://tolvane.app/\"}") << "names no version";
        QTest::newRow("version not a version")
            << description(QStringLiteral("latest")) << "\"latest\" is not a version number";
        QTest::newRow("download over http")
            << description(QStringLiteral("0.2.0"), QStringLiteral("http://tolvane.app/")) << "not an https address";
        QTest::newRow("download a script")
            << description(QStringLiteral("0.2.0"), QStringLiteral("javascript:alert(1)")) << "not an https address";
        QTest::newRow("notes not text")
            << QByteArray("{\"version\": \"0.2.0\", \"notes\": [\"a\"], \"download\": \"https://tolvane.app/\"}")
            << "release notes are not text";
        QTest::newRow("date not a date")
            << QByteArray("{\"version\": \"0.2.0\", \"published\": \"soon\", \"download\": \"https://tolvane.app/\"}")
            << "publication date is not a date";
    }
    void releaseDescriptionsThatCannotBeUsedAreRefusedWithTheReason()
    {
        QFETCH(QByteArray, payload);
        QFETCH(QString, reason);
        const Result<ReleaseInfo> release = parseReleaseDescription(payload);
        QVERIFY(!release);
        QVERIFY2(release.error().message.contains(reason), qPrintable(release.error().message));
    }

    void envelopesWithoutStrictBase64AreRefused_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::newRow("payload missing") << QByteArray("{\"signature\": \"AAAA\"}");
        QTest::newRow("payload not base64") << QByteArray("{\"payload\": \"e30*\", \"signature\": \"AAAA\"}");
        QTest::newRow("signature missing") << QByteArray("{\"payload\": \"e30=\"}");
        QTest::newRow("signature empty") << QByteArray("{\"payload\": \"e30=\", \"signature\": \"\"}");
        QTest::newRow("not JSON") << QByteArray("<html>Moved</html>");
    }
    void envelopesWithoutStrictBase64AreRefused()
    {
        QFETCH(QByteArray, document);
        QVERIFY(!parseSignedFeed(document));
    }

    void skippedAndPostponedReleasesStayQuietOnlyInTheBackground()
    {
        MemoryPreferenceStore store;
        Preferences preferences(store);
        FakeClock clock;
        FakeUpdateChecker checker;
        UpdaterManager manager(checker, preferences, clock, QStringLiteral("0.1.0"));
        preferences.setBool(PreferenceKey::automaticallyCheckForUpdates, true);
        using Phase = UpdateCheckState::Phase;

        // Skip 0.2.0: a background check keeps quiet about it; one the user asks for shows it.
        manager.checkForUpdates();
        checker.answer(description(QStringLiteral("0.2.0")));
        QCOMPARE(manager.state().phase, Phase::updateAvailable);
        manager.skipThisVersion();
        QCOMPARE(preferences.stringForKey(PreferenceKey::skippedUpdateVersion), QStringLiteral("0.2.0"));
        clock.advance(std::chrono::hours(25));
        manager.checkInBackgroundIfDue();
        checker.answer(description(QStringLiteral("0.2.0")));
        QCOMPARE(manager.state().phase, Phase::idle);
        manager.checkForUpdates();
        checker.answer(description(QStringLiteral("0.2.0")));
        QCOMPARE(manager.state().phase, Phase::updateAvailable);
        manager.dismiss();

        // A later release than the skipped one is announced again.
        clock.advance(std::chrono::hours(25));
        manager.checkInBackgroundIfDue();
        checker.answer(description(QStringLiteral("0.2.1")));
        QCOMPARE(manager.state().phase, Phase::updateAvailable);

        // Remind Me Later: quiet for a day, even to a background check that is due.
        manager.remindMeLater();
        clock.advance(std::chrono::hours(23));
        preferences.removeObject(PreferenceKey::lastUpdateCheckDate);
        const int fetches = checker.fetches;
        manager.checkInBackgroundIfDue();
        QCOMPARE(checker.fetches, fetches + 1);
        checker.answer(description(QStringLiteral("0.2.1")));
        QCOMPARE(manager.state().phase, Phase::idle);

        // The background check runs at most once a day, and never when switched off.
        manager.checkInBackgroundIfDue();
        QCOMPARE(checker.fetches, fetches + 1);
        clock.advance(std::chrono::hours(48));
        preferences.setBool(PreferenceKey::automaticallyCheckForUpdates, false);
        manager.checkInBackgroundIfDue();
        QCOMPARE(checker.fetches, fetches + 1);
    }

    void failuresOfABackgroundCheckAreNotShownButThoseOfAnAskedCheckAre()
    {
        MemoryPreferenceStore store;
        Preferences preferences(store);
        FakeClock clock;
        FakeUpdateChecker checker;
        UpdaterManager manager(checker, preferences, clock, QStringLiteral("0.1.0"));
        preferences.setBool(PreferenceKey::automaticallyCheckForUpdates, true);
        manager.checkInBackgroundIfDue();
        checker.answer(Error{QStringLiteral("unreachable")});
        QCOMPARE(manager.state().phase, UpdateCheckState::Phase::idle);
        manager.checkForUpdates();
        checker.answer(Error{QStringLiteral("unreachable")});
        QCOMPARE(manager.state().phase, UpdateCheckState::Phase::failed);
        QCOMPARE(manager.state().error, QStringLiteral("unreachable"));
    }

    void aCancelledCheckIgnoresItsLateAnswerAndAskingTwiceFetchesOnce()
    {
        MemoryPreferenceStore store;
        Preferences preferences(store);
        FakeClock clock;
        FakeUpdateChecker checker;
        UpdaterManager manager(checker, preferences, clock, QStringLiteral("0.1.0"));
        QSignalSpy changes(&manager, &UpdaterManager::stateChanged);

        manager.checkForUpdates();
        manager.checkForUpdates();
        QCOMPARE(checker.fetches, 1);
        QCOMPARE(manager.checksStarted(), 1);

        UpdateChecker::FeedHandler late = checker.pending;
        manager.cancel();
        QCOMPARE(checker.cancels, 1);
        QCOMPARE(manager.state().phase, UpdateCheckState::Phase::idle);
        const qsizetype changesAfterCancel = changes.size();
        late(description(QStringLiteral("0.2.0")));
        QCOMPARE(manager.state().phase, UpdateCheckState::Phase::idle);
        QCOMPARE(changes.size(), changesAfterCancel);

        // A background check the user then asks about is shown as theirs.
        preferences.setBool(PreferenceKey::automaticallyCheckForUpdates, true);
        manager.checkInBackgroundIfDue();
        manager.checkForUpdates();
        QCOMPARE(checker.fetches, 2);
        checker.answer(description(QStringLiteral("0.1.0")));
        QCOMPARE(manager.state().phase, UpdateCheckState::Phase::upToDate);
    }

    void aPackageManagerInstallIsOneUnderUsr_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("packaged");
        QTest::newRow("Debian package") << "/usr/bin/tolvane" << true;
        QTest::newRow("make install") << "/usr/local/bin/tolvane" << false;
        QTest::newRow("build tree") << "/home/me/tolvane/build/src/tolvane" << false;
        QTest::newRow("a folder named like usr") << "/usrx/bin/tolvane" << false;
    }
    void aPackageManagerInstallIsOneUnderUsr()
    {
        QFETCH(QString, path);
        QFETCH(bool, packaged);
        QCOMPARE(isPackageManagedExecutable(path), packaged);
    }
};

QTEST_GUILESS_MAIN(tst_ReleaseVersions)
#include "tst_ReleaseVersions.moc"
