// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

namespace tolvane {

// What one inspection of the element under the pointer found.
struct WordAtPositionResult
{
    enum class Kind {
        word,             // the word under the pointer and, when one could be cut out, its sentence
        rangeUnsupported, // the element has text but cannot say which part lies under the pointer
        noText,           // nothing usable
    };

    Kind kind = Kind::noText;
    QString word;                    // kind word: already trimmed
    std::optional<QString> sentence; // kind word
    QString fullText;                // kind rangeUnsupported: the element's whole text

    static WordAtPositionResult makeWord(QString word, std::optional<QString> sentence)
    {
        return {Kind::word, std::move(word), std::move(sentence), {}};
    }
    static WordAtPositionResult makeRangeUnsupported(QString fullText)
    {
        return {Kind::rangeUnsupported, {}, std::nullopt, std::move(fullText)};
    }
    static WordAtPositionResult makeNoText() { return {}; }

    friend bool operator==(const WordAtPositionResult&, const WordAtPositionResult&) = default;
};

} // namespace tolvane
