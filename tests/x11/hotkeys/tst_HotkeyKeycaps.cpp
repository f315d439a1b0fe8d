// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/HotkeyKeycaps.h"

#include <QImage>
#include <QTest>

using namespace tolvane;

class TestHotkeyKeycaps : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    // Caps name the keys as Linux keyboards print them; the stored display string keeps its symbols.
    void capsStandInARowWithTheKeysNamedAsOnTheKeyboard_data()
    {
        QTest::addColumn<QString>("display");
        QTest::addColumn<QStringList>("caps");
        QTest::newRow("⌃⌥Space") << "⌃⌥Space" << QStringList{"Ctrl", "Alt", "Space"};
        QTest::newRow("⇧⌘4") << "⇧⌘4" << QStringList{"Shift", "Super", "4"};
        QTest::newRow("⌘(123)") << "⌘(123)" << QStringList{"Super", "(123)"};
        QTest::newRow("empty") << "" << QStringList{};
    }
    void capsStandInARowWithTheKeysNamedAsOnTheKeyboard()
    {
        QFETCH(QString, display);
        QFETCH(QStringList, caps);
        HotkeyKeycaps keycaps(display, 13);
        keycaps.resize(keycaps.sizeHint());
        QCOMPARE(keycaps.keycaps(), caps);
        QCOMPARE(keycaps.accessibleName(), caps.join(u'+'));
        const QList<QRectF> rects = keycaps.keycapRects();
        QCOMPARE(rects.size(), caps.size());
        for (qsizetype i = 0; i < rects.size(); ++i) {
            QVERIFY(rects[i].width() >= 26 && rects[i].height() >= 26);
            QVERIFY(QRectF(keycaps.rect()).contains(rects[i]));
            if (i > 0)
                QCOMPARE(rects[i].left() - rects[i - 1].right(), HotkeyKeycaps::spacing);
        }
        QImage image(keycaps.size().expandedTo(QSize(1, 1)), QImage::Format_ARGB32);
        keycaps.render(&image);
    }
};

QTEST_MAIN(TestHotkeyKeycaps)
#include "tst_HotkeyKeycaps.moc"
