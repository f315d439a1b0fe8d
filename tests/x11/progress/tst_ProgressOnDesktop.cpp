// SPDX-License-Identifier: GPL-3.0-or-later
// On a real desktop: the Usage Stats window of a running Tolvane reads on the accessibility bus
// as `tolvane stats --json` prints the same files, a damaged one included, and opening it again
// raises the one window;
// celebrations come to the front one after another and "Not Now" closes only its own. The
// celebration's pictures are saved under out/progress/.
#include "core/progress/LookupMilestone.h"
#include "core/progress/ProgressTexts.h"
#include "core/records/ConfusionLogStore.h"
#include "core/records/ReviewDeckStore.h"
#include "core/records/UsageEventStore.h"
#include "ui/AppearanceApplier.h"
#include "ui/progress/MilestoneCelebrationView.h"
#include "ui/progress/MilestoneWindowManager.h"
#include "ui/share/SharePresenter.h"

#include <QApplication>
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include "x11/AccessibleTree.h"
#include "x11/TolvaneProcess.h"

#include <atspi/atspi.h>

#include <memory>
#include <unistd.h>

using namespace tolvane;
namespace t = progress_texts;

using namespace tolvane::testing;

namespace {

struct StatsWindows
{
    int count = 0;
    bool active = false;
    QStringList names; // of everything inside the first, in the order of the tree
};

// The windows titled "Usage Stats" of other processes, as the bus reports them now. Our own
// process is left out: it cannot answer the bus while it waits for the answer.
StatsWindows statsWindows()
{
    StatsWindows found;
    forEachApplication([&](AtspiAccessible* application) {
        if (atspi_accessible_get_process_id(application, nullptr) == guint(::getpid()))
            return;
        const int windows = atspi_accessible_get_child_count(application, nullptr);
        for (int w = 0; w < windows; ++w) {
            AccessiblePtr window(atspi_accessible_get_child_at_index(application, w, nullptr));
            if (!window || nameOf(window.get()) != t::statsWindowTitle || found.count++ > 0)
                continue;
            QList<Element> contents;
            collect(window.get(), contents);
            for (const Element& e : std::as_const(contents))
                found.names.append(e.name);
            found.active = hasState(window.get(), ATSPI_STATE_ACTIVE);
        }
    });
    return found;
}

// The numbers of the window's sections, in the shape `tolvane stats --json` prints.
QJsonObject readAsJson(const QStringList& names)
{
    const QHash<QString, QString> sectionKeys{{t::lookupsTitle, "lookups"},
                                              {t::reviewsTitle, "reviews"},
                                              {t::flashcardsTitle, "flashcards"},
                                              {t::milestonesTitle, "milestones"}};
    const QHash<QString, QString> captionKeys{
        {t::today, "today"},           {t::thisWeek, "thisWeek"},
        {t::thisMonth, "thisMonth"},   {t::allTime, "allTime"},
        {t::activeDays, "activeDays"}, {t::newCards, "new"},
        {t::knowIt, "knowIt"},         {t::reviewAgain, "reviewAgain"},
        {t::total, "total"},           {t::successfulLookups, "successfulLookups"}};
    QJsonObject json;
    QString section;
    QJsonObject numbers;
    QJsonObject highlights{{"streak", 0}, {"mostLookedUp", QJsonValue()}};
    const auto flush = [&] {
        if (!section.isEmpty())
            json.insert(section, numbers);
        numbers = {};
    };
    for (const QString& name : names) {
        if (sectionKeys.contains(name) && sectionKeys.value(name) != section) {
            flush();
            section = sectionKeys.value(name);
        } else if (const qsizetype colon = name.indexOf(QStringLiteral(": "));
                   colon > 0 && captionKeys.contains(name.left(colon))) {
            numbers.insert(captionKeys.value(name.left(colon)), QLocale().toLongLong(name.mid(colon + 2)));
        } else if (name.endsWith(QStringLiteral(" until your next milestone"))) {
            numbers.insert("next", numbers.value("successfulLookups").toInteger() +
                                       QLocale().toLongLong(name.section(u' ', 0, 0)));
        } else if (name.endsWith(QStringLiteral("-day lookup streak"))) {
            highlights["streak"] = name.section(u'-', 0, 0).toLongLong();
        } else if (name.startsWith(QStringLiteral("Most looked up: "))) {
            highlights["mostLookedUp"] = QJsonObject{{"word", name.section(u'"', 1, 1)},
                                                     {"seenCount", name.section(u'(', -1).chopped(2).toLongLong()}};
        }
    }
    flush();
    json.insert("highlights", highlights);
    return json;
}

} // namespace

