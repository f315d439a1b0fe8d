// SPDX-License-Identifier: GPL-3.0-or-later
// The share picture and the menu that offers it.
#include "ui/share/SharePayload.h"
#include "ui/share/SharePresenter.h"

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QMenu>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTest>

using namespace tolvane;

class TestSharePicture : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void pictureIs1200By630AtTwicePixelDensityWithTheGradientRunningDownToTheRight()
    {
        const QImage image = renderShareImage(QString(), QString(), QString(), QString());
        QCOMPARE(image.size(), QSize(2400, 1260));
        QCOMPARE(image.devicePixelRatio(), 2.0);
        QCOMPARE(image.deviceIndependentSize(), QSizeF(1200, 630));
        const QColor topLeft = image.pixelColor(0, 0);
        const QColor bottomRight = image.pixelColor(2399, 1259);
        // The first colour (0.10, 0.12, 0.25) at the start, the second (0.28, 0.18, 0.52) at the end.
        QVERIFY(qAbs(topLeft.redF() - 0.10) < 0.02 && qAbs(topLeft.blueF() - 0.25) < 0.02);
        QVERIFY(qAbs(bottomRight.redF() - 0.28) < 0.02 && qAbs(bottomRight.blueF() - 0.52) < 0.02);
        // −18°: the bottom-left corner is further along than the top-left one.
        QVERIFY(image.pixelColor(0, 1259).redF() > topLeft.redF() + 0.02);
        QVERIFY(image.pixelColor(2399, 0).redF() < bottomRight.redF() - 0.02);
    }

    void hostileAndLongTextsStayInsideTheirBoxes()
    {
        const QImage blank = renderShareImage(QString(), QString(), QString(), QString());
        const QString hostile = QStringLiteral("<b>x</b>\u202Eabc\tdef\nghi ") + QString(10000, u'w');
        const QImage drawn = renderShareImage(hostile, hostile, hostile, hostile);
        // Nothing drawn left of the 80-pixel margin, nor between the headline box and the body box.
        for (int y = 0; y < 1260; y += 7) {
            for (int x = 0; x < 150; x += 5)
                QCOMPARE(drawn.pixel(x, y), blank.pixel(x, y));
        }
        QVERIFY(drawn != blank);
    }

    void aSecondShareReplacesTheFirstMenu()
    {
        SharePresenter presenter;
        presenter.presentAt(QStringLiteral("one"), QImage(4, 4, QImage::Format_ARGB32), QPoint(100, 100));
        QPointer<QMenu> first = presenter.menu();
        QVERIFY(first);
        presenter.presentAt(QStringLiteral("two"), QImage(4, 4, QImage::Format_ARGB32), QPoint(120, 100));
        QTRY_VERIFY(!first);
        QVERIFY(presenter.menu());
        QStringList titles;
        for (QAction* action : presenter.menu()->actions())
            titles.append(action->text());
        QCOMPARE(titles, (QStringList{"Copy Image", "Copy Text", "Save Image…"}));

        presenter.menu()->actions().at(0)->trigger();
        const QMimeData* copied = QGuiApplication::clipboard()->mimeData();
        QCOMPARE(copied->text(), QStringLiteral("two"));
        QVERIFY(copied->hasImage());
    }

    void savingWritesAPngAndAnUnwritablePlaceIsRefused()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("card.png"));
        const QImage image =
            renderShareImage(QStringLiteral("E"), QStringLiteral("H"), QStringLiteral("B"), QStringLiteral("F"));
        QVERIFY(SharePresenter::savePicture(image, path));
        QCOMPARE(QImage(path).size(), QSize(2400, 1260));
        QVERIFY(!SharePresenter::savePicture(image, dir.filePath(QStringLiteral("missing/card.png"))));
        QVERIFY(!SharePresenter::savePicture(image, dir.path()));
    }
};

QTEST_MAIN(TestSharePicture)
#include "tst_SharePicture.moc"
