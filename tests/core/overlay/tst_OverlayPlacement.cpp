// SPDX-License-Identifier: GPL-3.0-or-later
// Where the cards go and how big they get, in points with y upward.
#include "core/overlay/OverlayGeometry.h"

#include <QTest>

using namespace tolvane;
using namespace tolvane::overlay;

namespace {
const ScreenInfo laptop{QRectF(0, 0, 1440, 900), QRectF(0, 0, 1440, 875), 2.0};
// A second screen to the left of the first, its visible frame without a 30-point panel at the top.
const ScreenInfo leftScreen{QRectF(-1920, 0, 1920, 1080), QRectF(-1920, 0, 1920, 1050), 1.0};
} // namespace

class TestOverlayPlacement : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void cardSitsBelowRightOfThePointerInsideTheVisibleFrame_data()
    {
        QTest::addColumn<QList<ScreenInfo>>("screens");
        QTest::addColumn<QPointF>("pointer");
        QTest::addColumn<QSizeF>("card");
        QTest::addColumn<double>("offset");
        QTest::addColumn<QPointF>("origin");
        const QList<ScreenInfo> one{laptop};
        const QList<ScreenInfo> two{laptop, leftScreen};
        QTest::newRow("open space") << one << QPointF(500, 500) << QSizeF(240, 110) << 16.0 << QPointF(516, 374);
        // Pushed left and up, never flipped: the card then covers the pointer's height.
        QTest::newRow("bottom-right corner")
            << one << QPointF(1430, 40) << QSizeF(240, 110) << 16.0 << QPointF(1200, 0);
        QTest::newRow("passage offset 12") << one << QPointF(500, 500) << QSizeF(420, 80) << 12.0 << QPointF(512, 408);
        QTest::newRow("passage bottom-right")
            << one << QPointF(1439, 1) << QSizeF(420, 400) << 12.0 << QPointF(1020, 0);
        QTest::newRow("top edge") << one << QPointF(100, 899) << QSizeF(240, 110) << 16.0 << QPointF(116, 765);
        QTest::newRow("second screen at negative x")
            << two << QPointF(-100, 500) << QSizeF(240, 110) << 16.0 << QPointF(-240, 374);
        QTest::newRow("second screen's top panel")
            << two << QPointF(-1900, 1070) << QSizeF(240, 110) << 16.0 << QPointF(-1884, 940);
        // Outside every screen: the main screen (the first) clamps it.
        QTest::newRow("off every screen") << two << QPointF(5000, -300) << QSizeF(240, 110) << 16.0 << QPointF(1200, 0);
        QTest::newRow("no screen at all")
            << QList<ScreenInfo>{} << QPointF(500, 500) << QSizeF(240, 110) << 16.0 << QPointF(516, 374);
        // A visible frame smaller than the card: the right and top limits win.
        const QList<ScreenInfo> tiny{ScreenInfo{QRectF(0, 0, 200, 100), QRectF(0, 0, 200, 100), 1.0}};
        QTest::newRow("frame smaller than card")
            << tiny << QPointF(50, 50) << QSizeF(240, 110) << 16.0 << QPointF(-40, -10);
    }
    void cardSitsBelowRightOfThePointerInsideTheVisibleFrame()
    {
        QFETCH(QList<ScreenInfo>, screens);
        QFETCH(QPointF, pointer);
        QFETCH(QSizeF, card);
        QFETCH(double, offset);
        QFETCH(QPointF, origin);
        QCOMPARE(cardOrigin(pointer, card, offset, screens), origin);
    }

    void wordCardFitsBetween240And420WideAndAtMost360High_data()
    {
        QTest::addColumn<double>("ideal");
        QTest::addColumn<double>("needed"); // height the content needs at any width
        QTest::addColumn<QSizeF>("size");
        QTest::newRow("short translation") << 90.0 << 80.0 << QSizeF(240, 80);
        QTest::newRow("in between") << 300.0 << 100.0 << QSizeF(300, 100);
        QTest::newRow("long context") << 2000.0 << 900.0 << QSizeF(420, 360);
        QTest::newRow("unmeasurable") << qQNaN() << qInf() << QSizeF(420, 360);
    }
    void wordCardFitsBetween240And420WideAndAtMost360High()
    {
        QFETCH(double, ideal);
        QFETCH(double, needed);
        QFETCH(QSizeF, size);
        double askedWidth = -1;
        const QSizeF fitted = wordCardFittingSize(ideal, [&](double width) {
            askedWidth = width;
            return needed;
        });
        QCOMPARE(fitted, size);
        // The height is measured at the width the card takes.
        QCOMPARE(askedWidth, size.width());
    }

    void wordCardResizesOnlyBeyondAPointAndFollowsTheTrackedPoint()
    {
        const QList<ScreenInfo> screens{laptop};
        CardFrame frame(wordCardPointerOffset, wordCardInitialSize);
        // Before any show there is no tracked point: the origin stays.
        QVERIFY(frame.resizeToFit(QSizeF(300, 120), wordCardResizeTolerance, screens));
        QCOMPARE(frame.frame(), QRectF(0, 0, 300, 120));

        frame.setLastTrackedPoint(QPointF(1430, 40));
        frame.position(QPointF(1430, 40), screens);
        QCOMPARE(frame.frame().topLeft(), QPointF(1140, 0));
        QVERIFY(!frame.resizeToFit(QSizeF(301, 119), wordCardResizeTolerance, screens));
        QCOMPARE(frame.frame().size(), QSizeF(300, 120));
        // Wider: placed again beside the tracked point, still inside the frame.
        QVERIFY(frame.resizeToFit(QSizeF(420, 200), wordCardResizeTolerance, screens));
        QCOMPARE(frame.frame(), QRectF(1020, 0, 420, 200));
    }

    void passageCardGrowsDownwardWithItsTopEdgeFixed_data()
    {
        QTest::addColumn<double>("height");
        QTest::addColumn<QRectF>("frame");
        QTest::newRow("200 → 201 keeps the frame") << 201.0 << QRectF(100, 400, 420, 200);
        QTest::newRow("200 → 202 keeps the frame") << 202.0 << QRectF(100, 400, 420, 200);
        QTest::newRow("200 → 260 grows down by 60") << 260.0 << QRectF(100, 340, 420, 260);
        QTest::newRow("200 → 120 shrinks up by 80") << 120.0 << QRectF(100, 480, 420, 120);
    }
    void passageCardGrowsDownwardWithItsTopEdgeFixed()
    {
        QFETCH(double, height);
        QFETCH(QRectF, frame);
        CardFrame card(passageCardPointerOffset, QSizeF(420, 200));
        card.setFrame(QRectF(100, 400, 420, 200));
        QCOMPARE(card.resizeKeepingTop(height, passageCardResizeTolerance), frame.height() != 200);
        QCOMPARE(card.frame(), frame);
        QCOMPARE(card.frame().y() + card.frame().height(), 600.0);
    }

    void pointsBecomeQtPixelsAgainstThePrimaryScreen()
    {
        const QList<ScreenInfo> screens{laptop, leftScreen};
        QCOMPARE(toTopLeft(QRectF(516, 374, 240, 110), screens), QRect(516, 416, 240, 110));
        QCOMPARE(fromTopLeft(QRectF(516, 416, 240, 110), screens), QRectF(516, 374, 240, 110));
        QCOMPARE(toTopLeft(QRectF(-240, 374, 240, 110), screens), QRect(-240, 416, 240, 110));
        QVERIFY(!toTopLeft(QRectF(0, 0, 10, 10), {}).has_value());
    }
};

QTEST_GUILESS_MAIN(TestOverlayPlacement)
#include "tst_OverlayPlacement.moc"
