// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringView>

#include <algorithm>
#include <vector>

namespace tolvane {

// A text seen as user-perceived characters (grapheme clusters): what a reader counts as one
// letter, however many code units it takes. Positions the accessibility layer reports and the
// word walk both count in these.
class GraphemeText final
{
public:
    explicit GraphemeText(QString text);

    const QString& text() const { return m_text; }
    qsizetype size() const { return m_bounds.size() - 1; }
    bool isEmpty() const { return size() == 0; }

    QStringView at(qsizetype index) const;
    // Characters [start, end) as a string.
    QString mid(qsizetype start, qsizetype end) const;
    // The UTF-16 offset where the character at index starts (size() gives the text's length).
    qsizetype utf16Offset(qsizetype index) const;
    // The character holding a UTF-16 offset; size() for an offset at or past the end.
    qsizetype indexAtUtf16(qsizetype offset) const;
    // The character holding the code point with this number (code points counted from 0), as
    // AT-SPI counts its offsets; size() when past the end.
    qsizetype indexAtCodePoint(qsizetype codePoint) const;

    bool isWhitespace(qsizetype index) const;
    bool isLineBreak(qsizetype index) const;

private:
    QString m_text;
    QList<qsizetype> m_bounds; // UTF-16 start of every character, then the text's length
};

namespace textrules {

// The Unicode White_Space property, which includes every line break.
bool isWhitespace(char32_t c);
// U+000A, U+000B, U+000C, U+000D, U+0085, U+2028, U+2029.
bool isLineBreak(char32_t c);
// The Unicode punctuation categories (Pc, Pd, Ps, Pe, Pi, Pf, Po).
bool isPunctuation(char32_t c);

QString trimmedWhitespace(const QString& text);
QString trimmedPunctuation(const QString& text);
// Pieces between runs of whitespace, empty pieces dropped.
QStringList splitAtWhitespace(const QString& text);
// Levenshtein distance over user-perceived characters, each edit costing one.
int editDistance(const QString& a, const QString& b);

// Levenshtein distance between two sequences of anything comparable (size() and at()), each
// edit costing one.
template <typename Sequence> int editDistance(const Sequence& a, const Sequence& b)
{
    const qsizetype n = b.size();
    std::vector<int> previous(size_t(n + 1));
    std::vector<int> current(size_t(n + 1));
    for (qsizetype j = 0; j <= n; ++j)
        previous[size_t(j)] = int(j);
    for (qsizetype i = 1; i <= a.size(); ++i) {
        current[0] = int(i);
        for (qsizetype j = 1; j <= n; ++j) {
            const int substitution = previous[size_t(j - 1)] + (a.at(i - 1) == b.at(j - 1) ? 0 : 1);
            current[size_t(j)] = std::min({previous[size_t(j)] + 1, current[size_t(j - 1)] + 1, substitution});
        }
        std::swap(previous, current);
    }
    return previous[size_t(n)];
}

} // namespace textrules

} // namespace tolvane
