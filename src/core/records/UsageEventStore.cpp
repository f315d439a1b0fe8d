// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/records/UsageEventStore.h"

#include "core/records/LocalDays.h"
#include "core/support/Clock.h"
#include "core/support/Logging.h"

#include <algorithm>

TOLVANE_DEFINE_LOG(lcUsageEventStore, "UsageEventStore")

namespace tolvane {

namespace {

UsageEvent decodeEvent(RecordJson::Reader& reader)
{
    UsageEvent event;
    event.type = reader.enumeration<UsageEventType>(QLatin1String("type"), usageEventTypeFromRawValue, true)
                     .value_or(UsageEventType::lookup);
    event.date = reader.date(QLatin1String("date"));
    return event;
}

void encodeEvent(RecordJson::Writer& writer, const UsageEvent& event)
{
    writer.member("type", usageEventTypeNames.text(event.type));
    writer.member("date", event.date);
}

} // namespace

UsageEventStore::UsageEventStore(const Clock& clock, const QString& directory, std::optional<QTimeZone> timeZone,
                                 QObject* parent)
    : QObject(parent)
    , m_clock(clock)
    , m_timeZone(std::move(timeZone))
    , m_file(directory, QStringLiteral("usage_events.json"), &lcUsageEventStore)
{
    m_events = m_file.load<UsageEvent>(decodeEvent).value_or(QList<UsageEvent>{});
    m_encoded = encode(m_events);
    m_encoded.chop(1);
    m_encoded.remove(0, 1);
}

Result<QList<UsageEvent>> UsageEventStore::decode(const QByteArray& json)
{
    return JsonRecordFile::decodeRecords<UsageEvent>(json, decodeEvent);
}

QByteArray UsageEventStore::encode(const QList<UsageEvent>& events)
{
    return JsonRecordFile::encodeRecords(events, encodeEvent);
}

void UsageEventStore::record(UsageEventType type)
{
    const UsageEvent event{type, m_clock.now()};
    m_events.append(event);
    if (!m_encoded.isEmpty())
        m_encoded += ',';
    RecordJson::Writer writer(m_encoded);
    writer.beginObject();
    encodeEvent(writer, event);
    writer.endObject();

    QByteArray json;
    json.reserve(m_encoded.size() + 2);
    json += '[';
    json += m_encoded;
    json += ']';
    m_file.persistBytes(json);
    Q_EMIT eventsChanged();
}

std::vector<qint64> UsageEventStore::lookupDays() const
{
    LocalDays localDays(m_timeZone);
    std::vector<qint64> days;
    for (const UsageEvent& event : m_events) {
        if (event.type != UsageEventType::lookup)
            continue;
        const qint64 day = localDays.dayOf(event.date);
        // Events arrive in time order, so most repeats are neighbours; the sort handles the rest.
        if (days.empty() || days.back() != day)
            days.push_back(day);
    }
    std::sort(days.begin(), days.end());
    days.erase(std::unique(days.begin(), days.end()), days.end());
    return days;
}

qint64 UsageEventStore::lookupDayCount() const
{
    return qint64(lookupDays().size());
}

qint64 UsageEventStore::currentStreak() const
{
    const std::vector<qint64> days = lookupDays();
    qint64 day = LocalDays(m_timeZone).dayOf(m_clock.now());
    auto it = std::lower_bound(days.begin(), days.end(), day);
    qint64 streak = 0;
    while (it != days.end() && *it == day) {
        ++streak;
        --day;
        if (it == days.begin())
            break;
        --it;
    }
    return streak;
}

} // namespace tolvane
