// SPDX-License-Identifier: GPL-3.0-or-later
// The OCR fallback's cost and accuracy: the time to capture a strip of the screen and to read it,
// and how often the word under the pointer is found in strips of UI-sized text (11–13 px) set in
// a few fonts. Run inside the private desktop with the launcher's environment:
//     OMP_THREAD_LIMIT=1 scripts/virtual-desktop -- build/dev/bench/bench_capture_ocr
#include "core/capture/OcrFallback.h"
#include "core/translation/LanguageTable.h"
#include "platform/linux/ScreenCoordinates.h"
#include "platform/linux/capture/HunspellSpellChecker.h"
#include "platform/linux/capture/TesseractScreenTextRecognizer.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFontMetrics>
#include <QPainter>
#include <QThread>
#include <QWidget>

#include <algorithm>
#include <cstdio>

using namespace tolvane;

namespace {

const QStringList probeWords{
    QStringLiteral("window"),   QStringLiteral("settings"), QStringLiteral("download"), QStringLiteral("history"),
    QStringLiteral("message"),  QStringLiteral("account"),  QStringLiteral("privacy"),  QStringLiteral("search"),
    QStringLiteral("favorite"), QStringLiteral("garden"),   QStringLiteral("weather"),  QStringLiteral("journey"),
    QStringLiteral("kitchen"),  QStringLiteral("bridge"),   QStringLiteral("mountain"), QStringLiteral("library"),
    QStringLiteral("picture"),  QStringLiteral("quickly"),  QStringLiteral("holiday"),  QStringLiteral("shadow"),
    QStringLiteral("village"),  QStringLiteral("answer"),   QStringLiteral("feather"),  QStringLiteral("yellow"),
    QStringLiteral("orange"),   QStringLiteral("travel"),   QStringLiteral("between"),  QStringLiteral("morning"),
    QStringLiteral("thought"),  QStringLiteral("believe"),
};
const QStringList fontFamilies{QStringLiteral("DejaVu Sans"), QStringLiteral("DejaVu Serif"),
                               QStringLiteral("Nimbus Sans"), QStringLiteral("Nimbus Roman")};

double percentile(QList<double> values, double p)
{
    if (values.isEmpty())
        return 0;
    std::sort(values.begin(), values.end());
    return values[qsizetype(p * double(values.size() - 1))];
}

// A strip as a desktop shows it: a line above, the probe word in the middle of a sentence under
// the pointer, a line below.
QImage stripWithWord(const QString& word, const QString& family, int pixelSize, bool dark)
{
    QImage image(600, 72, QImage::Format_RGB32);
    image.fill(dark ? QColor(40, 42, 46) : QColor(250, 250, 250));
    QPainter painter(&image);
    QFont font(family);
    font.setPixelSize(pixelSize);
    painter.setFont(font);
    painter.setPen(dark ? QColor(225, 225, 225) : QColor(20, 20, 20));
    const QFontMetrics metrics(font);
    const QString before = QStringLiteral("Open the ");
    const QString after = QStringLiteral(" panel to continue.");
    const int lineGap = pixelSize + 8;
    const int x = 300 - metrics.horizontalAdvance(before) - metrics.horizontalAdvance(word) / 2;
    const int baseline = 36 + metrics.ascent() / 2 - 1;
    painter.drawText(QPoint(x - 40, baseline - lineGap), QStringLiteral("Recent files and folders"));
    painter.drawText(QPoint(x, baseline), before + word + after);
    painter.drawText(QPoint(x - 20, baseline + lineGap), QStringLiteral("Show hidden items"));
    return image;
}

void benchAccuracy(TesseractScreenTextRecognizer& recognizer)
{
    const QStringList languages = recognitionLanguages(QStringLiteral("ru"));
    QList<double> times;
    for (int size : {11, 12, 13}) {
        int found = 0;
        int total = 0;
        for (bool dark : {false, true}) {
            for (const QString& family : fontFamilies) {
                for (const QString& word : probeWords) {
                    const QImage strip = stripWithWord(word, family, size, dark);
                    QElapsedTimer timer;
                    timer.start();
                    const Result<RecognizedText> text =
                        recognizer.recognizeImage(strip, QRectF(0, 0, 600, 72), 1.0, languages);
                    times.append(double(timer.nsecsElapsed()) / 1e6);
                    const auto nearest = text ? OcrFallback::nearestWord(text.value()) : std::nullopt;
                    ++total;
                    if (nearest && nearest->word == word)
                        ++found;
                }
            }
        }
        std::printf("probe words at %d px (%lld fonts, light and dark): %d of %d found (%.1f %%)\n", size,
                    qlonglong(fontFamilies.size()), found, total, 100.0 * found / total);
    }
    std::printf("recognition of a strip (eng+rus): p50 %.1f ms, p90 %.1f ms, max %.1f ms over %lld strips\n",
                percentile(times, 0.5), percentile(times, 0.9), percentile(times, 1.0), qlonglong(times.size()));
}

class SampleWindow final : public QWidget
{
protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), Qt::white);
        QFont f = font();
        f.setPixelSize(13);
        painter.setFont(f);
        for (int line = 0; line < 12; ++line)
            painter.drawText(QPoint(20, 30 + line * 22),
                             QStringLiteral("Line %1: the quick brown fox jumps over the lazy dog").arg(line));
    }
};

