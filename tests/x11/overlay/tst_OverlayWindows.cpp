// SPDX-License-Identifier: GPL-3.0-or-later
// The cards on a real X server under a real window manager: the user's focused window keeps the
// focus through show, update, hide and clicks on a card; a card is above a full-screen window, on
// every desktop, without dark corners, and readable through the accessibility bus; a click on the
// passage card closes it and still arrives.
// Run under each window manager: scripts/virtual-desktop [--wm xfwm4] -- ctest -R tst_OverlayWindows
#include "core/overlay/HoverOverlayView.h"
#include "core/overlay/TranslationOverlayView.h"
#include "core/setup/Preferences.h"
#include "core/support/Clock.h"
#include "core/support/QtScheduler.h"
#include "fakes/FakePlatform.h"
#include "platform/linux/QtScreenService.h"
#include "platform/linux/ScreenCoordinates.h"
#include "platform/linux/hotkeys/QtEventMonitor.h"
#include "platform/null/MemoryPreferenceStore.h"
#include "ui/overlay/HoverOverlayWindow.h"
#include "ui/overlay/OverlayX11.h"
#include "ui/overlay/TranslationOverlayWindow.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QImage>
#include <QPixmap>
#include <QProcess>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>
#include <QWindow>

#include <cstdio>
#include <memory>

#include "x11/AccessibleTree.h"
#include "x11/TolvaneProcess.h"

#include <atspi/atspi.h>

using namespace tolvane;
using State = HoverOverlayView::State;

using namespace tolvane::testing;

namespace {

const QColor holderColor(255, 0, 255);

QString activeWindow()
{
    return runTool(QStringLiteral("xprop"), {QStringLiteral("-root"), QStringLiteral("_NET_ACTIVE_WINDOW")})
        .section(QLatin1Char('#'), 1)
        .section(QLatin1Char(','), 0, 0) // some managers add a second window
        .trimmed();
}
QString windowProperty(WId window, const QString& property)
{
    return runTool(QStringLiteral("xprop"), {QStringLiteral("-id"), QString::number(window), property});
}
bool isViewable(WId window)
{
    return runTool(QStringLiteral("xwininfo"), {QStringLiteral("-id"), QString::number(window)})
        .contains(QLatin1String("IsViewable"));
}

// Qt speaks logical pixels, xdotool device pixels.
double ratio()
{
    return QGuiApplication::primaryScreen()->devicePixelRatio();
}
QString devicePixels(int logical)
{
    return QString::number(int(logical * ratio()));
}

void clickLogicalAt(QPoint global)
{
    runTool(QStringLiteral("xdotool"), {QStringLiteral("mousemove"), devicePixels(global.x()), devicePixels(global.y()),
                                        QStringLiteral("click"), QStringLiteral("1")});
}
void pointAt(int x, int y)
{
    runTool(QStringLiteral("xdotool"), {QStringLiteral("mousemove"), devicePixels(x), devicePixels(y)});
}

// A pixel of a screen grab (in device pixels) at a logical point of the grabbed rectangle.
QColor pixelAt(const QImage& shot, QPoint logical)
{
    return shot.pixelColor(QPoint(int(logical.x() * ratio()), int(logical.y() * ratio())));
}

QImage screenAt(const QRect& rect)
{
    return QGuiApplication::primaryScreen()->grabWindow(0, rect.x(), rect.y(), rect.width(), rect.height()).toImage();
}

bool near(const QColor& a, const QColor& b, int tolerance)
{
    return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance &&
           std::abs(a.blue() - b.blue()) <= tolerance;
}

// Another application's window that holds the focus, drawn in magenta: this test program run
// again with --focus-holder [fullscreen].
class FocusHolder
{
public:
    explicit FocusHolder(bool fullScreen)
    {
        QStringList arguments{QStringLiteral("--focus-holder")};
        if (fullScreen)
            arguments << QStringLiteral("fullscreen");
        m_process.start(QCoreApplication::applicationFilePath(), arguments);
        m_process.waitForReadyRead(10000);
        m_window = QString::fromUtf8(m_process.readLine()).trimmed();
    }
    ~FocusHolder()
    {
        m_process.kill();
        m_process.waitForFinished(5000);
    }
    // Waits until the window manager has given the holder the focus.
    bool hasFocus() const
    {
        const QString id = QString::number(m_window.toULongLong(nullptr, 0));
        for (int i = 0; i < 100; ++i) {
            if (!m_window.isEmpty() && focusedWindow() == id &&
                activeWindow().toULongLong(nullptr, 16) == id.toULongLong())
                return true;
            QTest::qWait(50);
        }
        return false;
    }

