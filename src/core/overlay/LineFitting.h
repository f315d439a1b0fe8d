// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace tolvane {

// The width of a text on one line, in points, in the font the lines are fitted for.
using TextWidthMeasurer = std::function<double(const QString& text)>;

// Fits a text into at most maxLines lines of lineWidth points, breaking at spaces: the text
// itself when it fits; otherwise the lines that fit, joined with single spaces, ending in "…".
// A word wider than a line is cut to the longest prefix that fits with "…".
QString fitToLines(const QString& text, const TextWidthMeasurer& width, int maxLines = 3, double lineWidth = 392);

// The example block of the word card: the sentence and, after the first line feed, its
// translation, each fitted to three lines. The translation is there only when non-empty.
struct ExampleLines
{
    QString sentence;
    std::optional<QString> translation;
};
ExampleLines exampleLines(const QString& exampleSentence, const TextWidthMeasurer& width);

} // namespace tolvane
