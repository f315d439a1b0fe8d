// SPDX-License-Identifier: GPL-3.0-or-later
// The word under the pointer and the selection in applications people use, installed from the
// distribution: read over the accessibility bus where the application shows its text there, and
// off the screen where it does not, as a look-up does. Also the hostile cases: a window that names
// no process, an application that quits between two questions, a ten-megabyte text, a text made
// only of object characters, and a primary selection left behind by another window.
#include "CaptureTestWindow.h"
#include "DesktopApplication.h"
#include "core/capture/AXHoverInspector.h"
#include "core/capture/OcrFallback.h"
#include "core/capture/SelectedText.h"
#include "core/support/QtScheduler.h"
#include "fakes/FakePlatform.h"
#include "platform/linux/capture/AtspiAccessibilityService.h"
#include "platform/linux/capture/HunspellSpellChecker.h"

#include <QApplication>
#include <QTest>

using namespace tolvane;
using namespace tolvane::testing;

namespace {

struct Reading
{
    QString tier; // "accessibility", "screen" or "none"
    QString word;
    QString sentence;
    WordAtPositionResult::Kind inspected = WordAtPositionResult::Kind::noText;

    QString describe() const { return QStringLiteral("%1 «%2» «%3»").arg(tier, word, sentence); }
};

#ifdef GTK_TEXT_WINDOW
const QString gtkTextWindow = QStringLiteral(GTK_TEXT_WINDOW);
#else
const QString gtkTextWindow;
#endif

void doubleClick(QPoint device)
{
    movePointerTo(device);
    QProcess::execute(QStringLiteral("xdotool"),
                      {QStringLiteral("click"), QStringLiteral("--repeat"), QStringLiteral("2"),
                       QStringLiteral("--delay"), QStringLiteral("80"), QStringLiteral("1")});
}

} // namespace

