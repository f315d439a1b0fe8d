// SPDX-License-Identifier: GPL-3.0-or-later
// The look-up as a user meets it: the real composition root and desktop services, a real GTK 3
// window, the hotkey pressed with xdotool. A held word, a quick tap, a selected passage, a frozen
// application and a terminal without accessible text.
#include "app/AppDelegate.h"
#include "app/LookupWiring.h"
#include "core/lookup/HoverController.h"
#include "core/lookup/LookupEngine.h"
#include "core/setup/Preferences.h"
#include "platform/linux/PlatformFactory.h"
#include "ui/overlay/HoverOverlayWindow.h"
#include "x11/TolvaneProcess.h"
#include "x11/capture/CaptureTestWindow.h"

#include "core/support/Clock.h"
#include "core/support/QtScheduler.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace tolvane;
using namespace tolvane::testing;
using Kind = HoverOverlayView::State::Kind;

namespace {

#ifdef GTK_WORDS_WINDOW
const QString wordsWindow = QStringLiteral(GTK_WORDS_WINDOW);
#else
const QString wordsWindow;
#endif

const QString text = QStringLiteral("The children are playing in the garden. Look at the beautiful flowers.");

// A window of words, with the screen position of each word.
class WordsWindow
{
public:
    bool start(const QStringList& extra = {})
    {
        m_process.setProgram(wordsWindow);
        m_process.setArguments(extra + QStringList{text});
        m_process.start();
        if (!m_process.waitForStarted(5000))
            return false;
        QElapsedTimer waited;
        waited.start();
        while (waited.elapsed() < 20000) {
            if (!m_process.canReadLine() && !m_process.waitForReadyRead(200))
                continue;
            while (m_process.canReadLine()) {
                const QStringList parts = QString::fromUtf8(m_process.readLine()).trimmed().split(QLatin1Char(' '));
                if (parts.size() == 1 && parts.first() == QLatin1String("ready"))
                    return true;
                if (parts.size() == 4 && !m_points.contains(parts[1]))
                    m_points.insert(parts[1], QPoint(parts[2].toInt(), parts[3].toInt()));
            }
        }
        return false;
    }
    QPoint point(const QString& word) const { return m_points.value(word); }
    qint64 pid() const { return m_process.processId(); }
    ~WordsWindow()
    {
        ::kill(pid_t(pid()), SIGCONT);
        m_process.kill();
        m_process.waitForFinished(3000);
    }

private:
    QProcess m_process;
    QHash<QString, QPoint> m_points;
};

// xdotool without waiting for it: Tolvane's event loop keeps running meanwhile.
void xdotool(const QString& commands)
{
    QProcess::startDetached(QStringLiteral("xdotool"), commands.split(QLatin1Char(' ')));
}

QJsonArray recordFile(const QString& directory, const QString& name)
{
    QFile file(directory + QStringLiteral("/Tolvane/") + name);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    return document.isArray() ? document.array() : QJsonArray();
}

} // namespace

class TestLookupEndToEnd : public QObject
{
    Q_OBJECT
private:
    QTemporaryDir m_home;
    SystemClock m_clock;
    std::unique_ptr<QtScheduler> m_scheduler;
    std::unique_ptr<PlatformServices> m_services;
    std::unique_ptr<Preferences> m_preferences;
    std::unique_ptr<AppDelegate> m_delegate;

    LookupWiring& lookup() const { return *m_delegate->lookup(); }
    const HoverOverlayWindow& card() const { return lookup().wordCard(); }
    QString dataDirectory() const { return m_home.path() + QStringLiteral("/data"); }

    // Ctrl+Alt+Space: the window manager keeps Alt+Space for itself.
    static constexpr quint32 space = 49, controlOption = 4096 | 2048;

private Q_SLOTS:
    void initTestCase()
    {
        if (qEnvironmentVariableIsEmpty("TOLVANE_VIRTUAL_DESKTOP"))
            QSKIP("Needs the private virtual desktop (scripts/virtual-desktop)");
        if (!haveXdotool())
            QSKIP("xdotool is missing: run scripts/setup");
        if (wordsWindow.isEmpty())
            QSKIP("The GTK words window was not built (libgtk-3-dev is missing)");
        qputenv("GSETTINGS_BACKEND", "memory");
        qputenv("XDG_CONFIG_HOME", (m_home.path() + QStringLiteral("/config")).toUtf8());
        qputenv("XDG_DATA_HOME", dataDirectory().toUtf8());
        m_scheduler = std::make_unique<QtScheduler>();
        m_services = std::make_unique<PlatformServices>(createPlatformServices());
        m_preferences = std::make_unique<Preferences>(*m_services->preferences);
        m_preferences->setInteger(PreferenceKey::customHotkeyKeyCode, space);
        m_preferences->setInteger(PreferenceKey::customHotkeyModifiers, controlOption);
        m_preferences->setString(PreferenceKey::targetLanguage, QStringLiteral("es"));
        // A finished guide, so no guide window opens at start and takes the focus.
        m_preferences->setBool(PreferenceKey::onboardingComplete, true);
        m_delegate = std::make_unique<AppDelegate>(*m_services, *m_preferences, m_clock, *m_scheduler,
                                                   dataDirectory() + QStringLiteral("/Tolvane"));
        m_delegate->applicationDidFinishLaunching();
        QVERIFY(m_delegate->lookup());
        QTest::qWait(1500); // the pair is prepared in the background
    }

