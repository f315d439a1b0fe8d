// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A writer process killed at random moments: a forked child records look-ups into the three
// stores as fast as it can and reports each change once its store call has returned; the parent
// kills it with SIGKILL after a random delay and then checks that every file still decodes and
// holds every reported change. Shared by the test (a few seconds) and the long benchmark run.

#include "core/records/ConfusionLogStore.h"
#include "core/records/ReviewDeckStore.h"
#include "core/records/UsageEventStore.h"
#include "core/setup/Preferences.h"
#include "core/support/Clock.h"
#include "core/support/Scheduler.h"
#include "platform/null/MemoryPreferenceStore.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QStringList>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tolvane::crashtest {

struct Report
{
    int kills = 0;
    int undecodableFiles = 0;
    int lostChanges = 0;
    int interruptedWrites = 0; // kills that left a temporary file behind: the kill fell inside a write
    qint64 reportedChanges = 0;
    QStringList problems;
};

class DroppingScheduler final : public Scheduler
{
public:
    void post(Task) override {}
    TimerHandle singleShot(Duration, Task) override { return {}; }
    TimerHandle repeating(Duration, Task) override { return {}; }
};

inline QString wordNumber(qsizetype n)
{
    return QStringLiteral("w%1").arg(n);
}

inline void report(int fd, char store, qsizetype count)
{
    char line[32];
    const int length = std::snprintf(line, sizeof line, "%c %lld\n", store, static_cast<long long>(count));
    // Lines shorter than PIPE_BUF reach the pipe whole or not at all.
    if (::write(fd, line, size_t(length)) != length)
        ::_exit(3);
}

// The child: continues from whatever the files hold, the way the application starts after a crash.
[[noreturn]] inline void writeUntilKilled(const QString& dir, int reportFd, int rounds)
{
    SystemClock clock;
    DroppingScheduler scheduler;
    MemoryPreferenceStore preferenceStore;
    Preferences preferences(preferenceStore);
    UsageEventStore events(clock, dir);
    ConfusionLogStore log(clock, dir);
    ReviewDeckStore deck(clock, scheduler, preferences, events, nullptr, dir);
    for (int round = 0; round < rounds; ++round) {
        events.record(UsageEventType::lookup);
        report(reportFd, 'u', events.events().size());
        log.recordLookup(wordNumber(log.entries().size()), QStringLiteral("t"), QStringLiteral("App"));
        report(reportFd, 'c', log.entries().size());
        deck.addCard(wordNumber(deck.cards().size()), QStringLiteral("t"), true, QStringLiteral("de"),
                     DetectedDirection::englishToTarget);
        report(reportFd, 'd', deck.cards().size());
    }
    ::_exit(0);
}

// What a write cut short leaves beside a record file: the temporary file it was filling.
inline QStringList interruptedWriteFiles(const QString& dir)
{
    QStringList leftovers;
    for (const QString& name : QDir(dir).entryList({QStringLiteral("*.json.*")}, QDir::Files)) {
        if (!name.contains(QStringLiteral(".corrupt-")))
            leftovers << name;
    }
    return leftovers;
}

