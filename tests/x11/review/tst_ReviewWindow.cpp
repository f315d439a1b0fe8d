// SPDX-License-Identifier: GPL-3.0-or-later
// The review window of a running Tolvane, used as a learner would: opened with `tolvane open
// review`, read and answered through the accessibility bus and the real keyboard and mouse; the
// answers must be in the deck file afterwards.
#include "core/records/ReviewDeckStore.h"

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include "x11/AccessibleTree.h"

#include <atspi/atspi.h>

#include <memory>

using namespace tolvane;

using namespace tolvane::testing;

namespace {

struct Element
{
    QString name;
    QString description;
    AtspiRole role = ATSPI_ROLE_INVALID;
    QRect extents;
    bool enabled = false;
};

Element describe(AtspiAccessible* accessible)
{
    Element e;
    e.name = takeText(atspi_accessible_get_name(accessible, nullptr));
    e.description = takeText(atspi_accessible_get_description(accessible, nullptr));
    e.role = atspi_accessible_get_role(accessible, nullptr);
    if (std::unique_ptr<AtspiComponent, GObjectUnref> component{atspi_accessible_get_component_iface(accessible)}) {
        if (AtspiRect* rect = atspi_component_get_extents(component.get(), ATSPI_COORD_TYPE_SCREEN, nullptr)) {
            e.extents = QRect(rect->x, rect->y, rect->width, rect->height);
            g_free(rect);
        }
    }
    if (std::unique_ptr<AtspiStateSet, GObjectUnref> states{atspi_accessible_get_state_set(accessible)})
        e.enabled = atspi_state_set_contains(states.get(), ATSPI_STATE_SENSITIVE);
    return e;
}

void collect(AtspiAccessible* accessible, int depth, QList<Element>& found)
{
    if (depth > 20)
        return;
    const int count = atspi_accessible_get_child_count(accessible, nullptr);
    for (int i = 0; i < count; ++i) {
        AccessiblePtr child(atspi_accessible_get_child_at_index(accessible, i, nullptr));
        if (!child)
            continue;
        found.append(describe(child.get()));
        collect(child.get(), depth + 1, found);
    }
}

// Everything the "Review Deck" window shows, as the bus reports it now.
QList<Element> reviewWindow()
{
    QList<Element> found;
    AccessiblePtr desktop(atspi_get_desktop(0));
    atspi_accessible_clear_cache(desktop.get());
    const int count = atspi_accessible_get_child_count(desktop.get(), nullptr);
    for (int i = 0; i < count; ++i) {
        AccessiblePtr application(atspi_accessible_get_child_at_index(desktop.get(), i, nullptr));
        if (!application)
            continue;
        const int windows = atspi_accessible_get_child_count(application.get(), nullptr);
        for (int w = 0; w < windows; ++w) {
            AccessiblePtr window(atspi_accessible_get_child_at_index(application.get(), w, nullptr));
            if (window && takeText(atspi_accessible_get_name(window.get(), nullptr)) == QLatin1String("Review Deck"))
                collect(window.get(), 0, found);
        }
    }
    return found;
}

// The visible element of that role whose name starts with prefix.
std::optional<Element> visible(const QList<Element>& contents, AtspiRole role, const QString& prefix)
{
    for (const Element& e : contents) {
        if (e.role == role && e.name.startsWith(prefix) && !e.extents.isEmpty())
            return e;
    }
    return std::nullopt;
}

std::optional<Element> button(const QList<Element>& contents, const QString& name)
{
    return visible(contents, ATSPI_ROLE_PUSH_BUTTON, name);
}

QString cardName(const QList<Element>& contents)
{
    const auto card = visible(contents, ATSPI_ROLE_PUSH_BUTTON, QStringLiteral("Card "));
    return card ? card->name : QString();
}

int run(const QString& program, const QStringList& arguments)
{
    return QProcess::execute(program, arguments);
}

QString cardLine(const char* id, const char* word, const char* translation)
{
    return QStringLiteral("{\"id\":\"%1\",\"sourceText\":\"%2\",\"translation\":\"%3\",\"targetLanguage\":\"ru\","
                          "\"direction\":\"englishToTarget\",\"status\":\"new\",\"nextNotificationDate\":785000000,"
                          "\"dateAdded\":785000000}")
        .arg(QLatin1String(id), QString::fromUtf8(word), QString::fromUtf8(translation));
}

} // namespace