    // Where the holder's window is on the screen.
    QRect geometry() const
    {
        const QString shell = runTool(QStringLiteral("xdotool"),
                                      {QStringLiteral("getwindowgeometry"), QStringLiteral("--shell"), m_window});
        QHash<QString, int> values;
        for (const QString& line : shell.split(QLatin1Char('\n')))
            values.insert(line.section(QLatin1Char('='), 0, 0), line.section(QLatin1Char('='), 1).toInt());
        const auto logical = [&](const char* key) { return int(values.value(QLatin1String(key)) / ratio()); };
        return {logical("X"), logical("Y"), logical("WIDTH"), logical("HEIGHT")};
    }

private:
    QProcess m_process;
    QString m_window;
};

int focusHolderMain(int argc, char** argv)
{
    QApplication app(argc, argv);
    QWidget window;
    window.setWindowTitle(QStringLiteral("Focus holder"));
    window.setStyleSheet(QStringLiteral("background: #ff00ff"));
    window.setAttribute(Qt::WA_StyledBackground);
    window.resize(600, 400);
    if (argc > 2 && QByteArray(argv[2]) == "fullscreen")
        window.showFullScreen();
    else
        window.show();
    window.activateWindow();
    std::printf("%llu\n", static_cast<unsigned long long>(window.winId()));
    std::fflush(stdout);
    return app.exec();
}

// This test program run again with --show-card: a word card for the accessibility bus to read.
int showCardMain(int argc, char** argv)
{
    QApplication app(argc, argv);
    QtScreenService screens;
    FakeTransliterator transliterator;
    HoverOverlayWindow word(screens, transliterator);
    HoverOverlayView view;
    view.state = State::liveLookup(QStringLiteral("house"), QStringLiteral("дом"));
    view.directionLabel = QStringLiteral("EN → RU");
    view.partOfSpeech = QStringLiteral("n.");
    view.onSpeak = [] {};
    word.show(QPointF(300, 500));
    word.update(view);
    std::printf("ready\n");
    std::fflush(stdout);
    return app.exec();
}

// "role: name" of every element the bus shows of the application with this process id.
QStringList accessibleTreeOf(qint64 pid)
{
    QList<Element> contents;
    forEachApplication([&](AtspiAccessible* application) {
        if (qint64(atspi_accessible_get_process_id(application, nullptr)) == pid)
            collect(application, contents);
    });
    QStringList tree;
    for (const Element& e : std::as_const(contents))
        tree.append(takeText(atspi_role_get_name(e.role)) + QStringLiteral(": ") + e.name);
    return tree;
}

} // namespace

class TestOverlayWindows : public QObject
{
    Q_OBJECT
    FakeTransliterator transliterator;
    QtScreenService screens;
    QtEventMonitor events;
    QtScheduler scheduler;
    SystemClock clock;
    MemoryPreferenceStore store;
    Preferences preferences{store};

    HoverOverlayView speakingView(int* spoken)
    {
        HoverOverlayView view;
        view.state = State::liveLookup(QStringLiteral("house"), QStringLiteral("дом"));
        view.directionLabel = QStringLiteral("EN → RU");
        view.partOfSpeech = QStringLiteral("n.");
        view.onSpeak = [spoken] { ++*spoken; };
        return view;
    }

private Q_SLOTS:
    void initTestCase()
    {
        if (QGuiApplication::platformName() != QLatin1String("xcb"))
            QSKIP("Needs an X server: run inside scripts/virtual-desktop");
        for (const char* tool : {"xdotool", "xprop", "xwininfo"}) {
            if (QStandardPaths::findExecutable(QString::fromLatin1(tool)).isEmpty())
                QSKIP(qPrintable(QStringLiteral("%1 is missing: run scripts/setup").arg(QLatin1String(tool))));
        }
        qInfo("window manager: %s, compositing: %s", qgetenv("TOLVANE_VIRTUAL_DESKTOP_WM").constData(),
              overlayx11::compositingManagerRuns() ? "yes" : "no");
    }

