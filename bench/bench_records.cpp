// SPDX-License-Identifier: GPL-3.0-or-later
// Figures for the record files: loading a file of N records, one change (which rewrites the whole
// file), what of a change is encoding and what is the write, and the two day queries of the usage
// log. Usage: bench_records [directory]   (default: a temporary directory under $TMPDIR)
#include "core/records/ConfusionLogStore.h"
#include "core/records/ReviewDeckStore.h"
#include "core/records/UsageEventStore.h"
#include "core/setup/Preferences.h"
#include "core/support/Clock.h"
#include "core/support/Logging.h"
#include "core/support/QtScheduler.h"
#include "fakes/FakeScheduler.h"
#include "platform/null/MemoryPreferenceStore.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <QFile>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

#include <unistd.h>

using namespace tolvane;

TOLVANE_DEFINE_LOG(lcBench, "bench_records")

namespace {

// The atomic replacement taken apart: writing and renaming, and the flush to the disk between them.
struct WriteParts
{
    double writeAndRenameMs = 0;
    double syncMs = 0;
};

WriteParts timeWriteParts(const QString& path, const QByteArray& bytes, int runs)
{
    std::vector<double> writes;
    std::vector<double> syncs;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer timer;
        timer.start();
        QFile file(path + QStringLiteral(".tmp"));
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return {};
        file.write(bytes);
        file.flush();
        const qint64 written = timer.nsecsElapsed();
        ::fdatasync(file.handle());
        const qint64 synced = timer.nsecsElapsed();
        file.close();
        std::rename(QFile::encodeName(file.fileName()).constData(), QFile::encodeName(path).constData());
        writes.push_back(double(timer.nsecsElapsed() - synced + written) / 1.0e6);
        syncs.push_back(double(synced - written) / 1.0e6);
    }
    std::sort(writes.begin(), writes.end());
    std::sort(syncs.begin(), syncs.end());
    return {writes[writes.size() / 2], syncs[syncs.size() / 2]};
}

