// SPDX-License-Identifier: GPL-3.0-or-later
// What planning the reminders costs: choosing the cards of a large deck, and a whole plan of 60
// reminders written through the desktop centre's pending file.
#include "core/review/NotificationScheduler.h"
#include "core/setup/Preferences.h"
#include "fakes/FakeNotificationServer.h"
#include "fakes/FakeScheduler.h"
#include "platform/linux/notifications/DesktopNotificationCenter.h"
#include "platform/null/MemoryPreferenceStore.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTextStream>

using namespace tolvane;

namespace {

QList<ReviewCard> deckOf(int size, const QDateTime& now)
{
    QList<ReviewCard> deck;
    for (int i = 0; i < size; ++i) {
        ReviewCard card;
        card.id = QUuid::createUuid();
        card.sourceText = QStringLiteral("word%1").arg(i);
        card.translation = QStringLiteral("translation of word %1").arg(i);
        card.status = i % 5 == 0 ? CardStatus::knowIt : CardStatus::new_;
        if (i % 3 == 0)
            card.lastShownDate = now.addSecs(-i * 60);
        deck.append(card);
    }
    return deck;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    const QDateTime now = QDateTime::currentDateTimeUtc();

    for (int size : {100, 10000}) {
        const QList<ReviewCard> deck = deckOf(size, now);
        const int rounds = size > 1000 ? 50 : 2000;
        QElapsedTimer timer;
        timer.start();
        qsizetype slots = 0;
        for (int i = 0; i < rounds; ++i)
            slots += NotificationScheduler::reminderCards(deck).size();
        out << "reminderCards, deck of " << size << ": " << double(timer.nsecsElapsed()) / rounds / 1000.0
            << " µs per call (" << slots / rounds << " slots)\n";
    }

    QTemporaryDir dir;
    MemoryPreferenceStore store;
    Preferences preferences(store);
    FakeScheduler scheduler; // timers never fire: a plan's renewal is days away
    SystemClock clock;
    const QString path = dir.filePath(QStringLiteral("pending_reminders.json"));
    DesktopNotificationCenter center(std::make_unique<FakeNotificationServer>(), path, scheduler, clock,
                                     [] { return false; });
    const QList<ReviewCard> deck = deckOf(10000, now);
    NotificationScheduler planner(center, preferences, scheduler, [&] { return deck; });
    const int plans = 20;
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < plans; ++i) {
        planner.reschedule();
        scheduler.runPosted();
    }
    out << "reschedule into the desktop centre, deck of 10000: " << double(timer.nsecsElapsed()) / plans / 1e6
        << " ms per plan of 60 reminders; pending file " << QFileInfo(path).size() << " bytes\n";
    return 0;
}
