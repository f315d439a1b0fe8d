// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/records/RecordJson.h"

#include <QJsonValue>
#include <QLocale>

#include <cmath>
#include <limits>

namespace tolvane::RecordJson {

namespace {

// About three thousand years either side of 2001: far beyond any real record, well inside what
// QDateTime and a double of milliseconds can represent exactly.
constexpr double largestSeconds = 1.0e11;

} // namespace

double secondsSinceReferenceDate(const QDateTime& date)
{
    return double(date.toMSecsSinceEpoch() - referenceDateMSecsSinceEpoch) / 1000.0;
}

std::optional<QDateTime> dateFromSecondsSinceReferenceDate(double seconds)
{
    if (!std::isfinite(seconds) || std::fabs(seconds) > largestSeconds)
        return std::nullopt;
    return QDateTime::fromMSecsSinceEpoch(referenceDateMSecsSinceEpoch + std::llround(seconds * 1000.0), Qt::UTC);
}

QString uuidText(const QUuid& id)
{
    return id.toString(QUuid::WithoutBraces).toUpper();
}

void Writer::appendString(QByteArray& out, QStringView text)
{
    static constexpr char hex[] = "0123456789abcdef";
    out += '"';
    const QByteArray utf8 = text.toUtf8();
    const char* begin = utf8.constData();
    const char* run = begin;
    const char* end = begin + utf8.size();
    for (const char* p = begin; p != end; ++p) {
        const auto c = static_cast<unsigned char>(*p);
        if (c >= 0x20 && c != '"' && c != '\\')
            continue;
        out.append(run, p - run);
        run = p + 1;
        switch (c) {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            out += "\\u00";
            out += hex[c >> 4];
            out += hex[c & 0xF];
        }
    }
    out.append(run, end - run);
    out += '"';
}

void Writer::key(const char* name)
{
    if (!m_first)
        m_out += ',';
    m_first = false;
    m_out += '"';
    m_out += name;
    m_out += "\":";
}

void Writer::member(const char* name, const QString& value)
{
    key(name);
    appendString(m_out, value);
}

void Writer::member(const char* name, qint64 value)
{
    key(name);
    m_out += QByteArray::number(value);
}

void Writer::member(const char* name, const QDateTime& value)
{
    key(name);
    const qint64 msecs = value.toMSecsSinceEpoch() - referenceDateMSecsSinceEpoch;
    // Whole milliseconds are written exactly, without the detour through a double.
    const qint64 wholeSeconds = msecs / 1000;
    const qint64 millis = msecs % 1000;
    if (millis == 0) {
        m_out += QByteArray::number(wholeSeconds);
        return;
    }
    m_out += QByteArray::number(double(msecs) / 1000.0, 'g', QLocale::FloatingPointShortest);
}

void Writer::member(const char* name, const QUuid& value)
{
    key(name);
    m_out += '"';
    m_out += value.toByteArray(QUuid::WithoutBraces).toUpper();
    m_out += '"';
}

void Reader::fail(QLatin1String key, const QString& problem)
{
    if (!m_error)
        m_error = Error{QStringLiteral("record %1, key \"%2\": %3").arg(m_index).arg(key).arg(problem)};
}

bool Reader::has(QLatin1String key) const
{
    const auto it = m_object.constFind(key);
    return it != m_object.constEnd() && !it->isNull();
}

QJsonValue Reader::required(QLatin1String key)
{
    if (!ok())
        return {};
    const auto it = m_object.constFind(key);
    if (it == m_object.constEnd() || it->isNull()) {
        fail(key, QStringLiteral("missing"));
        return {};
    }
    return *it;
}

QString Reader::string(QLatin1String key)
{
    const QJsonValue value = required(key);
    if (!ok())
        return {};
    if (!value.isString()) {
        fail(key, QStringLiteral("expected a string"));
        return {};
    }
    return value.toString();
}

std::optional<QString> Reader::optionalString(QLatin1String key)
{
    if (!ok() || !has(key))
        return std::nullopt;
    return string(key);
}

qint64 Reader::integer(QLatin1String key)
{
    const QJsonValue value = required(key);
    if (!ok())
        return 0;
    const double number = value.toDouble();
    if (!value.isDouble() || !std::isfinite(number) || number != std::floor(number)) {
        fail(key, QStringLiteral("expected a whole number"));
        return 0;
    }
    constexpr qint64 sentinel = std::numeric_limits<qint64>::min();
    const qint64 integer = value.toInteger(sentinel);
    if (integer == sentinel && number != double(sentinel)) {
        fail(key, QStringLiteral("number out of range"));
        return 0;
    }
    return integer;
}

QDateTime Reader::date(QLatin1String key)
{
    const QJsonValue value = required(key);
    if (!ok())
        return {};
    if (!value.isDouble()) {
        fail(key, QStringLiteral("expected a date as seconds since 2001-01-01"));
        return {};
    }
    auto date = dateFromSecondsSinceReferenceDate(value.toDouble());
    if (!date) {
        fail(key, QStringLiteral("date out of range"));
        return {};
    }
    return *date;
}

std::optional<QDateTime> Reader::optionalDate(QLatin1String key)
{
    if (!ok() || !has(key))
        return std::nullopt;
    return date(key);
}

QUuid Reader::uuid(QLatin1String key)
{
    const QString text = string(key);
    if (!ok())
        return {};
    const QUuid id = text.size() == 36 ? QUuid::fromString(text) : QUuid();
    if (id.isNull() && text != QLatin1String("00000000-0000-0000-0000-000000000000"))
        fail(key, QStringLiteral("\"%1\" is not an identifier").arg(text));
    return id;
}

} // namespace tolvane::RecordJson