    void cleanupTestCase()
    {
        if (m_delegate)
            m_delegate->applicationWillTerminate();
        m_delegate.reset();
    }

    void aHeldWordATapAndAPassageAreShownRecordedAndClosedByTheirRules()
    {
        WordsWindow window;
        QVERIFY(window.start());
        const QPointF pointer = movePointerTo(window.point(QStringLiteral("garden")));
        QTest::qWait(300);
        const QString focus = focusedWindow();

        // Held: the card beside the pointer with the translation, the focus where it was.
        xdotool(QStringLiteral("keydown ctrl+alt+space"));
        QTRY_COMPARE_WITH_TIMEOUT(card().view().state.kind, Kind::liveLookup, 5000);
        QVERIFY(card().isVisible());
        QCOMPARE(card().view().state.source(), QStringLiteral("garden"));
        QVERIFY2(!card().view().state.translation.isEmpty(), "no translation");
        QCOMPARE(card().view().directionLabel, QStringLiteral("EN → ES"));
        const QRectF frame = card().frame();
        // Below and to the right of the pointer (points, y upward).
        QVERIFY2(std::abs(frame.left() - (pointer.x() + 16)) < 2 && std::abs(frame.bottom() - (pointer.y() - 16)) < 2,
                 qPrintable(QStringLiteral("card from %1,%2 for pointer %3,%4")
                                .arg(frame.left())
                                .arg(frame.bottom())
                                .arg(pointer.x())
                                .arg(pointer.y())));
        QCOMPARE(focusedWindow(), focus);
        QTest::qWait(1000);
        QVERIFY(card().isVisible());
        xdotool(QStringLiteral("keyup space keyup alt keyup ctrl"));
        QTRY_VERIFY_WITH_TIMEOUT(!lookup().hover().isHotkeyHeld(), 3000);
        QVERIFY(card().isVisible()); // the rest of the reading time

        // The three record files and the milestone counter hold it.
        QCOMPARE(recordFile(dataDirectory(), QStringLiteral("usage_events.json")).size(), 1);
        const QJsonArray log = recordFile(dataDirectory(), QStringLiteral("confusion_log.json"));
        QCOMPARE(log.size(), 1);
        QCOMPARE(log.first().toObject().value(QStringLiteral("word")).toString(), QStringLiteral("garden"));
        QCOMPARE(recordFile(dataDirectory(), QStringLiteral("review_deck.json")).size(), 1);
        QCOMPARE(m_preferences->successfulWordLookupCount(), 1);
        QTRY_VERIFY_WITH_TIMEOUT(!card().isVisible(), 6000);

        // A quick tap on another word: the card stays for the reading time, then goes.
        movePointerTo(window.point(QStringLiteral("flowers")));
        QElapsedTimer tapped;
        tapped.start();
        xdotool(QStringLiteral("key ctrl+alt+space"));
        QTRY_COMPARE_WITH_TIMEOUT(card().view().state.source(), QStringLiteral("flowers"), 5000);
        QTRY_VERIFY_WITH_TIMEOUT(!lookup().hover().isHotkeyHeld(), 3000);
        QTest::qWait(int(std::max<qint64>(0, 3500 - tapped.elapsed())));
        QVERIFY(card().isVisible());
        QTRY_VERIFY_WITH_TIMEOUT(!card().isVisible(), 4000);
        QCOMPARE(m_preferences->successfulWordLookupCount(), 2);

        // The same through the running instance's command.
        QCOMPARE(m_delegate->commands().handle({QStringLiteral("lookup")}), QString());
        QTRY_VERIFY_WITH_TIMEOUT(card().isVisible(), 3000);
        QTRY_COMPARE_WITH_TIMEOUT(m_preferences->successfulWordLookupCount(), 3, 3000);
    }