class TestDesktopApplicationsCapture : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<AtspiAccessibilityService> m_service;
    std::unique_ptr<TesseractScreenTextRecognizer> m_recognizer;
    std::unique_ptr<FakeLanguageRecognizer> m_languages;
    std::unique_ptr<HunspellSpellChecker> m_spelling;
    std::unique_ptr<QtScheduler> m_scheduler;
    std::unique_ptr<OcrFallback> m_ocr;

    // The inspector first; the screen when it has no word, as a look-up goes.
    Reading read(QPoint device)
    {
        const QPointF point = movePointerTo(device);
        Reading reading;
        if (const AccessibleElementPtr element = AXHoverInspector::elementAtPointer(*m_service, point)) {
            const WordAtPositionResult result = AXHoverInspector::wordAtPosition(*element, point);
            reading.inspected = result.kind;
            if (result.kind == WordAtPositionResult::Kind::word) {
                reading.tier = QStringLiteral("accessibility");
                reading.word = result.word;
                reading.sentence = result.sentence.value_or(QString());
                return reading;
            }
        }
        bool done = false;
        m_ocr->recognizeWord(point, QStringLiteral("fr"), [&](std::optional<QString> word, std::optional<QString>) {
            reading.tier = word ? QStringLiteral("screen") : QStringLiteral("none");
            reading.word = word.value_or(QString());
            done = true;
        });
        if (!QTest::qWaitFor([&] { return done; }, 20000))
            reading.tier = QStringLiteral("screen timed out");
        return reading;
    }

    QString selection() const { return selectedText(*m_service).value_or(QStringLiteral("<none>")); }

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("GSETTINGS_BACKEND", "memory");
        if (qEnvironmentVariableIsEmpty("TOLVANE_VIRTUAL_DESKTOP"))
            QSKIP("Needs the private virtual desktop (scripts/virtual-desktop)");
        if (!haveXdotool())
            QSKIP("xdotool is missing: run scripts/setup");
        m_service = std::make_unique<AtspiAccessibilityService>();
        if (!m_service->isConnected())
            QSKIP("The accessibility bus is not running: install at-spi2-core");
        m_recognizer = std::make_unique<TesseractScreenTextRecognizer>();
        m_languages = std::make_unique<FakeLanguageRecognizer>();
        // French words are not put through the English spelling correction.
        LanguageHypotheses french;
        french.dominant = QStringLiteral("fr");
        french.probability = {{QStringLiteral("fr"), 1.0}, {QStringLiteral("en"), 0.0}};
        m_languages->answers.insert(QStringLiteral("jardin"), french);
        m_spelling = std::make_unique<HunspellSpellChecker>();
        m_scheduler = std::make_unique<QtScheduler>();
        m_ocr = std::make_unique<OcrFallback>(*m_recognizer, *m_languages, *m_spelling, *m_scheduler);
    }

    void wordAndSelectionInApplications_data()
    {
        QTest::addColumn<int>("application");
        QTest::addColumn<QString>("tier");
        const QList<ApplicationKind> kinds = lightApplications();
        const QStringList tiers{QStringLiteral("accessibility"), QStringLiteral("accessibility"),
                                QStringLiteral("screen"), QStringLiteral("screen")};
        for (int i = 0; i < kinds.size(); ++i)
            QTest::newRow(qPrintable(kinds.at(i).name)) << i << tiers.at(i);
    }

    // Mousepad hides its page behind a tab without a place on the screen; GTK 4 answers in window
    // coordinates and never places a point itself; Qt 5 cannot place points and xterm is not on
    // the bus at all, so their words come off the screen. The selection: the focused text for
    // the editors, the primary selection of the focused xterm.
    void wordAndSelectionInApplications()
    {
        QFETCH(int, application);
        QFETCH(QString, tier);
        const ApplicationKind kind = lightApplications().at(application);
        if (!DesktopApplication::installed(kind))
            QSKIP(qPrintable(QStringLiteral("%1 is not installed (scripts/packages/desktop.txt)").arg(kind.program)));
        DesktopApplication app;
        QVERIFY2(app.start(kind), qPrintable(QStringLiteral("%1 did not show its window").arg(kind.name)));
        const std::optional<QPoint> riverbank = app.locate(QStringLiteral("riverbank"));
        const std::optional<QPoint> jardin = app.locate(QStringLiteral("jardin"));
        QVERIFY2(riverbank && jardin,
                 qPrintable(QStringLiteral("the probe words are not seen in window %1 at %2,%3 %4×%5")
                                .arg(app.window())
                                .arg(app.rect().x())
                                .arg(app.rect().y())
                                .arg(app.rect().width())
                                .arg(app.rect().height())));

        const QString sentence = tier == QLatin1String("accessibility")
                                     ? QStringLiteral("The quick brown fox jumps over the lazy dog near the riverbank.")
                                     : QString();
        Reading reading;
        QTRY_COMPARE_WITH_TIMEOUT((reading = read(*riverbank)).tier + QLatin1Char(' ') + reading.word,
                                  tier + QStringLiteral(" riverbank"), 10000);
        if (tier == QLatin1String("accessibility")) {
            QCOMPARE(reading.sentence, sentence);
            QCOMPARE(read(*jardin).describe(),
                     QStringLiteral("accessibility «jardin» «Les enfants jouent dans le jardin.»"));
        } else {
            // Nothing wrong was read over the bus before the screen was.
            QVERIFY(reading.inspected != WordAtPositionResult::Kind::word);
            QCOMPARE(read(*jardin).word, QStringLiteral("jardin"));
        }

        doubleClick(*riverbank);
        QTRY_COMPARE_WITH_TIMEOUT(selection(), QStringLiteral("riverbank"), 5000);
    }

    // xterm keeps owning the primary selection after another window takes the focus; the word
    // it holds is not what the user looks at there.
    void primarySelectionOfAnotherWindowIsNotTaken()
    {
        const ApplicationKind xterm = lightApplications().constLast();
        if (!DesktopApplication::installed(xterm))
            QSKIP("xterm is not installed (scripts/packages/desktop.txt)");
        DesktopApplication terminal;
        QVERIFY(terminal.start(xterm));
        const std::optional<QPoint> riverbank = terminal.locate(QStringLiteral("riverbank"));
        QVERIFY(riverbank);
        doubleClick(*riverbank);
        QTRY_COMPARE_WITH_TIMEOUT(selection(), QStringLiteral("riverbank"), 5000);

        CaptureTestWindow drawn;
        QVERIFY(drawn.start(QStringLiteral(QT_TEXT_WINDOW), {QStringLiteral("drawn")}));
        QTest::qWait(500);
        QCOMPARE(selection(), QStringLiteral("<none>"));
    }

    void windowWithoutProcessIdIsLeftToTheScreen()
    {
        CaptureTestWindow qt;
        QVERIFY(qt.start(QStringLiteral(QT_TEXT_WINDOW), {QStringLiteral("edit")}));
        const QPoint quick = qt.point(QStringLiteral("edit-quick"));
        QTRY_COMPARE_WITH_TIMEOUT(read(quick).describe(),
                                  QStringLiteral("accessibility «quick» «The quick brown fox jumps.»"), 5000);
        QProcess search;
        search.start(QStringLiteral("xdotool"),
                     {QStringLiteral("search"), QStringLiteral("--pid"), QString::number(qt.pid())});
        QVERIFY(search.waitForFinished(5000));
        for (const QString& window : QString::fromUtf8(search.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts))
            QProcess::execute(QStringLiteral("xprop"), {QStringLiteral("-id"), window, QStringLiteral("-remove"),
                                                        QStringLiteral("_NET_WM_PID")});
        m_service->setKeepingNotes(true);
        QCOMPARE(AXHoverInspector::elementAtPointer(*m_service, movePointerTo(quick)), nullptr);
        QCOMPARE(m_service->lastNotes().pid, std::nullopt);
        m_service->setKeepingNotes(false);
    }

    void applicationThatQuitsBetweenTwoQuestionsGivesNoWord()
    {
        if (gtkTextWindow.isEmpty())
            QSKIP("The GTK test window was not built");
        CaptureTestWindow gtk;
        QVERIFY(gtk.start(gtkTextWindow, {}));
        const QPointF point = movePointerTo(gtk.point(QStringLiteral("view-quick")));
        AccessibleElementPtr element;
        QTRY_VERIFY_WITH_TIMEOUT((element = AXHoverInspector::elementAtPointer(*m_service, point)), 5000);
        gtk.stop();
        QCOMPARE(AXHoverInspector::wordAtPosition(*element, point).kind, WordAtPositionResult::Kind::noText);
        QCOMPARE(element->selectedText().value_or(QString()), QString());
    }

    void hostileTexts_data()
    {
        QTest::addColumn<QString>("mode");
        QTest::addColumn<QString>("pointName");
        QTest::addColumn<QString>("expected");
        QTest::newRow("ten megabytes, read around the pointer")
            << QStringLiteral("--big") << QStringLiteral("view-quick")
            << QStringLiteral("accessibility «quick» «The quick brown fox jumps.»");
        // Buttons embedded in the text: object characters with no text behind them. The button
        // under the pointer has a name but no text, so the word comes off the screen.
        QTest::newRow("object characters only")
            << QStringLiteral("--objects") << QStringLiteral("object") << QStringLiteral("screen «Open» «»");
    }

    void hostileTexts()
    {
        QFETCH(QString, mode);
        QFETCH(QString, pointName);
        QFETCH(QString, expected);
        if (gtkTextWindow.isEmpty())
            QSKIP("The GTK test window was not built");
        CaptureTestWindow gtk;
        QVERIFY(gtk.start(gtkTextWindow, {mode}));
        // Ten megabytes keep GTK busy laying the text out for a while; it answers once done. Under
        // AddressSanitizer on a busy machine that has taken longer than 30 s.
        QTRY_COMPARE_WITH_TIMEOUT(read(gtk.point(pointName)).describe(), expected, 90000);
    }
};

QTEST_MAIN(TestDesktopApplicationsCapture)
#include "tst_DesktopApplicationsCapture.moc"
