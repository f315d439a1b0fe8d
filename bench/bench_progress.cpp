// SPDX-License-Identifier: GPL-3.0-or-later
// Figures for the statistics window with a large record: opening the window (counting every
// event, building and showing it), and what a new event costs an open window (counting it and
// drawing the window again). Two shapes of record: 100 000 events over two years, and 100 000
// events on one day. Usage: bench_progress [events]   (default 100000)
#include "core/progress/LookupMilestoneManager.h"
#include "core/progress/ProgressStatistics.h"
#include "core/records/ConfusionLogStore.h"
#include "core/records/ReviewDeckStore.h"
#include "core/records/UsageEventStore.h"
#include "core/setup/Preferences.h"
#include "core/support/Clock.h"
#include "core/support/QtScheduler.h"
#include "platform/null/MemoryPreferenceStore.h"
#include "ui/progress/StatsView.h"
#include "ui/progress/StatsWindowManager.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace tolvane;

namespace {

class FixedClock final : public Clock
{
public:
    QDateTime now() const override { return m_now; }
    QDateTime m_now = QDateTime(QDate(2026, 11, 23), QTime(15, 0), Qt::UTC);
};

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

double maximum(const std::vector<double>& values)
{
    return values.empty() ? 0 : *std::max_element(values.begin(), values.end());
}

void writeRecords(const QString& directory, qint64 eventCount, qint64 spanSeconds, const QDateTime& now)
{
    QList<UsageEvent> events;
    events.reserve(eventCount);
    for (qint64 i = 0; i < eventCount; ++i) {
        const qint64 back = spanSeconds - spanSeconds * i / eventCount;
        events.append(UsageEvent{i % 4 ? UsageEventType::lookup : UsageEventType::review, now.addSecs(-back)});
    }
    QFile usage(directory + QStringLiteral("/usage_events.json"));
    usage.open(QIODevice::WriteOnly);
    usage.write(UsageEventStore::encode(events));
    QList<ConfusionLogEntry> log;
    for (int i = 0; i < 3000; ++i)
        log.append(ConfusionLogEntry{QStringLiteral("word%1").arg(i), QStringLiteral("t"), 1 + i % 17, now, {}});
    QFile confusion(directory + QStringLiteral("/confusion_log.json"));
    confusion.open(QIODevice::WriteOnly);
    confusion.write(ConfusionLogStore::encode(log));
}

void run(const char* shape, qint64 eventCount, qint64 spanSeconds)
{
    QTemporaryDir dir;
    FixedClock clock;
    QtScheduler scheduler;
    MemoryPreferenceStore store;
    Preferences preferences(store);
    preferences.setInteger(PreferenceKey::successfulWordLookupCount, eventCount);
    writeRecords(dir.path(), eventCount, spanSeconds, clock.now());
    UsageEventStore usageEvents(clock, dir.path());
    ConfusionLogStore confusionLog(clock, dir.path());
    ReviewDeckStore deck(clock, scheduler, preferences, usageEvents, nullptr, dir.path());
    for (int i = 0; i < 300; ++i)
        deck.addCard(QStringLiteral("word%1").arg(i), QStringLiteral("t"), true, QStringLiteral("de"),
                     DetectedDirection::targetToEnglish);
    LookupMilestoneManager milestones(preferences, nullptr);
    const ProgressSources sources{clock, usageEvents, deck, confusionLog, milestones};

    // Connected first, so it runs before the window's own counting.
    QElapsedTimer sinceSignal;
    QObject::connect(&usageEvents, &UsageEventStore::eventsChanged, [&] { sinceSignal.start(); });

    // Opening: a new window each time, drawn once.
    StatsWindowManager windows(sources);
    std::vector<double> opens;
    for (int i = 0; i < 7; ++i) {
        if (windows.window())
            windows.window()->close();
        QElapsedTimer timer;
        timer.start();
        windows.show();
        windows.window()->repaint();
        opens.push_back(double(timer.nsecsElapsed()) / 1e6);
    }

    // A new event while open: from the store's signal to the window drawn again. The store's
    // own write to the disk is reported apart.
    std::vector<double> updates;
    std::vector<double> records;
    StatsView* view = windows.window();
    for (int i = 0; i < 30; ++i) {
        QElapsedTimer whole;
        whole.start();
        usageEvents.record(i % 3 ? UsageEventType::lookup : UsageEventType::review);
        view->repaint();
        updates.push_back(double(sinceSignal.nsecsElapsed()) / 1e6);
        records.push_back(double(whole.nsecsElapsed()) / 1e6);
    }
    std::printf("%-22s %7lld events  open window: median %6.1f ms, max %6.1f ms   "
                "new event: median %5.2f ms, max %5.2f ms (with the file write: %5.1f ms)\n",
                shape, static_cast<long long>(eventCount), median(opens), maximum(opens), median(updates),
                maximum(updates), median(records));
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.info=false\nqt.*=false"));
    const qint64 count = argc > 1 ? QByteArray(argv[1]).toLongLong() : 100000;
    run("over two years", count, qint64(2) * 365 * 86400);
    run("all on one day", count, 12 * 3600);
    return 0;
}
