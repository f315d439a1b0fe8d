// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/support/Lifetime.h"

#include <QTest>

#include <optional>

using namespace tolvane;

class TestLifetime : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void watchesTakenAtAnyTimeGoDarkWhenTheOwnerEndsOrGoes()
    {
        std::optional<Lifetime> owner(std::in_place);
        const Lifetime::Watch early = owner->watch();
        const Lifetime::Watch copy = early;
        QVERIFY(early && copy);
        owner.reset();
        QVERIFY(!early && !copy);

        Lifetime ending;
        const Lifetime::Watch watch = ending.watch();
        ending.end();
        QVERIFY(!watch);
        QVERIFY(!ending.watch()); // a callback made after the end never runs either
    }
};

QTEST_GUILESS_MAIN(TestLifetime)
#include "tst_Lifetime.moc"
