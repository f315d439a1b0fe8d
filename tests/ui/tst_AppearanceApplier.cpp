// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/AppearanceApplier.h"

#include "core/setup/Preferences.h"
#include "platform/null/MemoryPreferenceStore.h"

#include <QApplication>
#include <QTest>

using namespace tolvane;

class TestAppearanceApplier : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void followsThePreferenceAndReturnsToTheDesktopsLook()
    {
        const QColor desktopWindow = QApplication::palette().color(QPalette::Window);
        AppearanceApplier applier;
        MemoryPreferenceStore store;
        Preferences prefs(store);

        prefs.setString(PreferenceKey::appearanceMode, QStringLiteral("dark"));
        applier.applyFrom(prefs);
        QVERIFY(QApplication::palette().color(QPalette::Window).lightness() < 80);
        QVERIFY(QApplication::palette().color(QPalette::WindowText).lightness() > 200);

        prefs.setString(PreferenceKey::appearanceMode, QStringLiteral("light"));
        applier.applyFrom(prefs);
        QVERIFY(QApplication::palette().color(QPalette::Window).lightness() > 200);

        // Anything unknown follows the desktop again.
        prefs.setString(PreferenceKey::appearanceMode, QStringLiteral("midnight"));
        applier.applyFrom(prefs);
        QCOMPARE(QApplication::palette().color(QPalette::Window), desktopWindow);
    }
};

QTEST_MAIN(TestAppearanceApplier)
#include "tst_AppearanceApplier.moc"