    void aSelectedPassageShowsTranslatingThenTheLiveTranslation()
    {
        WordsWindow window;
        const QString passage = QStringLiteral("The children are playing in the garden.");
        QVERIFY(window.start({QStringLiteral("--select"), passage}));
        movePointerTo(window.point(QStringLiteral("beautiful")));
        const auto selection = [this] {
            const AccessibleElementPtr focused = m_services->accessibility->focusedElement();
            return focused ? focused->selectedText().value_or(QStringLiteral("<none>")) : QStringLiteral("<no focus>");
        };
        QTRY_COMPARE_WITH_TIMEOUT(selection(), passage, 5000);
        QStringList shown;
        QTimer watch;
        connect(&watch, &QTimer::timeout, this, [&] {
            const PassageCard* passageCard = lookup().engine().passageCard();
            if (passageCard && passageCard->isVisible() &&
                (shown.isEmpty() || shown.last() != passageCard->view().translation))
                shown.append(passageCard->view().translation);
        });
        watch.start(1);
        xdotool(QStringLiteral("key ctrl+alt+space"));
        QTRY_VERIFY_WITH_TIMEOUT(shown.size() >= 2, 5000);
        const PassageCard* passageCard = lookup().engine().passageCard();
        QCOMPARE(passageCard->view().source, passage);
        QCOMPARE(shown.first(), QStringLiteral("Translating…"));
        QCOMPARE(passageCard->view().badge, QStringLiteral("Live"));
        QVERIFY2(shown.last().contains(QStringLiteral("jardín"), Qt::CaseInsensitive), qPrintable(shown.last()));
        // Released at once: it closes when its reading time is over.
        QVERIFY(passageCard->isVisible());
        QTRY_VERIFY_WITH_TIMEOUT(!passageCard->isVisible(), 5000);
    }

    void aFrozenApplicationStillGetsACardAndTolvaneStaysResponsive()
    {
        WordsWindow window;
        QVERIFY(window.start());
        movePointerTo(window.point(QStringLiteral("children")));
        QTest::qWait(200);
        ::kill(pid_t(window.pid()), SIGSTOP);
        int ticks = 0;
        QTimer heartbeat;
        connect(&heartbeat, &QTimer::timeout, this, [&] { ++ticks; });
        heartbeat.start(20);
        const qint64 before = lookup().hover().lookupGeneration();
        QElapsedTimer pressed;
        pressed.start();
        xdotool(QStringLiteral("key ctrl+alt+space"));
        QTRY_VERIFY_WITH_TIMEOUT(lookup().hover().lookupGeneration() > before && card().isVisible(), 5000);
        qInfo() << "card up" << pressed.elapsed() << "ms after the key was sent";
        QTRY_VERIFY_WITH_TIMEOUT(card().view().state.kind != Kind::placeholder, 5000);
        QTest::qWait(500);
        QVERIFY2(ticks > 10, qPrintable(QString::number(ticks)));
        ::kill(pid_t(window.pid()), SIGCONT);
        QTRY_VERIFY_WITH_TIMEOUT(!card().isVisible(), 7000);
    }

    void aTerminalWordIsReadOffTheScreen()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("xterm")).isEmpty())
            QSKIP("xterm is missing");
        QProcess terminal;
        terminal.start(QStringLiteral("xterm"),
                       {QStringLiteral("-T"), QStringLiteral("Terminal words"), QStringLiteral("-geometry"),
                        QStringLiteral("60x6+60+80"), QStringLiteral("-fa"), QStringLiteral("DejaVu Sans Mono"),
                        QStringLiteral("-fs"), QStringLiteral("16"), QStringLiteral("-e"), QStringLiteral("sh"),
                        QStringLiteral("-c"), QStringLiteral("printf 'garden'; sleep 60")});
        QVERIFY(terminal.waitForStarted(5000));
        QTest::qWait(1500);
        // The word's middle: three characters in, on the first line of the terminal.
        const QString id = runTool(QStringLiteral("xdotool"), {QStringLiteral("search"), QStringLiteral("--name"),
                                                               QStringLiteral("^Terminal words$")})
                               .section(QLatin1Char('\n'), 0, 0);
        QVERIFY2(!id.isEmpty(), "the terminal did not appear");
        // xwininfo tells where the client area really is; xdotool counts the frame twice.
        QPoint origin;
        for (const QString& line : runTool(QStringLiteral("xwininfo"), {QStringLiteral("-id"), id}).split(u'\n')) {
            if (line.contains(QLatin1String("Absolute upper-left X:")))
                origin.setX(line.section(QLatin1Char(':'), 1).trimmed().toInt());
            if (line.contains(QLatin1String("Absolute upper-left Y:")))
                origin.setY(line.section(QLatin1Char(':'), 1).trimmed().toInt());
        }
        movePointerTo(origin + QPoint(32, 14));
        QTest::qWait(200);
        xdotool(QStringLiteral("key ctrl+alt+space"));
        QTRY_COMPARE_WITH_TIMEOUT(card().view().state.source(), QStringLiteral("garden"), 10000);
        terminal.kill();
        terminal.waitForFinished(3000);
    }
};

QTEST_MAIN(TestLookupEndToEnd)
#include "tst_LookupEndToEnd.moc"
