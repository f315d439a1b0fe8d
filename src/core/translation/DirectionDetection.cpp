// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/translation/DirectionDetection.h"

#include "core/translation/LanguageTable.h"
#include "platform/LanguageRecognizer.h"
#include "platform/Transliterator.h"

#include <QTextBoundaryFinder>

#include <cmath>

namespace tolvane {

namespace {

constexpr qsizetype minimumDetectedLength = 3;
constexpr double confidentProbability = 0.6;
const QString arrow = QStringLiteral(" \u2192 ");

} // namespace

DetectedDirection detectDirection(const QString& text, const QString& targetCode, const LanguageRecognizer& recognizer)
{
    if (isDetectionExcluded(targetCode))
        return DetectedDirection::englishToTarget;
    const QString trimmed = text.trimmed();
    if (userPerceivedLength(trimmed) < minimumDetectedLength)
        return DetectedDirection::englishToTarget;

    const LanguageHypotheses hypotheses = recognizer.recognize(trimmed, {englishLanguageCode(), targetCode});
    if (hypotheses.dominant.isEmpty())
        return DetectedDirection::englishToTarget;
    const auto found = hypotheses.probability.constFind(hypotheses.dominant);
    if (found == hypotheses.probability.cend())
        return DetectedDirection::englishToTarget;
    const double probability = *found;
    if (std::isnan(probability) || probability < confidentProbability)
        return DetectedDirection::englishToTarget;
    return hypotheses.dominant == targetCode ? DetectedDirection::targetToEnglish : DetectedDirection::englishToTarget;
}

QString makeDirectionLabel(DetectedDirection direction, const QString& targetCode)
{
    const QString english = QStringLiteral("EN");
    return direction == DetectedDirection::englishToTarget ? english + arrow + labelCode(targetCode)
                                                           : labelCode(targetCode) + arrow + english;
}

QString makeDirectionLabel(const QString& targetCode)
{
    return makeDirectionLabel(DetectedDirection::englishToTarget, targetCode);
}

LanguagePair languagePair(DetectedDirection direction, const QString& targetCode)
{
    if (direction == DetectedDirection::englishToTarget)
        return {englishLanguageCode(), targetCode};
    return {targetCode, englishLanguageCode()};
}

qsizetype userPerceivedLength(const QString& text)
{
    if (text.isEmpty())
        return 0;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype count = 0;
    while (finder.toNextBoundary() != -1)
        ++count;
    return count;
}

bool containsHanCharacters(const QString& text)
{
    for (const char32_t scalar : text.toUcs4()) {
        if ((scalar >= 0x3400 && scalar <= 0x4DBF) || (scalar >= 0x4E00 && scalar <= 0x9FFF) ||
            (scalar >= 0x20000 && scalar <= 0x2FA1F))
            return true;
    }
    return false;
}

std::optional<QString> pronunciationReading(const QString& text, const QString& targetCode,
                                            const Transliterator& transliterator)
{
    if (!containsHanCharacters(text))
        return std::nullopt;
    std::optional<QString> candidate;
    if (targetCode == QLatin1String("zh-Hans"))
        candidate = transliterator.pinyin(text);
    else if (targetCode == QLatin1String("ja"))
        candidate = transliterator.hiragana(text);
    if (!candidate)
        return std::nullopt;
    const QString reading = candidate->trimmed();
    if (reading.isEmpty() || reading == text || reading == text.trimmed())
        return std::nullopt;
    return reading;
}

} // namespace tolvane
