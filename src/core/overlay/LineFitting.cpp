// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/overlay/LineFitting.h"

#include "core/overlay/OverlayGeometry.h"

#include <QStringList>

#include <limits>

namespace tolvane {

namespace {

const QString ellipsis = QStringLiteral("…");

// No line of a card holds this many UTF-16 units, so longer texts are too wide without measuring
// them: a megabyte without a space must not be laid out a dozen times.
constexpr qsizetype longestMeasuredText = 2048;

// Cuts before a low surrogate would split a character in two.
qsizetype safeCut(const QString& text, qsizetype length)
{
    if (length > 0 && length < text.size() && text.at(length).isLowSurrogate() && text.at(length - 1).isHighSurrogate())
        return length - 1;
    return length;
}

class Fitter
{
public:
    Fitter(const TextWidthMeasurer& measure, double lineWidth)
        : m_measure(measure)
        , m_lineWidth(lineWidth)
    {}

    bool fits(const QString& text) const
    {
        if (text.size() > longestMeasuredText)
            return false;
        return m_measure(text) <= m_lineWidth;
    }

    // The longest prefix p of word with p + "…" fitting, followed by "…". Widths grow with the
    // prefix, so a binary search finds it in a handful of measurements.
    QString cutWord(const QString& word) const
    {
        qsizetype low = 0; // fits (the bare "…" is taken to fit)
        qsizetype high = std::min(word.size(), longestMeasuredText);
        while (low < high) {
            const qsizetype middle = low + (high - low + 1) / 2;
            if (fits(word.left(safeCut(word, middle)) + ellipsis))
                low = middle;
            else
                high = middle - 1;
        }
        return word.left(safeCut(word, low)) + ellipsis;
    }

private:
    const TextWidthMeasurer& m_measure;
    double m_lineWidth;
};

} // namespace

QString fitToLines(const QString& text, const TextWidthMeasurer& width, int maxLines, double lineWidth)
{
    if (text.isEmpty())
        return text;
    const Fitter fitter(width, lineWidth);
    QStringList lines;
    QString current;
    qsizetype start = 0;
    // Walk the words without splitting the whole text first: only the first few lines matter.
    while (start <= text.size() && lines.size() < maxLines) {
        qsizetype end = text.indexOf(QLatin1Char(' '), start);
        if (end < 0)
            end = text.size();
        const QString word = text.mid(start, end - start);
        start = end + 1;
        // An empty piece on an empty line leaves it empty: a run of spaces costs no measuring.
        if (word.isEmpty() && current.isEmpty())
            continue;

        const QString candidate = current.isEmpty() ? word : current + QLatin1Char(' ') + word;
        if (fitter.fits(candidate)) {
            current = candidate;
            continue;
        }
        if (!current.isEmpty())
            lines.append(current);
        current = fitter.fits(word) ? word : fitter.cutWord(word);
    }
    if (lines.size() < maxLines && !current.isEmpty())
        lines.append(current);
    if (lines.isEmpty())
        return {};

    const QString joined = lines.join(QLatin1Char(' '));
    if (joined == text && !lines.last().endsWith(ellipsis))
        return text;

    QString& last = lines.last();
    if (!last.endsWith(ellipsis)) {
        while (last.contains(QLatin1Char(' ')) && !fitter.fits(last + ellipsis))
            last.truncate(last.lastIndexOf(QLatin1Char(' ')));
        last += ellipsis;
    }
    return lines.join(QLatin1Char(' '));
}

ExampleLines exampleLines(const QString& exampleSentence, const TextWidthMeasurer& width)
{
    const qsizetype feed = exampleSentence.indexOf(QLatin1Char('\n'));
    ExampleLines result;
    if (feed < 0) {
        result.sentence = fitToLines(exampleSentence, width, overlay::exampleMaximumLines, overlay::exampleLineWidth);
        return result;
    }
    result.sentence =
        fitToLines(exampleSentence.left(feed), width, overlay::exampleMaximumLines, overlay::exampleLineWidth);
    const QString translation =
        fitToLines(exampleSentence.mid(feed + 1), width, overlay::exampleMaximumLines, overlay::exampleLineWidth);
    if (!translation.isEmpty())
        result.translation = translation;
    return result;
}

} // namespace tolvane
