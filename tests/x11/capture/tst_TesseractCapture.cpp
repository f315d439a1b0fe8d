// SPDX-License-Identifier: GPL-3.0-or-later
// The OCR fallback on a real screen: a window whose text is only drawn, with nothing for the
// accessibility bus to read.
#include "CaptureTestWindow.h"
#include "core/capture/OcrFallback.h"
#include "core/support/QtScheduler.h"
#include "fakes/FakePlatform.h"
#include "platform/linux/capture/HunspellSpellChecker.h"
#include "platform/linux/capture/TesseractScreenTextRecognizer.h"

#include <QApplication>
#include <QPainter>
#include <QTest>

using namespace tolvane;
using namespace tolvane::testing;

class TestTesseractCapture : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        if (qEnvironmentVariableIsEmpty("TOLVANE_VIRTUAL_DESKTOP"))
            QSKIP("Needs the private virtual desktop (scripts/virtual-desktop)");
        if (!haveXdotool())
            QSKIP("xdotool is missing: run scripts/setup");
    }

    void readsTheWordUnderThePointer()
    {
        CaptureTestWindow drawn;
        QVERIFY(drawn.start(QStringLiteral(QT_TEXT_WINDOW), {QStringLiteral("drawn")}));
        QTest::qWait(300);

        TesseractScreenTextRecognizer recognizer;
        QVERIFY(recognizer.isCaptureGranted());
        FakeLanguageRecognizer languages;
        HunspellSpellChecker spelling;
        QtScheduler scheduler;
        OcrFallback fallback(recognizer, languages, spelling, scheduler);

        for (const auto& [name, expected] : {std::pair{"drawn-quick", "quick"}, std::pair{"drawn-brown", "brown"}}) {
            const QPointF pointer = movePointerTo(drawn.point(QString::fromLatin1(name)));
            int calls = 0;
            std::optional<QString> word;
            std::optional<QString> line;
            fallback.recognizeWord(pointer, QStringLiteral("ru"),
                                   [&](std::optional<QString> w, std::optional<QString> l) {
                                       ++calls;
                                       word = w;
                                       line = l;
                                   });
            // A ceiling, not a speed check (bench_capture_ocr measures that): under AddressSanitizer
            // on a busy machine one recognition has taken over 11 s.
            QTRY_COMPARE_WITH_TIMEOUT(calls, 1, 30000);
            QCOMPARE(word, QString::fromLatin1(expected));
            QVERIFY2(line && line->contains(QStringLiteral("quick brown")), qPrintable(line.value_or(QString())));
            QTest::qWait(50);
            QCOMPARE(calls, 1);
        }
    }

    void darkStripsAndEmptyStrips()
    {
        TesseractScreenTextRecognizer recognizer;
        const QRectF strip(0, 0, 600, 72);
        // Light on dark at scale 1, and at scale 2 (1200 × 144 device pixels): boxes come back in
        // points from the strip's bottom-left corner either way.
        for (const qreal scale : {1.0, 2.0}) {
            QImage image((strip.size() * scale).toSize(), QImage::Format_RGB32);
            image.fill(scale == 1 ? QColor(30, 30, 30) : QColor(Qt::white));
            const QString text =
                scale == 1 ? QStringLiteral("Settings for the dark theme") : QStringLiteral("Sharper text reads well");
            {
                QPainter painter(&image);
                QFont font = QApplication::font();
                font.setPixelSize(int(13 * scale));
                painter.setFont(font);
                painter.setPen(scale == 1 ? QColor(230, 230, 230) : QColor(Qt::black));
                painter.drawText(QPointF(200, 41) * scale, text);
            }
            const auto read = recognizer.recognizeImage(image, strip, scale, {QStringLiteral("en-US")});
            QVERIFY(read && read.value().lines.size() == 1);
            QCOMPARE(read.value().lines[0].text, text);
            const QRectF box = read.value().lines[0].words[0].box;
            QVERIFY2(
                box.left() >= 195 && box.left() <= 205 && box.bottom() > 36 && box.top() < 36,
                qPrintable(QStringLiteral("%1 %2 %3 %4").arg(box.x()).arg(box.y()).arg(box.width()).arg(box.height())));
        }

        QImage blank(600, 72, QImage::Format_RGB32);
        blank.fill(Qt::white);
        const auto nothing = recognizer.recognizeImage(blank, strip, 1.0, {QStringLiteral("en-US")});
        QVERIFY(nothing && nothing.value().lines.isEmpty());
        QVERIFY(!recognizer.recognizeImage(QImage(), strip, 1.0, {QStringLiteral("en-US")}));
    }
};

QTEST_MAIN(TestTesseractCapture)
#include "tst_TesseractCapture.moc"
