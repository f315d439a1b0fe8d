// SPDX-License-Identifier: GPL-3.0-or-later
// The word under the pointer and the selection, read from real GTK 3 and Qt 6 windows over the
// accessibility bus.
#include "CaptureTestWindow.h"
#include "core/capture/AXHoverInspector.h"
#include "platform/linux/capture/AtspiAccessibilityService.h"

#include <QApplication>
#include <QCursor>
#include <QTest>

using namespace tolvane;
using namespace tolvane::testing;

namespace {

WordAtPositionResult inspect(AccessibilityService& service, QPointF point)
{
    const AccessibleElementPtr element = AXHoverInspector::elementAtPointer(service, point);
    if (!element)
        return WordAtPositionResult::makeNoText();
    return AXHoverInspector::wordAtPosition(*element, point);
}

WordAtPositionResult inspectAt(AccessibilityService& service, QPoint device)
{
    return inspect(service, movePointerTo(device));
}

QString describe(const WordAtPositionResult& r)
{
    switch (r.kind) {
    case WordAtPositionResult::Kind::word:
        return QStringLiteral("word «%1» sentence «%2»").arg(r.word, r.sentence.value_or(QStringLiteral("-")));
    case WordAtPositionResult::Kind::rangeUnsupported:
        return QStringLiteral("rangeUnsupported «%1»").arg(r.fullText);
    case WordAtPositionResult::Kind::noText:
        break;
    }
    return QStringLiteral("noText");
}

#ifdef GTK_TEXT_WINDOW
const QString gtkTextWindow = QStringLiteral(GTK_TEXT_WINDOW);
#else
const QString gtkTextWindow;
#endif

} // namespace

class TestAtspiCapture : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<AtspiAccessibilityService> m_service;

    void startOrSkip(CaptureTestWindow& window, const QString& program, const QStringList& arguments)
    {
        if (program.isEmpty())
            QSKIP("The test window program was not built");
        QVERIFY2(window.start(program, arguments), qPrintable(QStringLiteral("%1 did not start").arg(program)));
    }

    // The application registers on the bus shortly after it draws; ask until it answers.
    void expectWord(QPoint device, const QString& word, const std::optional<QString>& sentence)
    {
        const QString expected = describe(WordAtPositionResult::makeWord(word, sentence));
        QTRY_COMPARE_WITH_TIMEOUT(describe(inspectAt(*m_service, device)), expected, 5000);
    }

    QString focusedSelection() const
    {
        const AccessibleElementPtr focused = m_service->focusedElement();
        return focused ? focused->selectedText().value_or(QStringLiteral("<none>")) : QStringLiteral("<no focus>");
    }