double medianMs(int runs, const std::function<void()>& setup, const std::function<void()>& measured)
{
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        if (setup)
            setup();
        QElapsedTimer timer;
        timer.start();
        measured();
        times.push_back(double(timer.nsecsElapsed()) / 1.0e6);
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

int runsFor(qsizetype n)
{
    return n >= 100000 ? 7 : n >= 10000 ? 15 : 41;
}

void printRow(const char* store, qsizetype n, double loadMs, double changeMs, double encodeMs, WriteParts write,
              qint64 bytes)
{
    std::printf("%-18s %7lld %10.3f %10.3f %10.3f %10.3f %10.3f %10.1f\n", store, static_cast<long long>(n), loadMs,
                changeMs, encodeMs, write.writeAndRenameMs, write.syncMs, double(bytes) / 1024.0);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.warning=false"));
    QTemporaryDir temporary;
    const QString base = argc > 1 ? QString::fromLocal8Bit(argv[1]) : temporary.path();
    QtScheduler scheduler;
    MemoryPreferenceStore preferenceStore;
    Preferences preferences(preferenceStore);
    preferences.setString(PreferenceKey::targetLanguage, QStringLiteral("de"));

    std::printf("Record files in %s (median of several runs; ms; one change = the store operation "
                "including the atomic rewrite)\n",
                qPrintable(base));
    std::printf("%-18s %7s %10s %10s %10s %10s %10s %10s\n", "store", "records", "load", "change", "encode", "write",
                "fdatasync", "file KiB");

    for (const qsizetype n : {qsizetype(100), qsizetype(1000), qsizetype(10000), qsizetype(100000)}) {
        const QString dir = base + QStringLiteral("/n%1").arg(n);
        QDir(dir).removeRecursively();
        // A second passes at every reading, so events spread over many days.
        FakeClock clock(QDateTime(QDate(2025, 1, 1), QTime(8, 0), Qt::UTC));
        clock.setStepPerReading(std::chrono::seconds(1));
        const int runs = runsFor(n);

        // Review deck: n distinct words; a change is the answer to one card.
        {
            UsageEventStore events(clock, dir + QStringLiteral("/deck-events"));
            QList<ReviewCard> cards;
            {
                ReviewDeckStore deck(clock, scheduler, preferences, events, nullptr, dir);
                for (qsizetype i = 0; i < n; ++i) {
                    ReviewCard card;
                    card.id = QUuid::createUuid();
                    card.sourceText = QStringLiteral("word%1").arg(i);
                    card.translation = QStringLiteral("Wort %1").arg(i);
                    card.targetLanguage = QStringLiteral("de");
                    card.direction = DetectedDirection::englishToTarget;
                    card.nextNotificationDate = clock.now();
                    card.dateAdded = clock.now();
                    cards.append(card);
                }
                JsonRecordFile(dir, QStringLiteral("review_deck.json"), &lcBench)
                    .write(ReviewDeckStore::encode(cards))
                    .ok();
            }
            const double load =
                medianMs(runs, {}, [&] { ReviewDeckStore deck(clock, scheduler, preferences, events, nullptr, dir); });
            ReviewDeckStore deck(clock, scheduler, preferences, events, nullptr, dir);
            const QUuid middle = deck.cards().at(n / 2).id;
            // The usage event of an answer is a change of the usage log, measured below.
            const double change = medianMs(runs, {}, [&] { deck.markShown(middle, 3600); });
            const double encode = medianMs(runs, {}, [&] { ReviewDeckStore::encode(deck.cards()); });
            const QByteArray bytes = ReviewDeckStore::encode(deck.cards());
            const WriteParts write = timeWriteParts(dir + QStringLiteral("/review_deck.json"), bytes, runs);
            printRow("ReviewDeckStore", n, load, change, encode, write, bytes.size());
        }

        // Confusion log: n distinct words; a change is one more look-up of a known word.
        {
            QList<ConfusionLogEntry> entries;
            for (qsizetype i = 0; i < n; ++i)
                entries.append({QStringLiteral("word%1").arg(i), QStringLiteral("Wort %1").arg(i), 1 + i % 7,
                                clock.now(), QStringLiteral("Firefox")});
            (void)JsonRecordFile(dir, QStringLiteral("confusion_log.json"), &lcBench)
                .write(ConfusionLogStore::encode(entries))
                .ok();
            const double load = medianMs(runs, {}, [&] { ConfusionLogStore log(clock, dir); });
            ConfusionLogStore log(clock, dir);
            const QString word = QStringLiteral("WORD%1").arg(n - 1); // the worst case: the last entry
            const double change =
                medianMs(runs, {}, [&] { log.recordLookup(word, QStringLiteral("Wort"), QStringLiteral("Kate")); });
            const double encode = medianMs(runs, {}, [&] { ConfusionLogStore::encode(log.entries()); });
            const QByteArray bytes = ConfusionLogStore::encode(log.entries());
            const WriteParts write = timeWriteParts(dir + QStringLiteral("/confusion_log.json"), bytes, runs);
            printRow("ConfusionLogStore", n, load, change, encode, write, bytes.size());
        }

        // Usage events: n events over about a year; a change is one more event.
        {
            QList<UsageEvent> events;
            QDateTime when(QDate(2025, 1, 1), QTime(8, 0), Qt::UTC);
            for (qsizetype i = 0; i < n; ++i) {
                events.append({i % 5 ? UsageEventType::lookup : UsageEventType::review, when});
                when = when.addMSecs(365LL * 86400000 / n + 137);
            }
            (void)JsonRecordFile(dir, QStringLiteral("usage_events.json"), &lcBench)
                .write(UsageEventStore::encode(events))
                .ok();
            const double load = medianMs(runs, {}, [&] { UsageEventStore store(clock, dir); });
            UsageEventStore store(clock, dir);
            const double change = medianMs(runs, {}, [&] { store.record(UsageEventType::lookup); });
            const double encode = medianMs(runs, {}, [&] { UsageEventStore::encode(store.events()); });
            const QByteArray bytes = UsageEventStore::encode(store.events());
            const WriteParts write = timeWriteParts(dir + QStringLiteral("/usage_events.json"), bytes, runs);
            printRow("UsageEventStore", n, load, change, encode, write, bytes.size());

            if (n == 100000) {
                clock.setNow(when);
                qint64 days = 0;
                qint64 streak = 0;
                const double dayCount = medianMs(runs, {}, [&] { days = store.lookupDayCount(); });
                const double currentStreak = medianMs(runs, {}, [&] { streak = store.currentStreak(); });
                std::printf("\nOn %lld usage events: lookupDayCount %.3f ms (%lld days), currentStreak %.3f ms "
                            "(%lld days)\n",
                            static_cast<long long>(store.events().size()), dayCount, static_cast<long long>(days),
                            currentStreak, static_cast<long long>(streak));
            }
        }
        QDir(dir).removeRecursively();
    }
    std::printf("\n'change' is one store operation with its atomic rewrite. Its parts: 'encode', the whole list "
                "(the usage log appends to an encoded copy instead); 'write', the temporary file and the rename; "
                "'fdatasync', the flush to the disk between them.\n");
    return 0;
}
