// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/capture/AXHoverInspector.h"

#include "core/capture/GraphemeText.h"

#include <QTextBoundaryFinder>

namespace tolvane::AXHoverInspector {

AccessibleElementPtr elementAtPointer(AccessibilityService& service, QPointF point)
{
    return service.elementAtPoint(point);
}

WordAtPositionResult wordAtPosition(const AccessibleElement& element, QPointF point)
{
    const Result<std::optional<TextRange>> answer = element.rangeForPosition(point);
    if (!answer) {
        if (auto text = firstTextAttribute(element))
            return WordAtPositionResult::makeRangeUnsupported(*text);
        return WordAtPositionResult::makeNoText();
    }
    if (!answer.value() || answer.value()->location < 0)
        return WordAtPositionResult::makeNoText();

    std::optional<GraphemeText> found;
    for (const QString& name : textAttributes) {
        if (auto value = element.attribute(name); value && !value->isEmpty()) {
            found.emplace(*value);
            break;
        }
    }
    if (!found)
        return WordAtPositionResult::makeNoText();
    const GraphemeText& text = *found;

    const qsizetype index = answer.value()->location;
    if (index >= text.size())
        return WordAtPositionResult::makeNoText();
    // An element that answers 0 for every point cannot place the pointer inside a longer text.
    if (index == 0 && textrules::splitAtWhitespace(text.text()).size() > 1)
        return WordAtPositionResult::makeRangeUnsupported(text.text());

    qsizetype start = index;
    while (start > 0 && !text.isWhitespace(start - 1) && !text.isLineBreak(start - 1))
        --start;

    qsizetype end = index;
    if (!text.isWhitespace(index)) {
        while (!text.isLineBreak(end)) {
            ++end;
            if (end == text.size() || text.isWhitespace(end))
                break;
        }
    }

    const QString word = textrules::trimmedPunctuation(textrules::trimmedWhitespace(text.mid(start, end)));
    if (word.isEmpty())
        return WordAtPositionResult::makeNoText();
    return WordAtPositionResult::makeWord(word, sentenceContaining(index, text.text()));
}

std::optional<QString> firstTextAttribute(const AccessibleElement& element)
{
    for (const QString& name : textAttributes) {
        const std::optional<QString> value = element.attribute(name);
        if (!value)
            continue;
        const QString trimmed = textrules::trimmedWhitespace(*value);
        if (!trimmed.isEmpty())
            return trimmed;
    }
    return std::nullopt;
}

std::optional<QString> sentenceContaining(qsizetype index, const QString& text)
{
    if (text.isEmpty() || index < 0)
        return std::nullopt;
    const GraphemeText characters(text);
    if (index >= characters.size())
        return std::nullopt;
    const qsizetype offset = characters.utf16Offset(index);

    QTextBoundaryFinder finder(QTextBoundaryFinder::Sentence, text);
    finder.toStart();
    qsizetype sentenceStart = 0;
    for (qsizetype next = finder.toNextBoundary(); next > 0; next = finder.toNextBoundary()) {
        if (sentenceStart <= offset && offset < next) {
            const QString sentence = textrules::trimmedWhitespace(text.mid(sentenceStart, next - sentenceStart));
            if (sentence.isEmpty())
                return std::nullopt;
            return sentence;
        }
        sentenceStart = next;
    }
    return std::nullopt;
}

} // namespace tolvane::AXHoverInspector