inline QByteArray readAll(const QString& path, bool* exists)
{
    QFile file(path);
    *exists = file.exists();
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Checks one file against the count its store last reported; words are checked in order.
template <typename Decode, typename WordAt>
void check(Report& out, const QString& dir, const QString& name, qsizetype reported, Decode decode, WordAt wordAt)
{
    bool exists = false;
    const QByteArray bytes = readAll(dir + QLatin1Char('/') + name, &exists);
    if (!exists) {
        if (reported > 0) {
            out.lostChanges += int(reported);
            out.problems << QStringLiteral("%1 missing after %2 reported changes").arg(name).arg(reported);
        }
        return;
    }
    const auto records = decode(bytes);
    if (!records.ok()) {
        ++out.undecodableFiles;
        out.problems << QStringLiteral("%1 does not decode: %2").arg(name, records.error().message);
        return;
    }
    const auto& list = records.value();
    if (list.size() < reported) {
        out.lostChanges += int(reported - list.size());
        out.problems
            << QStringLiteral("%1 holds %2 records, %3 were reported").arg(name).arg(list.size()).arg(reported);
    }
    for (qsizetype i = 0; i < std::min(list.size(), reported); ++i) {
        if (!wordAt(list.at(i), i)) {
            ++out.lostChanges;
            out.problems << QStringLiteral("%1 record %2 is not the one written").arg(name).arg(i);
            return;
        }
    }
}

// Kills writers until maxKills or the time budget is used up. A new directory every few dozen
// kills keeps the files, and so each write, small.
inline Report run(const QString& baseDir, int maxKills, std::chrono::milliseconds budget, quint32 seed,
                  int maxDelayMicroseconds = 25000)
{
    Report out;
    QRandomGenerator random(seed);
    QElapsedTimer elapsed;
    elapsed.start();
    QString dir;
    for (int kill = 0; kill < maxKills && elapsed.elapsed() < budget.count(); ++kill) {
        if (kill % 40 == 0) {
            dir = baseDir + QStringLiteral("/round%1").arg(kill / 40);
            QDir().mkpath(dir);
        }
        // Whatever is left over now is from an earlier kill; what is there after this one is not.
        for (const QString& leftover : interruptedWriteFiles(dir))
            QFile::remove(dir + QLatin1Char('/') + leftover);
        int pipeFds[2];
        if (::pipe(pipeFds) != 0) {
            out.problems << QStringLiteral("no pipe");
            return out;
        }
        std::fflush(nullptr);
        const pid_t child = ::fork();
        if (child < 0) {
            out.problems << QStringLiteral("no fork");
            return out;
        }
        if (child == 0) {
            ::close(pipeFds[0]);
            writeUntilKilled(dir, pipeFds[1], 400);
        }
        ::close(pipeFds[1]);
        ::usleep(useconds_t(random.bounded(maxDelayMicroseconds + 1)));
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        ++out.kills;

        qsizetype reportedEvents = 0;
        qsizetype reportedEntries = 0;
        qsizetype reportedCards = 0;
        QByteArray lines;
        char buffer[4096];
        for (ssize_t n; (n = ::read(pipeFds[0], buffer, sizeof buffer)) > 0;)
            lines.append(buffer, n);
        ::close(pipeFds[0]);
        for (const QByteArray& line : lines.split('\n')) {
            if (line.size() < 3)
                continue;
            const qsizetype count = line.mid(2).toLongLong();
            switch (line.at(0)) {
            case 'u':
                reportedEvents = count;
                break;
            case 'c':
                reportedEntries = count;
                break;
            case 'd':
                reportedCards = count;
                break;
            }
            ++out.reportedChanges;
        }

        const QDir directory(dir);
        if (!interruptedWriteFiles(dir).isEmpty())
            ++out.interruptedWrites;
        const QStringList copies = directory.entryList({QStringLiteral("*.corrupt-*")}, QDir::AllEntries);
        if (!copies.isEmpty()) {
            out.undecodableFiles += int(copies.size());
            out.problems << QStringLiteral("recovery copies made by the writer: %1").arg(copies.join(QLatin1Char(' ')));
        }
        check(out, dir, QStringLiteral("usage_events.json"), reportedEvents, &UsageEventStore::decode,
              [](const UsageEvent& event, qsizetype) { return event.type == UsageEventType::lookup; });
        check(out, dir, QStringLiteral("confusion_log.json"), reportedEntries, &ConfusionLogStore::decode,
              [](const ConfusionLogEntry& entry, qsizetype i) { return entry.word == wordNumber(i); });
        check(
            out, dir, QStringLiteral("review_deck.json"), reportedCards,
            [](const QByteArray& bytes) { return ReviewDeckStore::decode(bytes, QDateTime::currentDateTimeUtc()); },
            [](const ReviewCard& card, qsizetype i) { return card.sourceText == wordNumber(i); });
        if (out.problems.size() > 20)
            break;
    }
    return out;
}

} // namespace tolvane::crashtest
