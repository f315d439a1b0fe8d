// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CaptureCheckCommand.h"

#include "core/capture/AXHoverInspector.h"
#include "core/capture/GraphemeText.h"
#include "core/capture/OcrFallback.h"
#include "core/capture/SelectedText.h"
#include "core/setup/Preferences.h"
#include "core/support/AppPaths.h"
#include "core/support/QtScheduler.h"
#include "core/translation/LanguageTable.h"
#include "platform/linux/JsonFilePreferenceStore.h"
#include "platform/linux/ScreenCoordinates.h"
#include "platform/linux/capture/AtspiAccessibilityService.h"
#include "platform/linux/capture/HunspellSpellChecker.h"
#include "platform/linux/capture/TesseractScreenTextRecognizer.h"
#include "platform/linux/capture/X11ClientWindow.h"
#include "platform/linux/language/LanguageModelRecognizer.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTextStream>
#include <QThread>
#include <QTimer>

namespace tolvane {

namespace {

const char* usageText =
    "Usage: tolvane capture-check [--at X Y] [--delay SECONDS] [--select] [--find WORD] [--brief]\n";

// The product's sentences for the cases known to keep text from the accessibility bus.
namespace fix {
const QString accessibilityOff =
    QStringLiteral("Accessibility is switched off: turn it on in Settings → Accessibility (or run “gsettings set "
                   "org.gnome.desktop.interface toolkit-accessibility true”), then restart the application.");
const QString chromium = QStringLiteral(
    "Chromium shows page text to the accessibility bus only when started with --force-renderer-accessibility: "
    "add it to the command that starts Chromium (for example in a file under /etc/chromium.d/), then restart it.");
const QString qt5OffBus = QStringLiteral(
    "This Qt 5 application did not join the accessibility bus: Qt 5 joins only when the bus was running when it "
    "started (or with QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 in its environment); restart the application.");
const QString qt5Points = QStringLiteral(
    "Qt 5 applications cannot say which character is under the pointer; Tolvane reads the word from the screen.");
const QString noProcess = QStringLiteral(
    "This window does not name its process (_NET_WM_PID), so its text cannot be found on the accessibility bus; "
    "Tolvane reads the word from the screen.");
const QString notOnBus =
    QStringLiteral("“%1” does not publish its text on the accessibility bus; Tolvane reads the word from the screen.");
const QString unresponsive = QStringLiteral(
    "The application did not answer within 300 ms; Tolvane leaves it alone for 5 seconds and reads the word from "
    "the screen meanwhile.");
} // namespace fix

bool isQt5Process(qint64 pid)
{
    QFile maps(QStringLiteral("/proc/%1/maps").arg(pid));
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains("libQt5Core");
}

QString hintFor(const AccessibilityNotes& notes, bool trusted, bool readByAccessibility)
{
    if (!trusted)
        return fix::accessibilityOff;
    if (readByAccessibility)
        return {};
    if (notes.windowClass.contains(QLatin1String("chromium"), Qt::CaseInsensitive) ||
        notes.windowClass.contains(QLatin1String("chrome"), Qt::CaseInsensitive))
        return fix::chromium;
    if (notes.unresponsive)
        return fix::unresponsive;
    if (!notes.pid && !notes.windowClass.isEmpty())
        return fix::noProcess;
    if (notes.pid && !notes.onBus)
        return isQt5Process(*notes.pid) ? fix::qt5OffBus : fix::notOnBus.arg(notes.windowClass);
    if (notes.onBus && !notes.placesPoints)
        return fix::qt5Points;
    return {};
}

struct Found
{
    QString tier; // "accessibility", "accessibility (whole text)", "ocr", "none"
    QString word;
    std::optional<QString> sentence;
    double accessibilityMs = 0;
    double ocrMs = 0;
};

// The screen reading of the word, as a look-up does it; waits for the recogniser.
std::optional<OcrFallback::NearestWord> readFromScreen(QPointF point, const QString& target)
{
    QtScheduler scheduler;
    TesseractScreenTextRecognizer recognizer;
    LanguageModelRecognizer languages(LanguageModelRecognizer::defaultModelDirectory());
    HunspellSpellChecker spelling;
    OcrFallback fallback(recognizer, languages, spelling, scheduler);
    std::optional<OcrFallback::NearestWord> found;
    QEventLoop loop;
    bool done = false;
    fallback.recognizeWord(point, target, [&](std::optional<QString> word, std::optional<QString> line) {
        if (word)
            found = OcrFallback::NearestWord{*word, line};
        done = true;
        loop.quit();
    });
    if (!done) {
        QTimer::singleShot(20000, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return found;
}

// The way a look-up goes: the accessibility inspector, then the screen where it has no word.
Found lookUp(AtspiAccessibilityService& service, QPointF point, const QString& target)
{
    Found found;
    QElapsedTimer timer;
    timer.start();
    const AccessibleElementPtr element = AXHoverInspector::elementAtPointer(service, point);
    std::optional<QString> fullText;
    if (element) {
        const WordAtPositionResult result = AXHoverInspector::wordAtPosition(*element, point);
        switch (result.kind) {
        case WordAtPositionResult::Kind::word:
            found.accessibilityMs = double(timer.nsecsElapsed()) / 1e6;
            found.tier = QStringLiteral("accessibility");
            found.word = result.word;
            found.sentence = result.sentence;
            return found;
        case WordAtPositionResult::Kind::rangeUnsupported:
            if (textrules::splitAtWhitespace(result.fullText).size() < 2) {
                found.accessibilityMs = double(timer.nsecsElapsed()) / 1e6;
                found.tier = QStringLiteral("accessibility (whole text)");
                found.word = result.fullText;
                return found;
            }
            fullText = result.fullText;
            break;
        case WordAtPositionResult::Kind::noText:
            if (auto text = AXHoverInspector::firstTextAttribute(*element)) {
                found.accessibilityMs = double(timer.nsecsElapsed()) / 1e6;
                found.tier = QStringLiteral("accessibility (whole text)");
                found.word = *text;
                return found;
            }
            break;
        }
    }
    found.accessibilityMs = double(timer.nsecsElapsed()) / 1e6;
    timer.restart();
    const std::optional<OcrFallback::NearestWord> seen = readFromScreen(point, target);
    found.ocrMs = double(timer.nsecsElapsed()) / 1e6;
    if (seen) {
        found.tier = QStringLiteral("ocr");
        found.word = seen->word;
        found.sentence = seen->line;
    } else if (fullText) {
        found.tier = QStringLiteral("accessibility (whole text)");
        found.word = *fullText;
    } else {
        found.tier = QStringLiteral("none");
    }
    return found;
}

// Where a word is seen in the active window, in root pixels.
std::optional<QPoint> findWord(const QString& word, const QString& target)
{
    const std::optional<x11::ClientWindow> window = x11::activeClientWindow();
    if (!window)
        return std::nullopt;
    TesseractScreenTextRecognizer recognizer;
    return recognizer.locateWord(window->rect, word, recognitionLanguages(target));
}

QString oneLine(QString text)
{
    text.replace(QLatin1Char('\n'), QLatin1String("⏎"));
    text.replace(QLatin1Char('\t'), QLatin1Char(' '));
    return text.size() > 200 ? text.left(200) + QStringLiteral("…") : text;
}

} // namespace

int runCaptureCheckCommand(const QStringList& arguments)
{
    QTextStream out(stdout);
    QTextStream err(stderr);
    std::optional<QPoint> at;
    double delaySeconds = 3;
    bool select = false;
    bool brief = false;
    int repeat = 1;
    QString find;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& a = arguments.at(i);
        bool ok = true, okY = true;
        if (a == QLatin1String("--at") && i + 2 < arguments.size()) {
            at = QPoint(arguments.at(i + 1).toInt(&ok), arguments.at(i + 2).toInt(&okY));
            i += 2;
        } else if (a == QLatin1String("--delay") && i + 1 < arguments.size()) {
            delaySeconds = arguments.at(++i).toDouble(&ok);
        } else if (a == QLatin1String("--find") && i + 1 < arguments.size()) {
            find = arguments.at(++i);
        } else if (a == QLatin1String("--repeat") && i + 1 < arguments.size()) {
            repeat = arguments.at(++i).toInt(&ok);
            ok = ok && repeat >= 1 && repeat <= 1000;
        } else if (a == QLatin1String("--select")) {
            select = true;
        } else if (a == QLatin1String("--brief")) {
            brief = true;
        } else if (a == QLatin1String("--help")) {
            out << usageText;
            return 0;
        } else {
            ok = false;
        }
        if (!ok || !okY || delaySeconds < 0) {
            err << "tolvane capture-check: bad argument " << a << '\n' << usageText;
            return 2;
        }
    }
    if (qEnvironmentVariableIsEmpty("DISPLAY") || !x11::pointerPosition()) {
        err << "tolvane capture-check: needs an X11 session (no X server answers on DISPLAY)\n";
        return 1;
    }
    JsonFilePreferenceStore store(configDirectory() + QStringLiteral("/preferences.json"));
    const QString target = Preferences(store).targetLanguage();

    if (!find.isEmpty()) {
        const std::optional<QPoint> where = findWord(find, target);
        if (!where) {
            err << "tolvane capture-check: “" << find << "” is not seen in the active window\n";
            return 1;
        }
        out << where->x() << ' ' << where->y() << '\n';
        return 0;
    }

    if (!at) {
        out << "Point at a word within " << delaySeconds << " seconds…\n";
        out.flush();
        QThread::msleep(ulong(delaySeconds * 1000));
    }
    const QPoint device = at.value_or(x11::pointerPosition().value_or(QPoint()));
    // Without a window system integration, points and root pixels are one and the same.
    const QPointF point = screen::fromQt(QPointF(device) / screen::scaleAt(QPointF(device)));

    AtspiAccessibilityService service;
    service.setKeepingNotes(true);
    const bool trusted = service.isConnected() && service.isTrusted();
    // The first look-up meets a cold bus; the running application asks again and again.
    Found found = lookUp(service, point, target);
    AccessibilityNotes notes = service.lastNotes();
    QList<Found> earlier;
    for (int i = 1; i < repeat; ++i) {
        earlier.append(found);
        found = lookUp(service, point, target);
        notes = service.lastNotes();
    }
    const QString hint = hintFor(notes, trusted, found.tier.startsWith(QLatin1String("accessibility")));

    std::optional<QString> selection;
    AccessibilityNotes selectionNotes;
    if (select) {
        selection = selectedText(service);
        selectionNotes = service.lastNotes();
    }

    if (brief) {
        for (const Found& before : std::as_const(earlier))
            out << before.tier << '\t' << oneLine(before.word) << '\t'
                << QString::number(before.accessibilityMs, 'f', 1) << '\t' << QString::number(before.ocrMs, 'f', 0)
                << '\n';
        out << found.tier << '\t' << oneLine(found.word) << '\t' << QString::number(found.accessibilityMs, 'f', 1)
            << '\t' << QString::number(found.ocrMs, 'f', 0);
        if (select)
            out << '\t' << oneLine(selection.value_or(QString()));
        out << '\n';
        return found.word.isEmpty() ? 1 : 0;
    }

    out << "Pointer at " << device.x() << ", " << device.y() << '\n';
    out << "Accessibility bus: " << (!service.isConnected() ? "not running" : trusted ? "on" : "off") << '\n';
    out << "What the bus answered:\n";
    for (const QString& step : notes.steps)
        out << "  " << step << '\n';
    if (found.word.isEmpty()) {
        out << "No word was read (accessibility " << QString::number(found.accessibilityMs, 'f', 1) << " ms, screen "
            << QString::number(found.ocrMs, 'f', 0) << " ms)\n";
    } else {
        out << "Word: " << oneLine(found.word) << '\n';
        out << "Read by: " << found.tier << " (accessibility " << QString::number(found.accessibilityMs, 'f', 1)
            << " ms";
        if (found.tier == QLatin1String("ocr"))
            out << ", screen " << QString::number(found.ocrMs, 'f', 0) << " ms";
        out << ")\n";
        if (found.sentence)
            out << "Sentence: " << oneLine(*found.sentence) << '\n';
    }
    if (select) {
        out << "Selection: " << (selection ? QStringLiteral("«%1»").arg(oneLine(*selection)) : QStringLiteral("none"))
            << '\n';
        for (const QString& step : selectionNotes.steps)
            out << "  " << step << '\n';
    }
    if (!hint.isEmpty())
        out << "To fix: " << hint << '\n';
    return found.word.isEmpty() ? 1 : 0;
}

} // namespace tolvane
