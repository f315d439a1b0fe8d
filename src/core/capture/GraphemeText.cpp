// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/capture/GraphemeText.h"

#include <QStringList>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <vector>

namespace tolvane {

namespace {

char32_t firstCodePoint(QStringView s)
{
    if (s.isEmpty())
        return 0;
    if (s.size() >= 2 && s.at(0).isHighSurrogate() && s.at(1).isLowSurrogate())
        return QChar::surrogateToUcs4(s.at(0), s.at(1));
    return s.at(0).unicode();
}

// Code points with their UTF-16 positions, so trimming can work on whole code points.
struct CodePoint
{
    char32_t value;
    qsizetype offset;
    qsizetype length;
};

std::vector<CodePoint> codePoints(const QString& text)
{
    std::vector<CodePoint> result;
    result.reserve(size_t(text.size()));
    for (qsizetype i = 0; i < text.size();) {
        const qsizetype length =
            (i + 1 < text.size() && text.at(i).isHighSurrogate() && text.at(i + 1).isLowSurrogate()) ? 2 : 1;
        result.push_back({firstCodePoint(QStringView(text).mid(i, length)), i, length});
        i += length;
    }
    return result;
}

template <typename Predicate> QString trimmedBy(const QString& text, Predicate drop)
{
    const auto points = codePoints(text);
    size_t first = 0;
    size_t last = points.size();
    while (first < last && drop(points[first].value))
        ++first;
    while (last > first && drop(points[last - 1].value))
        --last;
    if (first == last)
        return {};
    const qsizetype start = points[first].offset;
    const qsizetype end = points[last - 1].offset + points[last - 1].length;
    return text.mid(start, end - start);
}

} // namespace

GraphemeText::GraphemeText(QString text)
    : m_text(std::move(text))
{
    m_bounds.append(0);
    if (m_text.isEmpty())
        return;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, m_text);
    finder.toStart();
    for (qsizetype next = finder.toNextBoundary(); next > 0; next = finder.toNextBoundary())
        m_bounds.append(next);
    if (m_bounds.last() != m_text.size())
        m_bounds.append(m_text.size());
}

QStringView GraphemeText::at(qsizetype index) const
{
    if (index < 0 || index >= size())
        return {};
    return QStringView(m_text).mid(m_bounds[index], m_bounds[index + 1] - m_bounds[index]);
}

QString GraphemeText::mid(qsizetype start, qsizetype end) const
{
    start = std::clamp<qsizetype>(start, 0, size());
    end = std::clamp<qsizetype>(end, start, size());
    return m_text.mid(m_bounds[start], m_bounds[end] - m_bounds[start]);
}

qsizetype GraphemeText::utf16Offset(qsizetype index) const
{
    return m_bounds[std::clamp<qsizetype>(index, 0, size())];
}

qsizetype GraphemeText::indexAtUtf16(qsizetype offset) const
{
    if (offset < 0)
        return 0;
    if (offset >= m_text.size())
        return size();
    // The last boundary at or before the offset starts the character that holds it.
    const auto it = std::upper_bound(m_bounds.cbegin(), m_bounds.cend(), offset);
    return qsizetype(it - m_bounds.cbegin()) - 1;
}

qsizetype GraphemeText::indexAtCodePoint(qsizetype codePoint) const
{
    if (codePoint < 0)
        return 0;
    qsizetype offset = 0;
    for (qsizetype seen = 0; seen < codePoint && offset < m_text.size(); ++seen) {
        const bool pair =
            offset + 1 < m_text.size() && m_text.at(offset).isHighSurrogate() && m_text.at(offset + 1).isLowSurrogate();
        offset += pair ? 2 : 1;
    }
    return indexAtUtf16(offset);
}

bool GraphemeText::isWhitespace(qsizetype index) const
{
    return textrules::isWhitespace(firstCodePoint(at(index)));
}

bool GraphemeText::isLineBreak(qsizetype index) const
{
    return textrules::isLineBreak(firstCodePoint(at(index)));
}

namespace textrules {

bool isLineBreak(char32_t c)
{
    return (c >= 0x0A && c <= 0x0D) || c == 0x85 || c == 0x2028 || c == 0x2029;
}

bool isWhitespace(char32_t c)
{
    // White_Space: the separators, the line breaks and the tab. U+200B is not among them.
    if (c == 0x09 || isLineBreak(c))
        return true;
    switch (QChar::category(c)) {
    case QChar::Separator_Space:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

bool isPunctuation(char32_t c)
{
    switch (QChar::category(c)) {
    case QChar::Punctuation_Connector:
    case QChar::Punctuation_Dash:
    case QChar::Punctuation_Open:
    case QChar::Punctuation_Close:
    case QChar::Punctuation_InitialQuote:
    case QChar::Punctuation_FinalQuote:
    case QChar::Punctuation_Other:
        return true;
    default:
        return false;
    }
}

QString trimmedWhitespace(const QString& text)
{
    return trimmedBy(text, isWhitespace);
}

QString trimmedPunctuation(const QString& text)
{
    return trimmedBy(text, isPunctuation);
}

QStringList splitAtWhitespace(const QString& text)
{
    QStringList pieces;
    qsizetype pieceStart = -1;
    for (const CodePoint& p : codePoints(text)) {
        if (isWhitespace(p.value)) {
            if (pieceStart >= 0)
                pieces.append(text.mid(pieceStart, p.offset - pieceStart));
            pieceStart = -1;
        } else if (pieceStart < 0) {
            pieceStart = p.offset;
        }
    }
    if (pieceStart >= 0)
        pieces.append(text.mid(pieceStart));
    return pieces;
}

int editDistance(const QString& a, const QString& b)
{
    return editDistance(GraphemeText(a), GraphemeText(b));
}

} // namespace textrules

} // namespace tolvane
