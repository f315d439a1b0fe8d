// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/records/ConfusionLogStore.h"

#include "core/support/Clock.h"
#include "core/support/Logging.h"

#include <algorithm>
#include <limits>

TOLVANE_DEFINE_LOG(lcConfusionLogStore, "ConfusionLogStore")

namespace tolvane {

namespace {

ConfusionLogEntry decodeEntry(RecordJson::Reader& reader)
{
    ConfusionLogEntry entry;
    entry.word = reader.string(QLatin1String("word"));
    entry.translation = reader.string(QLatin1String("translation"));
    entry.seenCount = reader.integer(QLatin1String("seenCount"));
    entry.lastSeen = reader.date(QLatin1String("lastSeen"));
    entry.appContext = reader.optionalString(QLatin1String("appContext"));
    return entry;
}

void encodeEntry(RecordJson::Writer& writer, const ConfusionLogEntry& entry)
{
    writer.member("word", entry.word);
    writer.member("translation", entry.translation);
    writer.member("seenCount", entry.seenCount);
    writer.member("lastSeen", entry.lastSeen);
    writer.optionalMember("appContext", entry.appContext);
}

} // namespace

ConfusionLogStore::ConfusionLogStore(const Clock& clock, const QString& directory, QObject* parent)
    : QObject(parent)
    , m_clock(clock)
    , m_file(directory, QStringLiteral("confusion_log.json"), &lcConfusionLogStore)
{
    m_entries = m_file.load<ConfusionLogEntry>(decodeEntry).value_or(QList<ConfusionLogEntry>{});
}

Result<QList<ConfusionLogEntry>> ConfusionLogStore::decode(const QByteArray& json)
{
    return JsonRecordFile::decodeRecords<ConfusionLogEntry>(json, decodeEntry);
}

QByteArray ConfusionLogStore::encode(const QList<ConfusionLogEntry>& entries)
{
    return JsonRecordFile::encodeRecords(entries, encodeEntry);
}

void ConfusionLogStore::recordLookup(const QString& word, const QString& translation,
                                     const std::optional<QString>& appContext)
{
    const QDateTime now = m_clock.now();
    const auto existing = std::find_if(m_entries.begin(), m_entries.end(), [&](const ConfusionLogEntry& entry) {
        return entry.word.compare(word, Qt::CaseInsensitive) == 0;
    });
    if (existing != m_entries.end()) {
        if (existing->seenCount < std::numeric_limits<qint64>::max())
            ++existing->seenCount;
        existing->lastSeen = now;
        existing->translation = translation;
        existing->appContext = appContext;
    } else {
        m_entries.append(ConfusionLogEntry{word, translation, 1, now, appContext});
    }
    m_file.persist(m_entries, encodeEntry);
    Q_EMIT entriesChanged();
}

QList<ConfusionLogEntry> ConfusionLogStore::mostConfused(qsizetype limit) const
{
    if (limit <= 0)
        return {};
    QList<ConfusionLogEntry> ranked = m_entries;
    std::stable_sort(ranked.begin(), ranked.end(),
                     [](const ConfusionLogEntry& a, const ConfusionLogEntry& b) { return a.seenCount > b.seenCount; });
    if (ranked.size() > limit)
        ranked.resize(limit);
    return ranked;
}

} // namespace tolvane
