// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/hotkeys/QtEventMonitor.h"

#include <QAction>
#include <QLineEdit>
#include <QProcess>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>
#include <QWindow>

using namespace tolvane;

namespace {

struct Window
{
    QLineEdit edit;
    QAction quit{QStringLiteral("Quit")};
    Window()
    {
        quit.setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
        edit.addAction(&quit);
        edit.show();
        edit.activateWindow();
    }
    // Through the window, as the display's events arrive, not straight to the widget.
    QWindow* handle() const { return edit.windowHandle(); }
};

} // namespace

class TestQtEventMonitor : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void keysInTolvanesConvention()
    {
        Window window;
        QVERIFY(QTest::qWaitForWindowExposed(&window.edit));
        QtEventMonitor monitor;
        QSignalSpy triggered(&window.quit, &QAction::triggered);
        QList<KeyEvent> seen;
        const auto token = monitor.addLocalKeyMonitor([&](const KeyEvent& e) {
            seen.append(e);
            return e.type == KeyEvent::Type::keyDown;
        });

        QTest::keyClick(window.handle(), Qt::Key_K, Qt::AltModifier);
        QTest::keyPress(window.handle(), Qt::Key_Control, Qt::NoModifier);
        QTest::keyPress(window.handle(), Qt::Key_Alt, Qt::ControlModifier);
        QTest::keyRelease(window.handle(), Qt::Key_Alt, Qt::ControlModifier | Qt::AltModifier);
        QTest::keyRelease(window.handle(), Qt::Key_Control, Qt::ControlModifier);
        QTest::keyClick(window.handle(), Qt::Key_5, Qt::KeypadModifier);
        QTest::keyClick(window.handle(), Qt::Key_Q, Qt::ControlModifier);

        // QTest presses the modifiers it is given before the key, as a user would.
        QStringList told;
        for (const KeyEvent& e : seen) {
            told << QStringLiteral("%1%2/%3")
                        .arg(e.type == KeyEvent::Type::keyDown ? QStringLiteral("down ") : QStringLiteral("flags "))
                        .arg(e.keyCode)
                        .arg(e.modifierFlags);
        }
        QCOMPARE(told, (QStringList{"flags 58/2048", "down 40/2048", "flags 58/0",    // ⌥K
                                    "flags 59/4096", "flags 58/6144",                 // ⌃ then ⌥ down
                                    "flags 58/4096", "flags 59/0",                    // ⌥ then ⌃ up
                                    "down 87/0",                                      // Keypad 5
                                    "flags 59/4096", "down 12/4096", "flags 59/0"})); // ⌃Q
        // Swallowed keys reach neither the field nor the window's shortcuts.
        QCOMPARE(window.edit.text(), QString());
        QCOMPARE(triggered.size(), 0);

        monitor.removeMonitor(token);
        QTest::keyClick(window.handle(), Qt::Key_K);
        QCOMPARE(window.edit.text(), QStringLiteral("k"));
        QCOMPARE(seen.size(), told.size());
    }

    void realKeysAreNamedByPosition()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("xdotool")).isEmpty())
            QSKIP("xdotool is missing");
        Window window;
        QVERIFY(QTest::qWaitForWindowActive(&window.edit));
        QtEventMonitor monitor;
        QList<QPair<quint32, quint32>> downs; // key code, modifier flags
        monitor.addLocalKeyMonitor([&](const KeyEvent& e) {
            if (e.type == KeyEvent::Type::keyDown)
                downs.append({e.keyCode, e.modifierFlags});
            return true;
        });
        // Shift+1 types "!", but the key is still the 1 key.
        QProcess::execute(QStringLiteral("xdotool"), {QStringLiteral("key"), QStringLiteral("shift+1"),
                                                      QStringLiteral("super+l"), QStringLiteral("ctrl+alt+k")});
        // Super is Command.
        QTRY_COMPARE(downs, (QList<QPair<quint32, quint32>>{{18, 512}, {37, 256}, {40, 6144}}));
    }

    void clicksAndKeyPresses()
    {
        Window window;
        QVERIFY(QTest::qWaitForWindowExposed(&window.edit));
        QtEventMonitor monitor;
        int clicks = 0, presses = 0;
        monitor.addClickMonitor([&] { ++clicks; });
        const auto keys = monitor.addKeyPressMonitor([&] { ++presses; });
        QTest::mouseClick(window.handle(), Qt::LeftButton, {}, QPoint(5, 5));
        QTest::keyClick(window.handle(), Qt::Key_A);
        QCOMPARE(clicks, 1);
        QCOMPARE(presses, 1);
        QCOMPARE(window.edit.text(), QStringLiteral("a")); // watching does not swallow
        monitor.removeMonitor(keys);
        QTest::keyClick(window.handle(), Qt::Key_B);
        QCOMPARE(presses, 1);
    }
};

QTEST_MAIN(TestQtEventMonitor)
#include "tst_QtEventMonitor.moc"
