// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/Result.h"

#include <QByteArray>
#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <QUuid>

#include <optional>

namespace tolvane::RecordJson {

// Record files count time in seconds since 2001-01-01 00:00:00 UTC, with a fraction.
inline constexpr qint64 referenceDateMSecsSinceEpoch = 978307200000;

double secondsSinceReferenceDate(const QDateTime& date);
// Nothing when the number is not finite or lies beyond any date a record could carry.
std::optional<QDateTime> dateFromSecondsSinceReferenceDate(double seconds);

// Upper-case 8-4-4-4-12 form.
QString uuidText(const QUuid& id);

// Appends compact JSON to one buffer; the caller writes the punctuation between members.
class Writer final
{
public:
    explicit Writer(QByteArray& out)
        : m_out(out)
    {}

    void beginObject() { m_out += '{', m_first = true; }
    void endObject() { m_out += '}'; }

    void member(const char* key, const QString& value);
    void member(const char* key, qint64 value);
    void member(const char* key, const QDateTime& value);
    void member(const char* key, const QUuid& value);
    // Raw values of enumerations: plain ASCII, nothing to escape.
    void member(const char* key, QLatin1String value);
    template <typename T> void optionalMember(const char* key, const std::optional<T>& value)
    {
        if (value)
            member(key, *value);
    }

    static void appendString(QByteArray& out, QStringView text);

private:
    void key(const char* name);
    void appendInteger(qint64 value);

    QByteArray& m_out;
    bool m_first = true;
};

// Reads the members of one record object; the first problem is kept and every later read
// becomes a no-op, so a decoder reads all its keys and then asks once whether they were good.
class Reader final
{
public:
    Reader(const QJsonObject& object, qsizetype index)
        : m_object(object)
        , m_index(index)
    {}

    QString string(QLatin1String key);
    std::optional<QString> optionalString(QLatin1String key);
    qint64 integer(QLatin1String key);
    QDateTime date(QLatin1String key);
    std::optional<QDateTime> optionalDate(QLatin1String key);
    QUuid uuid(QLatin1String key);
    bool has(QLatin1String key) const;

    // Reads an enumeration through its raw-value table.
    template <typename Enum, typename FromRaw>
    std::optional<Enum> enumeration(QLatin1String key, FromRaw fromRaw, bool required)
    {
        if (!required && !has(key))
            return std::nullopt;
        const QString raw = required ? string(key) : optionalString(key).value_or(QString());
        if (!ok())
            return std::nullopt;
        auto value = fromRaw(raw);
        if (!value)
            fail(key, QStringLiteral("\"%1\" is not one of its values").arg(raw));
        return value;
    }

    bool ok() const { return !m_error.has_value(); }
    const Error& error() const { return *m_error; }
    void fail(QLatin1String key, const QString& problem);

private:
    QJsonValue required(QLatin1String key);

    const QJsonObject& m_object;
    qsizetype m_index;
    std::optional<Error> m_error;
};

} // namespace tolvane::RecordJson
