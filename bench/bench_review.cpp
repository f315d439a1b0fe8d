// SPDX-License-Identifier: GPL-3.0-or-later
// What the review window costs: opening it on a large deck until its first paint, exporting the
// deck as CSV and Anki text, and drawing one share picture. Prints the median of several runs.
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
#include <functional>

using namespace tolvane;

namespace {

double medianMilliseconds(int runs, const std::function<void()>& work)
{
    QList<double> times;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer timer;
        timer.start();
        work();
        times.append(timer.nsecsElapsed() / 1.0e6);
    }
    std::sort(times.begin(), times.end());
    return times.at(times.size() / 2);
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

    const double open = medianMilliseconds(7, [&] {
        ReviewDeckWindowManager windows(ReviewDeckContext{deck, preferences, clock, share});
        windows.show();
        windows.window()->repaint();
    });
    const double session = medianMilliseconds(7, [&] {
        ReviewSession s(deck);
        s.start();
        s.shuffleRemaining();
    });
    ExportSettings settings;
    QByteArray bytes;
    const double csv =
        medianMilliseconds(9, [&] { bytes = csvContent(filteredCards(deck.cards(), settings, clock.now())); });
    const qsizetype csvBytes = bytes.size();
    settings.format = ExportFormat::anki;
    settings.dateRange = ExportDateRange::last30Days;
    const double anki =
        medianMilliseconds(9, [&] { bytes = ankiContent(filteredCards(deck.cards(), settings, clock.now())); });
    std::printf("%7d cards: open window until painted %7.1f ms | session start + shuffle %6.1f ms | export CSV %6.1f "
                "ms (%lld bytes) | export Anki, last 30 days %6.1f ms\n",
                n, open, session, csv, static_cast<long long>(csvBytes), anki);
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
    const double picture =
        medianMilliseconds(9, [&] { renderShareImage(flashcardShareContent(card, nullptr).picture); });
    const QString essay = QString(10000, u'w');
    const double longPicture = medianMilliseconds(5, [&] { renderShareImage(essay, essay, essay, essay); });
    std::printf("share picture 1200 x 630 at 2x: %6.1f ms | with four 10 kB texts: %6.1f ms\n", picture, longPicture);

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