private Q_SLOTS:
    void initTestCase()
    {
        // Asking for access writes the desktop's accessibility setting: keep it in memory here.
        qputenv("GSETTINGS_BACKEND", "memory");
        if (qEnvironmentVariableIsEmpty("TOLVANE_VIRTUAL_DESKTOP"))
            QSKIP("Needs the private virtual desktop (scripts/virtual-desktop)");
        if (!haveXdotool())
            QSKIP("xdotool is missing: run scripts/setup");
        m_service = std::make_unique<AtspiAccessibilityService>();
        if (!m_service->isConnected())
            QSKIP("The accessibility bus is not running: install at-spi2-core");
        QVERIFY(m_service->isTrusted());
    }

    void gtkLabelAndTextView()
    {
        CaptureTestWindow gtk;
        startOrSkip(gtk, gtkTextWindow, {});
        expectWord(gtk.point(QStringLiteral("label-world")), QStringLiteral("world"), QStringLiteral("Hello, world!"));
        expectWord(gtk.point(QStringLiteral("view-quick")), QStringLiteral("quick"),
                   QStringLiteral("The quick brown fox jumps."));
        expectWord(gtk.point(QStringLiteral("view-second-line")), QStringLiteral("second"),
                   QStringLiteral("A second line of text."));
        expectWord(gtk.point(QStringLiteral("view-naive")), QStringLiteral("naïve"),
                   QStringLiteral("Thumbs 👍🏽 up for naïve words."));
        // The toolkit snaps to the nearest character; empty space past the line's end is no word.
        QCOMPARE(describe(inspectAt(*m_service, gtk.point(QStringLiteral("view-after-line")))),
                 describe(WordAtPositionResult::makeNoText()));
    }

    void gtkSelection()
    {
        CaptureTestWindow gtk;
        startOrSkip(gtk, gtkTextWindow, {QStringLiteral("--select"), QStringLiteral("brown fox")});
        QTRY_COMPARE_WITH_TIMEOUT(focusedSelection(), QStringLiteral("brown fox"), 5000);
    }

    void qtTextEditAndButton()
    {
        CaptureTestWindow qt;
        startOrSkip(qt, QStringLiteral(QT_TEXT_WINDOW), {QStringLiteral("edit")});
        expectWord(qt.point(QStringLiteral("edit-quick")), QStringLiteral("quick"),
                   QStringLiteral("The quick brown fox jumps."));
        expectWord(qt.point(QStringLiteral("edit-naive")), QStringLiteral("naïve"),
                   QStringLiteral("Thumbs 👍🏽 up for naïve words."));
        // A button has a name but no text to place the pointer in.
        QCOMPARE(describe(inspectAt(*m_service, qt.point(QStringLiteral("button")))),
                 describe(WordAtPositionResult::makeRangeUnsupported(QStringLiteral("Open file"))));
    }

    // A Qt application drawn at twice the screen's scale answers in its own, larger, pixels.
    void qtTextEditScaledByItself()
    {
        CaptureTestWindow qt;
        QProcessEnvironment scaled;
        scaled.insert(QStringLiteral("QT_SCALE_FACTOR"), QStringLiteral("2"));
        QVERIFY(qt.start(QStringLiteral(QT_TEXT_WINDOW), {QStringLiteral("edit"), QStringLiteral("small")}, scaled));
        expectWord(qt.point(QStringLiteral("edit-naive")), QStringLiteral("naïve"),
                   QStringLiteral("Thumbs 👍🏽 up for naïve words."));
    }

    void qtSelection()
    {
        CaptureTestWindow qt;
        startOrSkip(qt, QStringLiteral(QT_TEXT_WINDOW),
                    {QStringLiteral("edit"), QStringLiteral("--select"), QStringLiteral("quick")});
        QTRY_COMPARE_WITH_TIMEOUT(focusedSelection(), QStringLiteral("quick"), 5000);
    }

    void drawnTextHasNoAccessibleText()
    {
        CaptureTestWindow drawn;
        startOrSkip(drawn, QStringLiteral(QT_TEXT_WINDOW), {QStringLiteral("drawn")});
        QTest::qWait(500);
        QCOMPARE(describe(inspectAt(*m_service, drawn.point(QStringLiteral("drawn-quick")))),
                 describe(WordAtPositionResult::makeNoText()));
    }

    void frozenApplicationDoesNotHoldUsUp()
    {
        CaptureTestWindow gtk;
        startOrSkip(gtk, gtkTextWindow, {});
        const QPoint target = gtk.point(QStringLiteral("view-quick"));
        expectWord(target, QStringLiteral("quick"), QStringLiteral("The quick brown fox jumps."));

        gtk.freeze();
        const QPointF point = movePointerTo(target);
        // A frozen application answers nothing, also when asked again; how long that takes is
        // bench_capture's to measure.
        for (int attempt = 0; attempt < 2; ++attempt)
            QCOMPARE(inspect(*m_service, point).kind, WordAtPositionResult::Kind::noText);
        gtk.thaw();
    }
};

QTEST_MAIN(TestAtspiCapture)
#include "tst_AtspiCapture.moc"