    void focusStaysWithTheUsersWindowThroughShowUpdateClickAndHide()
    {
        FocusHolder holder(false);
        QVERIFY(holder.hasFocus());
        const QString focus = focusedWindow();
        const QString active = activeWindow();
        const auto unchanged = [&](const char* step) {
            QTest::qWait(150);
            QVERIFY2(focusedWindow() == focus, step);
            QVERIFY2(activeWindow() == active, step);
        };

        pointAt(700, 300);
        HoverOverlayWindow word(screens, transliterator);
        word.prepare();
        word.show();
        QVERIFY(QTest::qWaitForWindowExposed(word.widget()));
        unchanged("word card shown");
        int spoken = 0;
        word.update(speakingView(&spoken));
        unchanged("word card updated");
        auto* speaker = word.widget()->findChild<QAbstractButton*>();
        QVERIFY(speaker && speaker->isVisible());
        clickLogicalAt(speaker->mapToGlobal(speaker->rect().center()));
        QTRY_COMPARE(spoken, 1);
        unchanged("speaker clicked");
        word.hide();
        unchanged("word card hidden");

        TranslationOverlayWindow passage(screens, preferences, clock, scheduler, events);
        passage.show(TranslationOverlayView{
            QStringLiteral("Good morning."), QStringLiteral("Доброе утро."), {}, {}, true, QStringLiteral("EN → RU")});
        QVERIFY(QTest::qWaitForWindowExposed(passage.widget()));
        unchanged("passage card shown");
        clickLogicalAt(passage.widget()->geometry().center());
        QTRY_VERIFY(!passage.isVisible());
        unchanged("passage card clicked");
    }

    void cardsAreMarkedAsFloatingOnEveryDesktop()
    {
        HoverOverlayWindow word(screens, transliterator);
        word.show();
        QVERIFY(QTest::qWaitForWindowExposed(word.widget()));
        const WId id = word.widget()->winId();
        QVERIFY(windowProperty(id, QStringLiteral("_NET_WM_WINDOW_TYPE")).contains(QLatin1String("TOOLTIP")));
        const QString hints = windowProperty(id, QStringLiteral("WM_HINTS"));
        QVERIFY2(hints.contains(QLatin1String("input focus: False")), qPrintable(hints));
        QVERIFY(windowProperty(id, QStringLiteral("_NET_WM_STATE")).contains(QLatin1String("_NET_WM_STATE_STICKY")));
        QVERIFY(windowProperty(id, QStringLiteral("_NET_WM_DESKTOP")).contains(QLatin1String("4294967295")));

        // Still there on another desktop.
        runTool(QStringLiteral("xdotool"), {QStringLiteral("set_desktop"), QStringLiteral("1")});
        QTest::qWait(300);
        QCOMPARE(runTool(QStringLiteral("xdotool"), {QStringLiteral("get_desktop")}), QStringLiteral("1"));
        QVERIFY(isViewable(id));
        runTool(QStringLiteral("xdotool"), {QStringLiteral("set_desktop"), QStringLiteral("0")});
        QTest::qWait(200);
        QVERIFY(isViewable(id));
    }

    void cardIsAboveAFullScreenWindowWithoutDarkCorners()
    {
        HoverOverlayWindow word(screens, transliterator);
        word.prepare();
        {
            FocusHolder holder(true);
            QVERIFY(holder.hasFocus());
            QTest::qWait(300);
            pointAt(300, 300);
            word.show();
            HoverOverlayView view;
            view.state = State::noLabel();
            word.update(view);
            QVERIFY(QTest::qWaitForWindowExposed(word.widget()));
            QTest::qWait(300);
            const QRect card = QRect(word.widget()->mapToGlobal(QPoint(0, 0)), word.widget()->size());
            const QImage shot = screenAt(card);
            const QColor middle = pixelAt(shot, QPoint(card.width() / 2, card.height() / 2));
            QVERIFY2(!near(middle, holderColor, 60), qPrintable(middle.name()));
            shot.save(QStringLiteral(TOLVANE_SOURCE_DIR "/out/cards/screen-above-fullscreen-%1@%2x.png")
                          .arg(QString::fromLocal8Bit(qgetenv("TOLVANE_VIRTUAL_DESKTOP_WM")))
                          .arg(ratio()));
            word.hide();
        }
        // Over another window, the pixels just outside the rounded corners are that window's: no
        // dark corners, with a compositor (translucent card) or without one (shaped card).
        FocusHolder holder(false);
        QVERIFY(holder.hasFocus());
        const QRect behind = holder.geometry();
        QVERIFY(behind.width() >= 400);
        const QPoint pointer = behind.topLeft() + QPoint(40, 40);
        pointAt(pointer.x(), pointer.y());
        word.show();
        QVERIFY(QTest::qWaitForWindowExposed(word.widget()));
        QTest::qWait(300);
        const QRect window = QRect(word.widget()->mapToGlobal(QPoint(0, 0)), word.widget()->size());
        const QImage shot = screenAt(window.adjusted(-20, -20, 20, 20));
        QDir().mkpath(QStringLiteral(TOLVANE_SOURCE_DIR "/out/cards"));
        shot.save(QStringLiteral(TOLVANE_SOURCE_DIR "/out/cards/screen-%1@%2x.png")
                      .arg(QString::fromLocal8Bit(qgetenv("TOLVANE_VIRTUAL_DESKTOP_WM")))
                      .arg(ratio()));
        // The card without its shadow, in the picture's coordinates.
        const QRect card = screen::toQt(word.frame()).toRect().translated(-window.topLeft() + QPoint(20, 20));
        const QRect device(QPoint(int(card.x() * ratio()), int(card.y() * ratio())), card.size() * ratio());
        for (const QPoint corner : {device.topLeft(), device.topRight(), device.bottomLeft(), device.bottomRight()}) {
            const QColor pixel = shot.pixelColor(corner);
            QVERIFY2(near(pixel, holderColor, 50), qPrintable(pixel.name()));
        }
        const QColor middle = pixelAt(shot, card.center());
        QVERIFY2(!near(middle, holderColor, 60), qPrintable(middle.name()));
    }