void benchScreenStrip(TesseractScreenTextRecognizer& recognizer)
{
    SampleWindow window;
    window.resize(700, 300);
    window.move(100, 100);
    window.show();
    for (int i = 0; i < 20; ++i) {
        QCoreApplication::processEvents();
        QThread::msleep(25);
    }
    const QPointF pointer = screen::fromQt(QPointF(window.mapToGlobal(QPoint(200, 118))));
    const QRectF strip = OcrFallback::captureStrip(pointer);
    const QStringList languages = recognitionLanguages(QStringLiteral("ru"));
    QList<double> captures;
    QList<double> wholes;
    QString lastWord;
    for (int i = 0; i < 40; ++i) {
        QElapsedTimer timer;
        timer.start();
        const Result<QImage> image = TesseractScreenTextRecognizer::captureStrip(strip);
        captures.append(double(timer.nsecsElapsed()) / 1e6);
        if (!image)
            continue;
        const auto text =
            recognizer.recognizeImage(image.value(), strip, image.value().width() / strip.width(), languages);
        wholes.append(double(timer.nsecsElapsed()) / 1e6);
        if (text)
            if (auto nearest = OcrFallback::nearestWord(text.value()))
                lastWord = nearest->word;
    }
    std::printf("screen strip capture: p50 %.2f ms; capture + recognition: p50 %.1f ms, p90 %.1f ms (word «%s»)\n",
                percentile(captures, 0.5), percentile(wholes, 0.5), percentile(wholes, 0.9), qPrintable(lastWord));
}

void benchSpelling()
{
    HunspellSpellChecker spelling;
    if (!spelling.isLoaded())
        return;
    const QStringList misread{QStringLiteral("wlndow"),  QStringLiteral("settlngs"), QStringLiteral("dovnload"),
                              QStringLiteral("hist0ry"), QStringLiteral("rnessage"), QStringLiteral("acc0unt"),
                              QStringLiteral("privacv"), QStringLiteral("seareh"),   QStringLiteral("gardem"),
                              QStringLiteral("weathor")};
    QList<double> checks;
    QList<double> suggestions;
    for (const QString& word : misread) {
        QElapsedTimer timer;
        timer.start();
        const bool correct = spelling.isCorrect(word);
        checks.append(double(timer.nsecsElapsed()) / 1e6);
        timer.restart();
        if (!correct)
            spelling.suggestions(word);
        suggestions.append(double(timer.nsecsElapsed()) / 1e6);
    }
    std::printf("spelling: check p50 %.3f ms; suggestions p50 %.1f ms, max %.1f ms (off the main thread)\n",
                percentile(checks, 0.5), percentile(suggestions, 0.5), percentile(suggestions, 1.0));
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    if (qEnvironmentVariable("OMP_THREAD_LIMIT") != QLatin1String("1"))
        std::printf("note: OMP_THREAD_LIMIT is not 1; Tesseract runs much slower than Tolvane would\n");
    TesseractScreenTextRecognizer recognizer;
    QElapsedTimer timer;
    timer.start();
    const auto warmUp =
        recognizer.recognizeImage(stripWithWord(QStringLiteral("start"), fontFamilies[0], 13, false),
                                  QRectF(0, 0, 600, 72), 1.0, {QStringLiteral("en-US"), QStringLiteral("ru-RU")});
    std::printf("first recognition (loads the engine): %.1f ms\n", double(timer.nsecsElapsed()) / 1e6);
    benchAccuracy(recognizer);
    benchScreenStrip(recognizer);
    benchSpelling();
    return 0;
}
