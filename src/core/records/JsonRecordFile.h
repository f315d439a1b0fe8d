// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/records/RecordJson.h"
#include "core/support/Result.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QList>
#include <QLoggingCategory>
#include <QString>

#include <optional>

namespace tolvane {

// $XDG_DATA_HOME/Tolvane: the three record files and their recovery copies.
QString recordsDirectory();

// One record file: a JSON array mirroring a store's list. Read once when the store is made,
// replaced whole and atomically after every change. A file that cannot be read or decoded is
// moved aside as NAME.corrupt-<UUID> and the store starts empty; nothing is ever half-salvaged.
class JsonRecordFile final
{
public:
    // The log category carries the store's name, so every line says which file it is about.
    using LogCategory = const QLoggingCategory& (*)();

    // Creates the directory (private to the user) when it is missing; a failure shows later as
    // a missing file and then as failed writes.
    JsonRecordFile(const QString& directory, const QString& fileName, LogCategory log);

    const QString& path() const { return m_path; }

    // The records of the file; nothing when it is missing or had to be set aside.
    template <typename Record, typename Decode> std::optional<QList<Record>> load(Decode decodeRecord) const
    {
        auto bytes = read();
        if (!bytes)
            return std::nullopt;
        if (!bytes->ok()) {
            setAside(bytes->error());
            return std::nullopt;
        }
        auto records = decodeRecords<Record>(bytes->value(), decodeRecord);
        if (!records.ok()) {
            setAside(records.error());
            return std::nullopt;
        }
        return std::move(records).value();
    }

    // Replaces the file with the encoded list; a failure is logged and leaves the old file.
    template <typename Record, typename Encode> void persist(const QList<Record>& records, Encode encodeRecord) const
    {
        persistBytes(encodeRecords(records, encodeRecord));
    }
    void persistBytes(const QByteArray& json) const;
    // The atomic replacement itself (writeFileAtomically).
    Result<void> write(const QByteArray& json) const;

    template <typename Record, typename Decode>
    static Result<QList<Record>> decodeRecords(const QByteArray& json, Decode decodeRecord)
    {
        auto array = parseArray(json);
        if (!array.ok())
            return array.error();
        QList<Record> records;
        records.reserve(array.value().size());
        qsizetype index = 0;
        for (const QJsonValue& element : std::as_const(array.value())) {
            if (!element.isObject())
                return Error{QStringLiteral("record %1 is not an object").arg(index)};
            const QJsonObject object = element.toObject();
            RecordJson::Reader reader(object, index);
            Record record = decodeRecord(reader);
            if (!reader.ok())
                return reader.error();
            records.append(std::move(record));
            ++index;
        }
        return records;
    }

    template <typename Record, typename Encode>
    static QByteArray encodeRecords(const QList<Record>& records, Encode encodeRecord)
    {
        QByteArray json;
        json.reserve(64 + records.size() * 96);
        json += '[';
        for (qsizetype i = 0; i < records.size(); ++i) {
            if (i)
                json += ',';
            RecordJson::Writer writer(json);
            writer.beginObject();
            encodeRecord(writer, records.at(i));
            writer.endObject();
        }
        json += ']';
        return json;
    }

    static Result<QJsonArray> parseArray(const QByteArray& json);

private:
    // Nothing when there is no file at all.
    std::optional<Result<QByteArray>> read() const;
    void setAside(const Error& problem) const;

    QString m_path;
    LogCategory m_log;
};

} // namespace tolvane
