// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/capture/SelectedText.h"
#include "fakes/FakePlatform.h"

#include <QTest>

using namespace tolvane;

class TestSelectedText : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void readsTheFocusedElementsSelectionAsIs()
    {
        FakeAccessibilityService service;
        QCOMPARE(selectedText(service), std::nullopt);

        auto focused = std::make_shared<FakeAccessibleElement>();
        service.focused = focused;
        QCOMPARE(selectedText(service), std::nullopt);

        // Trimming is the caller's business: whitespace-only selections come back whole.
        focused->selection = QStringLiteral("  a passage\n");
        QCOMPARE(selectedText(service), QStringLiteral("  a passage\n"));
        // The element under the pointer plays no part.
        service.elementUnderPointer = std::make_shared<FakeAccessibleElement>();
        QCOMPARE(selectedText(service), QStringLiteral("  a passage\n"));
        QVERIFY(service.pointsAsked.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestSelectedText)
#include "tst_SelectedText.moc"