class TestReviewWindow : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("xdotool")).isEmpty())
            QSKIP("xdotool is missing: run scripts/setup");
        if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS"))
            QSKIP("No session bus: run inside scripts/virtual-desktop");
        atspi_init();
    }

    void aLearnerFlipsAnswersAndMovesThroughTheCardsAndTheDeckFileKeepsTheAnswers()
    {
        QTemporaryDir profile;
        const QString records = profile.filePath(QStringLiteral("data/Tolvane"));
        QVERIFY(QDir().mkpath(records));
        QFile deckFile(records + QStringLiteral("/review_deck.json"));
        QVERIFY(deckFile.open(QIODevice::WriteOnly));
        deckFile.write(('[' +
                        QStringList{cardLine("0A000000-0000-4000-8000-000000000001", "water", "вода"),
                                    cardLine("0A000000-0000-4000-8000-000000000002", "house", "дом"),
                                    cardLine("0A000000-0000-4000-8000-000000000003", "cat", "кошка")}
                            .join(u',') +
                        ']')
                           .toUtf8());
        deckFile.close();

        // A finished guide, so no guide window opens at start and takes the keys.
        QVERIFY(QDir().mkpath(profile.filePath(QStringLiteral("config/Tolvane"))));
        QFile preferencesFile(profile.filePath(QStringLiteral("config/Tolvane/preferences.json")));
        QVERIFY(preferencesFile.open(QIODevice::WriteOnly));
        preferencesFile.write("{\"onboardingComplete\": true}");
        preferencesFile.close();

        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_DATA_HOME"), profile.filePath(QStringLiteral("data")));
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), profile.filePath(QStringLiteral("config")));
        environment.insert(QStringLiteral("TOLVANE_INSTANCE_NAME"),
                           QStringLiteral("tolvane-review-test-%1").arg(QCoreApplication::applicationPid()));
        environment.insert(QStringLiteral("QT_ACCESSIBILITY"), QStringLiteral("1"));
        environment.insert(QStringLiteral("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"), QStringLiteral("1"));
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        environment.insert(QStringLiteral("TOLVANE_PLATFORM"), QStringLiteral("linux"));
        QProcess tolvane;
        tolvane.setProcessEnvironment(environment);
        tolvane.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        tolvane.start(QStringLiteral(TOLVANE_BINARY), {});
        QVERIFY(tolvane.waitForStarted());
        const auto openReview = [&] {
            QProcess open;
            open.setProcessEnvironment(environment);
            open.start(QStringLiteral(TOLVANE_BINARY), {QStringLiteral("open"), QStringLiteral("review")});
            return open.waitForFinished(10000) && open.exitCode() == 0;
        };
        QTRY_VERIFY_WITH_TIMEOUT(openReview(), 15000);

        QList<Element> contents;
        QTRY_COMPARE_WITH_TIMEOUT((contents = reviewWindow(), cardName(contents)), QStringLiteral("Card front: water"),
                                  15000);
        QCOMPARE(visible(contents, ATSPI_ROLE_PUSH_BUTTON, QStringLiteral("Card front"))->description,
                 QStringLiteral("Click to flip"));
        for (const char* name : {"Previous card (←)", "Next card (→)", "Remove from deck", "Shuffle remaining cards",
                                 "Share this flashcard"})
            QVERIFY2(button(contents, QString::fromUtf8(name)), name);
        QVERIFY(!button(contents, QStringLiteral("Previous card (←)"))->enabled);
        QVERIFY(visible(contents, ATSPI_ROLE_LABEL, QStringLiteral("1 of 3")));
        QVERIFY(!button(contents, QStringLiteral("I know this")));
        QVERIFY(run(QStringLiteral("xdotool"),
                    {QStringLiteral("search"), QStringLiteral("--name"), QStringLiteral("^Review Deck$"),
                     QStringLiteral("windowactivate"), QStringLiteral("--sync")}) == 0);

        // Space turns the card; "Review again" sends it to the back.
        key(QStringLiteral("space"));
        QTRY_COMPARE_WITH_TIMEOUT((contents = reviewWindow(), cardName(contents)), QStringLiteral("Card back: вода"),
                                  5000);
        QTRY_VERIFY((contents = reviewWindow(), button(contents, QStringLiteral("Review again"))));
        click(button(contents, QStringLiteral("Review again"))->extents.center());
        QTRY_COMPARE_WITH_TIMEOUT((contents = reviewWindow(), cardName(contents)), QStringLiteral("Card front: house"),
                                  5000);

        // The arrows move without answering; Return answers "I know this" on the back.
        key(QStringLiteral("Right"));
        QTRY_COMPARE((contents = reviewWindow(), cardName(contents)), QStringLiteral("Card front: cat"));
        key(QStringLiteral("Right"));
        key(QStringLiteral("Right"));
        QTRY_COMPARE((contents = reviewWindow(), cardName(contents)), QStringLiteral("Card front: water"));
        QVERIFY(!button(contents, QStringLiteral("Next card (→)"))->enabled);
        key(QStringLiteral("Left"));
        key(QStringLiteral("Left"));
        QTRY_COMPARE((contents = reviewWindow(), cardName(contents)), QStringLiteral("Card front: house"));
        key(QStringLiteral("Return"));
        key(QStringLiteral("space"));
        QTRY_COMPARE((contents = reviewWindow(), cardName(contents)), QStringLiteral("Card back: дом"));
        key(QStringLiteral("Return"));
        QTRY_COMPARE((contents = reviewWindow(), cardName(contents)), QStringLiteral("Card front: cat"));

        // Opening it again only raises it: the session keeps its place.
        QVERIFY(openReview());
        QTest::qWait(500);
        QCOMPARE((contents = reviewWindow(), cardName(contents)), QStringLiteral("Card front: cat"));
        QVERIFY(visible(contents, ATSPI_ROLE_LABEL, QStringLiteral("2 of 3")));

        tolvane.terminate();
        QVERIFY(tolvane.waitForFinished(10000));
        QVERIFY(deckFile.open(QIODevice::ReadOnly));
        const auto cards = ReviewDeckStore::decode(deckFile.readAll(), QDateTime::currentDateTimeUtc());
        QVERIFY(cards.ok());
        QCOMPARE(cards.value().size(), 3);
        QCOMPARE(cards.value().at(0).status, CardStatus::reviewAgain);
        QCOMPARE(cards.value().at(1).status, CardStatus::knowIt);
        QCOMPARE(cards.value().at(2).status, CardStatus::new_);
    }

private:
    static void key(const QString& name)
    {
        QCOMPARE(run(QStringLiteral("xdotool"), {QStringLiteral("key"), name}), 0);
        QTest::qWait(150);
    }
    static void click(QPoint at)
    {
        QCOMPARE(
            run(QStringLiteral("xdotool"), {QStringLiteral("mousemove"), QString::number(at.x()),
                                            QString::number(at.y()), QStringLiteral("click"), QStringLiteral("1")}),
            0);
    }
};

QTEST_GUILESS_MAIN(TestReviewWindow)
#include "tst_ReviewWindow.moc"
