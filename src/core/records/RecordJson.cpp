// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/records/RecordJson.h"

#include <QJsonValue>

#include <algorithm>
#include <charconv>
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
    const char16_t* p = text.utf16();
    const char16_t* const end = p + text.size();
    while (p != end) {
        if (*p >= 0x80) {
            // Runs of non-ASCII text need no escaping; encode them in one go, surrogate pairs whole.
            const char16_t* run = p;
            while (p != end && *p >= 0x80)
                ++p;
            out += QStringView(run, p - run).toUtf8();
            continue;
        }
        const char16_t* plain = p;
        while (p != end && *p >= 0x20 && *p < 0x80 && *p != '"' && *p != '\\')
            ++p;
        if (p != plain) {
            const qsizetype at = out.size();
            out.resize(at + (p - plain));
            std::copy(plain, p, out.data() + at); // ASCII: one byte per code unit
            continue;
        }
        const char c = char(*p++);
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
    appendInteger(value);
}

void Writer::appendInteger(qint64 value)
{
    char digits[24];
    const auto result = std::to_chars(digits, digits + sizeof digits, value);
    m_out.append(digits, result.ptr - digits);
}

void Writer::member(const char* name, const QDateTime& value)
{
    key(name);
    // Milliseconds are all a QDateTime holds, so the exact decimal form is also the shortest one
    // that reads back to the same number: whole seconds, then at most three digits.
    qint64 msecs = value.toMSecsSinceEpoch() - referenceDateMSecsSinceEpoch;
    if (msecs < 0) {
        m_out += '-';
        msecs = -msecs;
    }
    appendInteger(msecs / 1000);
    int millis = int(msecs % 1000);
    if (millis == 0)
        return;
    char digits[4] = {char('0' + millis / 100), char('0' + millis / 10 % 10), char('0' + millis % 10), 0};
    int length = 3;
    while (digits[length - 1] == '0')
        --length;
    m_out += '.';
    m_out.append(digits, length);
}

void Writer::member(const char* name, QLatin1String value)
{
    key(name);
    m_out += '"';
    m_out.append(value.data(), value.size());
    m_out += '"';
}

void Writer::member(const char* name, const QUuid& value)
{
    static constexpr char hex[] = "0123456789ABCDEF";
    key(name);
    const uchar bytes[16] = {
        uchar(value.data1 >> 24), uchar(value.data1 >> 16), uchar(value.data1 >> 8), uchar(value.data1),
        uchar(value.data2 >> 8),  uchar(value.data2),       uchar(value.data3 >> 8), uchar(value.data3),
        value.data4[0],           value.data4[1],           value.data4[2],          value.data4[3],
        value.data4[4],           value.data4[5],           value.data4[6],          value.data4[7]};
    char text[38];
    int at = 0;
    text[at++] = '"';
    for (int i = 0; i < 16; ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10)
            text[at++] = '-';
        text[at++] = hex[bytes[i] >> 4];
        text[at++] = hex[bytes[i] & 0xF];
    }
    text[at++] = '"';
    m_out.append(text, at);
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
