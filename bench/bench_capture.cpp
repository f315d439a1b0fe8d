// SPDX-License-Identifier: GPL-3.0-or-later
// How long reading the word under the pointer and the selection takes over the accessibility bus,
// against real GTK 3 and Qt 6 windows and the desktop applications installed (Mousepad, GNOME
// Text Editor, FeatherPad, xterm, LibreOffice Writer, Firefox, Chromium), and how long a frozen
// application can hold a look-up.
// Run inside the private desktop:
//     scripts/virtual-desktop -- build/dev/bench/bench_capture
#include "core/capture/AXHoverInspector.h"
#include "core/capture/SelectedText.h"
#include "platform/linux/capture/AtspiAccessibilityService.h"
#include "x11/capture/CaptureTestWindow.h"
#include "x11/capture/DesktopApplication.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QThread>

#include <algorithm>
#include <cstdio>

using namespace tolvane;
using namespace tolvane::testing;

namespace {

struct Figures
{
    QList<double> ms;
    double percentile(double p) const
    {
        if (ms.isEmpty())
            return 0;
        QList<double> sorted = ms;
        std::sort(sorted.begin(), sorted.end());
        return sorted[qsizetype(p * double(sorted.size() - 1))];
    }
};

double millisecondsOf(const std::function<void()>& work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return double(timer.nsecsElapsed()) / 1e6;
}

QString wordAt(AccessibilityService& service, QPointF point)
{
    const AccessibleElementPtr element = AXHoverInspector::elementAtPointer(service, point);
    if (!element)
        return {};
    return AXHoverInspector::wordAtPosition(*element, point).word;
}

// Waits (processing events, which libatspi needs) until the application answers.
bool waitForWord(AccessibilityService& service, QPointF point, const QString& word)
{
    for (int i = 0; i < 100; ++i) {
        if (wordAt(service, point) == word)
            return true;
        QCoreApplication::processEvents();
        QThread::msleep(50);
    }
    return false;
}

void benchWordQueries(AccessibilityService& service, const char* toolkit, const QString& program,
                      const QStringList& arguments, const QString& pointName)
{
    CaptureTestWindow window;
    if (!window.start(program, arguments)) {
        std::printf("%s: the test window did not start\n", toolkit);
        return;
    }
    const QPointF point = movePointerTo(window.point(pointName));
    QThread::msleep(300);
    QCoreApplication::processEvents();
    QString first;
    const double firstMs = millisecondsOf([&] { first = wordAt(service, point); });
    if (!waitForWord(service, point, QStringLiteral("quick"))) {
        std::printf("%s: the word under the pointer was never read (first answer «%s»)\n", toolkit, qPrintable(first));
        return;
    }
    Figures warm;
    for (int i = 0; i < 200; ++i)
        warm.ms.append(millisecondsOf([&] { wordAt(service, point); }));
    std::printf("%-4s word under the pointer: first %.2f ms (%s); warm p50 %.2f ms, p90 %.2f ms, max %.2f ms "
                "over %lld queries\n",
                toolkit, firstMs, first.isEmpty() ? "not yet registered" : "read", warm.percentile(0.5),
                warm.percentile(0.9), warm.percentile(1.0), qlonglong(warm.ms.size()));
}

void benchSelection(AccessibilityService& service, const char* toolkit, const QString& program, QStringList arguments)
{
    CaptureTestWindow window;
    arguments << QStringLiteral("--select") << QStringLiteral("quick");
    if (!window.start(program, arguments))
        return;
    QString selected;
    for (int i = 0; i < 100 && selected != QLatin1String("quick"); ++i) {
        QCoreApplication::processEvents();
        if (const AccessibleElementPtr focused = service.focusedElement())
            selected = focused->selectedText().value_or(QString());
        if (selected != QLatin1String("quick"))
            QThread::msleep(50);
    }
    Figures reads;
    for (int i = 0; i < 100; ++i) {
        reads.ms.append(millisecondsOf([&] {
            if (const AccessibleElementPtr focused = service.focusedElement())
                selected = focused->selectedText().value_or(QString());
        }));
    }
    std::printf("%-4s selection read («%s»): p50 %.2f ms, p90 %.2f ms, max %.2f ms\n", toolkit, qPrintable(selected),
                reads.percentile(0.5), reads.percentile(0.9), reads.percentile(1.0));
}

// The large applications people read in; scripts/reach installs them.
QList<ApplicationKind> largeApplications()
{
    const QString profile = QDir::tempPath() + QStringLiteral("/tolvane-bench-profile");
    return {
        {QStringLiteral("LibreOffice Writer"),
         QStringLiteral("libreoffice"),
         {QStringLiteral("--nologo"), QStringLiteral("--norestore"), QStringLiteral("--writer"), QStringLiteral("%f")},
         QStringLiteral("riverbank.txt - LibreOffice")},
        {QStringLiteral("Firefox"),
         QStringLiteral("firefox-esr"),
         {QStringLiteral("--new-instance"), QStringLiteral("--profile"), profile + QStringLiteral("-firefox"),
          QStringLiteral("%f")},
         QStringLiteral("Mozilla Firefox")},
        {QStringLiteral("Chromium (accessibility on)"),
         QStringLiteral("chromium"),
         {QStringLiteral("--no-sandbox"), QStringLiteral("--no-first-run"),
          QStringLiteral("--user-data-dir=") + profile + QStringLiteral("-chromium"),
          QStringLiteral("--force-renderer-accessibility"), QStringLiteral("%f")},
         QStringLiteral("Chromium")},
    };
}

// One application: the first look-up after it opened, then warm look-ups; for those that do not
// give their text, how soon the inspector hands over to the screen.
void benchApplication(AtspiAccessibilityService& service, const ApplicationKind& kind)
{
    if (!DesktopApplication::installed(kind)) {
        std::printf("%-28s not installed\n", qPrintable(kind.name));
        return;
    }
    QDir(QDir::tempPath()).mkpath(QStringLiteral("tolvane-bench-profile-firefox"));
    DesktopApplication app;
    if (!app.start(kind)) {
        std::printf("%-28s did not show its window\n", qPrintable(kind.name));
        return;
    }
    const std::optional<QPoint> riverbank = app.locate(QStringLiteral("riverbank"));
    if (!riverbank) {
        std::printf("%-28s the word is not seen on the screen\n", qPrintable(kind.name));
        return;
    }
    const QPointF point = movePointerTo(*riverbank);
    QString first;
    service.setKeepingNotes(true);
    const double firstMs = millisecondsOf([&] { first = wordAt(service, point); });
    const AccessibilityNotes firstNotes = service.lastNotes();
    service.setKeepingNotes(false);
    const bool answers = waitForWord(service, point, QStringLiteral("riverbank"));
    Figures warm;
    int misses = 0;
    for (int i = 0; i < 100; ++i) {
        QString word;
        warm.ms.append(millisecondsOf([&] { word = wordAt(service, point); }));
        misses += answers && word != QLatin1String("riverbank");
    }
    std::printf("%-28s %s: first %.1f ms (%s), warm p50 %.2f ms, p90 %.2f ms, max %.2f ms%s\n", qPrintable(kind.name),
                answers ? "word by accessibility" : "hands over to the screen", firstMs,
                first.isEmpty() ? "no word" : qPrintable(first), warm.percentile(0.5), warm.percentile(0.9),
                warm.percentile(1.0),
                misses ? qPrintable(QStringLiteral(", %1 of 100 warm look-ups missed the word").arg(misses)) : "");
    if (answers && first.isEmpty()) {
        for (const QString& step : firstNotes.steps)
            std::printf("    first look-up: %s\n", qPrintable(step));
    }
}

void benchFrozen(AccessibilityService& service, const QString& program)
{
    CaptureTestWindow window;
    if (!window.start(program, {}))
        return;
    const QPointF point = movePointerTo(window.point(QStringLiteral("view-quick")));
    if (!waitForWord(service, point, QStringLiteral("quick")))
        return;
    window.freeze();
    const double first = millisecondsOf([&] { wordAt(service, point); });
    const double next = millisecondsOf([&] { wordAt(service, point); });
    window.thaw();
    std::printf("frozen application under the pointer: first look-up %.1f ms, the next %.1f ms (bound: 350 ms)\n",
                first, next);
    // The same, frozen while it has the focus: the selection is asked of it first.
    QThread::sleep(6);
    waitForWord(service, point, QStringLiteral("quick"));
    window.freeze();
    const double selection = millisecondsOf([&] { selectedText(service); });
    window.thaw();
    std::printf("frozen application with the focus: selection read in %.1f ms (bound: 350 ms)\n", selection);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    if (!haveXdotool()) {
        std::printf("xdotool is missing\n");
        return 1;
    }
    AtspiAccessibilityService service;
    if (!service.isConnected()) {
        std::printf("The accessibility bus is not running\n");
        return 1;
    }
#if !defined(GTK_TEXT_WINDOW) || !defined(QT_TEXT_WINDOW)
    std::printf("The GTK and Qt test windows were not built with this benchmark; nothing measured\n");
    return 1;
#endif
#ifdef GTK_TEXT_WINDOW
    benchWordQueries(service, "GTK", QStringLiteral(GTK_TEXT_WINDOW), {}, QStringLiteral("view-quick"));
    benchSelection(service, "GTK", QStringLiteral(GTK_TEXT_WINDOW), {});
#endif
#ifdef QT_TEXT_WINDOW
    benchWordQueries(service, "Qt", QStringLiteral(QT_TEXT_WINDOW), {QStringLiteral("edit")},
                     QStringLiteral("edit-quick"));
    benchSelection(service, "Qt", QStringLiteral(QT_TEXT_WINDOW), {QStringLiteral("edit")});
#endif
#ifdef GTK_TEXT_WINDOW
    benchFrozen(service, QStringLiteral(GTK_TEXT_WINDOW));
#endif
    for (const ApplicationKind& kind : lightApplications() + largeApplications())
        benchApplication(service, kind);
    return 0;
}