    void wordCardIsReadableThroughTheAccessibilityBus()
    {
        if (atspi_init() < 0)
            QSKIP("No accessibility bus: run inside scripts/virtual-desktop");
        atspi_set_timeout(2000, 2000);
        QProcess card;
        card.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--show-card")});
        QVERIFY(card.waitForReadyRead(10000));
        QStringList tree;
        const QStringList expected{QStringLiteral("label: дом"), QStringLiteral("label: house"),
                                   QStringLiteral("label: n."), QStringLiteral("push button: Speak"),
                                   QStringLiteral("label: EN → RU")};
        const auto complete = [&] {
            tree = accessibleTreeOf(card.processId());
            return std::ranges::all_of(expected, [&](const QString& e) { return tree.contains(e); });
        };
        QTRY_VERIFY2_WITH_TIMEOUT(complete(), qPrintable(tree.join(QStringLiteral(" | "))), 10000);
        card.kill();
        card.waitForFinished(5000);
    }

    void clickOnThePassageCardClosesItAndStillArrives()
    {
        QWidget tolvaneWindow;
        auto* button = new QPushButton(QStringLiteral("Review"), &tolvaneWindow);
        button->resize(200, 60);
        tolvaneWindow.resize(300, 100);
        tolvaneWindow.move(900, 500);
        tolvaneWindow.show();
        QVERIFY(QTest::qWaitForWindowExposed(&tolvaneWindow));
        QSignalSpy clicked(button, &QPushButton::clicked);

        pointAt(200, 200);
        TranslationOverlayWindow passage(screens, preferences, clock, scheduler, events);
        const TranslationOverlayView view{QStringLiteral("Good morning."), QStringLiteral("Доброе утро."), {}, {}, true,
                                          QStringLiteral("EN → RU")};
        passage.show(view);
        QVERIFY(QTest::qWaitForWindowExposed(passage.widget()));
        // A click on another of Tolvane's windows: the card closes and the button is clicked.
        clickLogicalAt(button->mapToGlobal(button->rect().center()));
        QTRY_COMPARE(clicked.count(), 1);
        QVERIFY(!passage.isVisible());

        // A click on the card itself closes it, and the card still receives the press.
        passage.show(view);
        QVERIFY(QTest::qWaitForWindowExposed(passage.widget()));
        int presses = 0;
        struct PressCounter : QObject
        {
            int* count;
            explicit PressCounter(int* c)
                : count(c)
            {}
            bool eventFilter(QObject*, QEvent* event) override
            {
                if (event->type() == QEvent::MouseButtonPress)
                    ++*count;
                return false;
            }
        } counter(&presses);
        passage.widget()->windowHandle()->installEventFilter(&counter);
        clickLogicalAt(passage.widget()->geometry().center());
        QTRY_VERIFY(!passage.isVisible());
        QVERIFY(presses >= 1);
    }
};

int main(int argc, char** argv)
{
    if (argc > 1 && QByteArray(argv[1]) == "--focus-holder")
        return focusHolderMain(argc, argv);
    if (argc > 1 && QByteArray(argv[1]) == "--show-card")
        return showCardMain(argc, argv);
    QApplication app(argc, argv);
    TestOverlayWindows test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_OverlayWindows.moc"
