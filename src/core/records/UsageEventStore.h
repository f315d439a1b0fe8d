// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/records/JsonRecordFile.h"
#include "core/records/UsageEvent.h"

#include <QList>
#include <QObject>
#include <QTimeZone>

#include <optional>

namespace tolvane {

class Clock;

// Every look-up that went to translation and every answered flashcard, oldest first, mirrored to
// usage_events.json. The statistics count from it.
class UsageEventStore final : public QObject
{
    Q_OBJECT
public:
    // timeZone: the zone whose calendar days are counted; the system's current zone if absent.
    explicit UsageEventStore(const Clock& clock, const QString& directory = recordsDirectory(),
                             std::optional<QTimeZone> timeZone = std::nullopt, QObject* parent = nullptr);

    const QList<UsageEvent>& events() const { return m_events; }
    const QString& filePath() const { return m_file.path(); }

    void record(UsageEventType type);

    // Distinct local calendar days with at least one look-up.
    qint64 lookupDayCount() const;
    // Consecutive local calendar days with a look-up, counting back from today; 0 without a
    // look-up today.
    qint64 currentStreak() const;

    static Result<QList<UsageEvent>> decode(const QByteArray& json);
    static QByteArray encode(const QList<UsageEvent>& events);

Q_SIGNALS:
    void eventsChanged();

private:
    // Sorted, each day once.
    std::vector<qint64> lookupDays() const;

    const Clock& m_clock;
    std::optional<QTimeZone> m_timeZone;
    JsonRecordFile m_file;
    QList<UsageEvent> m_events;
    // The encoded records so far, without the brackets: events are only ever appended, so a new
    // one costs the encoding of itself rather than of the whole list.
    QByteArray m_encoded;
};

} // namespace tolvane
