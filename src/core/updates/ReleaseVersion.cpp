// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/updates/ReleaseVersion.h"

namespace tolvane {

namespace {

constexpr qsizetype longestVersion = 64;
constexpr qsizetype mostDigits = 9; // every number fits a quint32

bool isAsciiDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

bool isNumber(QStringView text)
{
    if (text.isEmpty() || text.size() > mostDigits)
        return false;
    for (QChar c : text) {
        if (!isAsciiDigit(c))
            return false;
    }
    return text.size() == 1 || text.front() != u'0';
}

bool isTagPart(QStringView text)
{
    if (text.isEmpty())
        return false;
    for (QChar c : text) {
        if (!isAsciiDigit(c) && !(c >= u'a' && c <= u'z') && !(c >= u'A' && c <= u'Z') && c != u'-')
            return false;
    }
    return true;
}

// Pre-release parts: numbers by value and before words; words by their characters.
std::strong_ordering compareTagPart(const QString& a, const QString& b)
{
    const bool aNumber = isNumber(a);
    const bool bNumber = isNumber(b);
    if (aNumber && bNumber)
        return a.toUInt() <=> b.toUInt();
    if (aNumber != bNumber)
        return aNumber ? std::strong_ordering::less : std::strong_ordering::greater;
    const int order = QString::compare(a, b, Qt::CaseSensitive);
    return order <=> 0;
}

} // namespace

std::optional<ReleaseVersion> ReleaseVersion::parse(const QString& text)
{
    if (text.isEmpty() || text.size() > longestVersion)
        return std::nullopt;
    const qsizetype dash = text.indexOf(u'-');
    const QStringView core = QStringView(text).left(dash < 0 ? text.size() : dash);
    const QList<QStringView> numbers = core.split(u'.');
    if (numbers.size() < 2 || numbers.size() > 4)
        return std::nullopt;

    ReleaseVersion version;
    version.m_text = text;
    for (QStringView number : numbers) {
        if (!isNumber(number))
            return std::nullopt;
        version.m_numbers.append(number.toUInt());
    }
    while (version.m_numbers.size() < 4)
        version.m_numbers.append(0);

    if (dash >= 0) {
        for (QStringView part : QStringView(text).mid(dash + 1).split(u'.')) {
            if (!isTagPart(part))
                return std::nullopt;
            version.m_preRelease.append(part.toString());
        }
    }
    return version;
}

std::strong_ordering operator<=>(const ReleaseVersion& a, const ReleaseVersion& b)
{
    for (qsizetype i = 0; i < a.m_numbers.size(); ++i) {
        if (const auto order = a.m_numbers.at(i) <=> b.m_numbers.at(i); order != 0)
            return order;
    }
    if (a.m_preRelease.isEmpty() != b.m_preRelease.isEmpty())
        return a.m_preRelease.isEmpty() ? std::strong_ordering::greater : std::strong_ordering::less;
    const qsizetype common = std::min(a.m_preRelease.size(), b.m_preRelease.size());
    for (qsizetype i = 0; i < common; ++i) {
        if (const auto order = compareTagPart(a.m_preRelease.at(i), b.m_preRelease.at(i)); order != 0)
            return order;
    }
    return a.m_preRelease.size() <=> b.m_preRelease.size();
}

} // namespace tolvane
