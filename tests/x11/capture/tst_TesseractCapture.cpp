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
            QTRY_COMPARE_WITH_TIMEOUT(calls, 1, 10000);
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
        QImage image(600, 72, QImage::Format_RGB32);
        image.fill(QColor(30, 30, 30));
        {
            QPainter painter(&image);
            QFont font = QApplication::font();
            font.setPixelSize(13);
            painter.setFont(font);
            painter.setPen(QColor(230, 230, 230));
            painter.drawText(QPoint(200, 41), QStringLiteral("Settings for the dark theme"));
        }
        const auto dark = recognizer.recognizeImage(image, strip, 1.0, {QStringLiteral("en-US")});
        QVERIFY(dark);
        QCOMPARE(dark.value().lines.size(), 1);
        QCOMPARE(dark.value().lines[0].text, QStringLiteral("Settings for the dark theme"));
        // Boxes come back in points from the strip's bottom-left corner.
        const QRectF box = dark.value().lines[0].words[0].box;
        QVERIFY2(
            box.left() >= 195 && box.left() <= 205 && box.bottom() > 36 && box.top() < 36,
            qPrintable(QStringLiteral("%1 %2 %3 %4").arg(box.x()).arg(box.y()).arg(box.width()).arg(box.height())));

        // At scale 2 the strip is 1200 × 144 device pixels; boxes still come back in points.
        QImage doubled(1200, 144, QImage::Format_RGB32);
        doubled.fill(Qt::white);
        {
            QPainter painter(&doubled);
            QFont font = QApplication::font();
            font.setPixelSize(26);
            painter.setFont(font);
            painter.drawText(QPoint(400, 82), QStringLiteral("Sharper text reads well"));
        }
        const auto sharp = recognizer.recognizeImage(doubled, strip, 2.0, {QStringLiteral("en-US")});
        QVERIFY(sharp && sharp.value().lines.size() == 1);
        QCOMPARE(sharp.value().lines[0].text, QStringLiteral("Sharper text reads well"));
        const QRectF sharpBox = sharp.value().lines[0].words[0].box;
        QVERIFY2(sharpBox.left() >= 195 && sharpBox.left() <= 205 && sharpBox.bottom() > 36 && sharpBox.top() < 36,
                 qPrintable(QStringLiteral("%1 %2 %3 %4")
                                .arg(sharpBox.x())
                                .arg(sharpBox.y())
                                .arg(sharpBox.width())
                                .arg(sharpBox.height())));

        QImage blank(600, 72, QImage::Format_RGB32);
        blank.fill(Qt::white);
        const auto nothing = recognizer.recognizeImage(blank, strip, 1.0, {QStringLiteral("en-US")});
        QVERIFY(nothing);
        QVERIFY(nothing.value().lines.isEmpty());
        QVERIFY(!recognizer.recognizeImage(QImage(), strip, 1.0, {QStringLiteral("en-US")}));
    }
};

QTEST_MAIN(TestTesseractCapture)
#include "tst_TesseractCapture.moc"