class TestProgressOnDesktop : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        if (const char* missing = missingDesktop({}))
            QSKIP(missing);
        atspi_init();
    }

    void theStatsWindowReadsAsTheCommandPrintsAndOpensOnce()
    {
        TolvaneProcess tolvane(QStringLiteral("progress"));
        const QDateTime now = QDateTime::currentDateTimeUtc();
        QList<UsageEvent> events;
        for (int ago = 3; ago >= 0; --ago) {
            for (int i = 0; i < 3 + ago; ++i)
                events.append({UsageEventType::lookup, now.addDays(-ago).addSecs(-60 * (i + 1))});
            events.append({UsageEventType::review, now.addDays(-ago).addSecs(-30)});
        }
        QVERIFY(tolvane.write(QStringLiteral("data/Tolvane/usage_events.json"), UsageEventStore::encode(events)));
        QVERIFY(tolvane.write(
            QStringLiteral("data/Tolvane/confusion_log.json"),
            ConfusionLogStore::encode({{QStringLiteral("Haus"), QStringLiteral("house"), 2, now, {}},
                                       {QStringLiteral("Schmetterling"), QStringLiteral("butterfly"), 4, now, {}}})));
        // A damaged deck: the command says so and counts no cards; Tolvane sets the file aside.
        QVERIFY(tolvane.write(QStringLiteral("data/Tolvane/review_deck.json"), "[{\"id\": \"0A0000"));
        QVERIFY(tolvane.skipGuide(", \"successfulWordLookupCount\": 1234"));

        QByteArray printed;
        QByteArray errors;
        QVERIFY(tolvane.command({QStringLiteral("stats"), QStringLiteral("--json")}, &printed, &errors));
        QVERIFY2(errors.contains("review_deck.json could not be read"), errors.constData());
        const QJsonObject expected = QJsonDocument::fromJson(printed).object();

        QVERIFY(tolvane.start());
        const QStringList openStats{QStringLiteral("open"), QStringLiteral("stats")};
        QVERIFY(tolvane.commandOnceListening(openStats));

        StatsWindows windows;
        QTRY_VERIFY_WITH_TIMEOUT((windows = statsWindows()).names.contains(QStringLiteral("Today: 3")), 15000);
        QCOMPARE(readAsJson(windows.names), expected);
        QCOMPARE(expected["flashcards"]["total"].toInteger(), 0);
        QCOMPARE(expected["highlights"]["streak"].toInteger(), 4);
        QCOMPARE(expected["milestones"]["next"].toInteger(), 2500);

        QTRY_VERIFY((windows = statsWindows()).active);

        // Another window takes the focus; asked again, the one statistics window comes back to the front.
        QWidget other;
        other.setWindowTitle(QStringLiteral("Another window"));
        other.resize(400, 300);
        other.show();
        other.activateWindow();
        QTRY_VERIFY(other.isActiveWindow());
        QTRY_VERIFY(!(windows = statsWindows()).active);
        QVERIFY(tolvane.command(openStats));
        QTRY_VERIFY((windows = statsWindows()).active);
        QCOMPARE(windows.count, 1);
        QTRY_VERIFY(!other.isActiveWindow());

        QVERIFY(tolvane.stop());
    }

    void celebrationsComeToTheFrontAndNotNowClosesOnlyItsOwn()
    {
        AppearanceApplier appearance;
        SharePresenter presenter;
        MilestoneWindowManager windows(presenter);
        const QString pictures = QStringLiteral(TOLVANE_SOURCE_DIR "/out/progress");
        QVERIFY(QDir().mkpath(pictures));
        const LookupMilestone first{25, QStringLiteral("Schmetterling"), QStringLiteral("butterfly"),
                                    QStringLiteral("de"), DetectedDirection::targetToEnglish};
        const LookupMilestone second{1000, QStringLiteral("house"), QStringLiteral("дом"), QStringLiteral("ru"),
                                     DetectedDirection::englishToTarget};
        appearance.apply(AppearanceMode::light);
        windows.show(first);
        MilestoneCelebrationView* firstWindow = windows.window();
        QVERIFY(QTest::qWaitForWindowExposed(firstWindow));
        QTRY_VERIFY(firstWindow->isActiveWindow());
        QVERIFY(firstWindow->grab().save(pictures + QStringLiteral("/celebration-light.png")));

        appearance.apply(AppearanceMode::dark);
        windows.show(second);
        MilestoneCelebrationView* secondWindow = windows.window();
        QVERIFY(QTest::qWaitForWindowExposed(secondWindow));
        QTRY_VERIFY(secondWindow->isActiveWindow());
        QVERIFY(firstWindow->isVisible());
        QVERIFY(secondWindow->grab().save(pictures + QStringLiteral("/celebration-dark.png")));

        QTest::mouseClick(secondWindow->notNowButton(), Qt::LeftButton);
        QTRY_VERIFY(!secondWindow->isVisible());
        QVERIFY(firstWindow->isVisible());
        QCOMPARE(windows.window(), secondWindow);
        appearance.apply(AppearanceMode::light);
    }
};

QTEST_MAIN(TestProgressOnDesktop)
#include "tst_ProgressOnDesktop.moc"
