// SPDX-License-Identifier: GPL-3.0-or-later
// What the review window costs: opening it on a large deck until its first paint, exporting the
// deck as CSV and Anki text, and drawing one share picture. Prints the median processor time of
// several runs.
//     bench_review [--pictures DIR]   (DIR: where to save the three share pictures)
// Targets: opening with 10 000 cards ≤ 150 ms, exporting 10 000 cards ≤ 50 ms, one picture ≤ 60 ms.
#include "core/records/ReviewDeckStore.h"
#include "core/records/UsageEventStore.h"
#include "core/review/DeckExport.h"
#include "core/review/ReviewSession.h"
#include "core/setup/Preferences.h"
#include "core/support/Clock.h"
#include "core/support/QtScheduler.h"
#include "platform/null/MemoryPreferenceStore.h"
#include "ui/review/ReviewDeckWindowManager.h"
#include "ui/share/SharePayload.h"
#include "ui/share/SharePresenter.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>

using namespace tolvane;

namespace {

double threadCpuMilliseconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return now.tv_sec * 1.0e3 + now.tv_nsec / 1.0e6;
}

struct Figure
{
    double cpu;  // processor time of this thread: what the work itself costs
    double wall; // elapsed: on a machine shared with other work, mostly the others
};

// The medians of several runs.
Figure medianMilliseconds(int runs, const std::function<void()>& work)
{
    QList<double> cpu;
    QList<double> wall;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer timer;
        timer.start();
        const double start = threadCpuMilliseconds();
        work();
        cpu.append(threadCpuMilliseconds() - start);
        wall.append(timer.nsecsElapsed() / 1.0e6);
    }
    std::sort(cpu.begin(), cpu.end());
    std::sort(wall.begin(), wall.end());
    return {cpu.at(cpu.size() / 2), wall.at(wall.size() / 2)};
}

QByteArray shown(const Figure& f)
{
    return QStringLiteral("%1 ms (wall %2 ms)").arg(f.cpu, 0, 'f', 1).arg(f.wall, 0, 'f', 1).toUtf8();
}

// A deck file of n cards with every status and a spread of dates, as JSON.
QByteArray deckOf(int n)
{
    QList<ReviewCard> cards;
    cards.reserve(n);
    const QDateTime now = QDateTime::currentDateTimeUtc();
    for (int i = 0; i < n; ++i) {
        ReviewCard c;
        c.id = QUuid::createUuid();
        c.sourceText = QStringLiteral("word%1, \"quoted\"").arg(i);
        c.translation = QStringLiteral("перевод %1").arg(i);
        c.targetLanguage = QStringLiteral("ru");
        c.direction = DetectedDirection::englishToTarget;
        c.status = CardStatus(i % 3);
        c.dateAdded = now.addSecs(-qint64(i) * 600);
        c.nextNotificationDate = now;
        cards.append(c);
    }
    return ReviewDeckStore::encode(cards);
}

void measureDeck(int n)
{
    QTemporaryDir dir;
    QFile file(dir.filePath(QStringLiteral("review_deck.json")));
    file.open(QIODevice::WriteOnly);
    file.write(deckOf(n));
    file.close();
    SystemClock clock;
    QtScheduler scheduler;
    MemoryPreferenceStore store;
    Preferences preferences(store);
    UsageEventStore events(clock, dir.path());
    ReviewDeckStore deck(clock, scheduler, preferences, events, nullptr, dir.path());
    SharePresenter share;

    const Figure open = medianMilliseconds(7, [&] {
        ReviewDeckWindowManager windows(ReviewDeckContext{deck, preferences, clock, share});
        windows.show();
        windows.window()->repaint();
    });
    const Figure session = medianMilliseconds(7, [&] {
        ReviewSession s(deck);
        s.start();
        s.shuffleRemaining();
    });
    ExportSettings settings;
    QByteArray bytes;
    const Figure csv =
        medianMilliseconds(9, [&] { bytes = csvContent(filteredCards(deck.cards(), settings, clock.now())); });
    const qsizetype csvBytes = bytes.size();
    settings.format = ExportFormat::anki;
    settings.dateRange = ExportDateRange::last30Days;
    const Figure anki =
        medianMilliseconds(9, [&] { bytes = ankiContent(filteredCards(deck.cards(), settings, clock.now())); });
    std::printf("%d cards (%lld bytes of CSV), processor time per run:\n"
                "  open the window until painted   %s\n"
                "  session start and shuffle       %s\n"
                "  export as CSV, all cards        %s\n"
                "  export as Anki, last 30 days    %s\n",
                n, static_cast<long long>(csvBytes), shown(open).constData(), shown(session).constData(),
                shown(csv).constData(), shown(anki).constData());
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QStringList arguments = QCoreApplication::arguments().mid(1);
    QString pictures;
    if (arguments.size() == 2 && arguments.first() == QLatin1String("--pictures")) {
        pictures = arguments.at(1);
    } else if (!arguments.isEmpty()) {
        std::fprintf(stderr, "usage: bench_review [--pictures DIR]\n");
        return 2;
    }

    for (int n : {10000, 100000})
        measureDeck(n);

    ReviewCard card;
    card.sourceText = QStringLiteral("library");
    card.translation = QStringLiteral("图书馆");
    card.targetLanguage = QStringLiteral("zh-Hans");
    card.direction = DetectedDirection::englishToTarget;
    const LookupMilestone milestone{1000, QStringLiteral("Haus"), QStringLiteral("house"), QStringLiteral("de"),
                                    DetectedDirection::targetToEnglish};
    const Figure picture =
        medianMilliseconds(9, [&] { renderShareImage(flashcardShareContent(card, nullptr).picture); });
    const QString essay = QString(10000, u'w');
    const Figure longPicture = medianMilliseconds(5, [&] { renderShareImage(essay, essay, essay, essay); });
    std::printf("share picture 1200 x 630 at 2x   %s\nwith four 10 kB texts            %s\n",
                shown(picture).constData(), shown(longPicture).constData());

    if (!pictures.isEmpty()) {
        QDir().mkpath(pictures);
        const QList<std::pair<QString, VantorSharePayload>> payloads = {
            {QStringLiteral("share-card.png"), flashcardSharePayload(card, nullptr)},
            {QStringLiteral("share-milestone.png"), milestoneSharePayload(milestone)},
            {QStringLiteral("share-app.png"), appSharePayload()},
        };
        for (const auto& [name, payload] : payloads) {
            const QString path = QDir(pictures).filePath(name);
            if (SharePresenter::savePicture(payload.image, path))
                std::printf("saved %s\n", qPrintable(path));
        }
    }
    return 0;
}
