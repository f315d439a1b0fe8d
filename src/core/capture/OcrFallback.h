// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/Lifetime.h"
#include "core/support/Scheduler.h"
#include "platform/LanguageRecognizer.h"
#include "platform/ScreenTextRecognizer.h"
#include "platform/SpellChecker.h"

#include <QPointF>
#include <QRectF>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

namespace tolvane {

// Reads the word under the pointer off the screen when the accessibility interface has none: a
// strip around the pointer is captured and recognised, the recognised word nearest the pointer is
// taken, and English words get a light spelling correction. The caller checks that the fallback
// is enabled and that capturing is allowed.
class OcrFallback final
{
public:
    // The word and the recognised line holding it; both absent when nothing was found.
    using Completion = std::function<void(std::optional<QString> word, std::optional<QString> line)>;
    // Runs slow work away from the main thread.
    using BackgroundRunner = std::function<void(Task)>;

    static constexpr double stripWidth = 600;
    static constexpr double stripHeight = 72;
    static constexpr double snapGrid = 8;
    static constexpr double englishConfidence = 0.6;
    static constexpr int maximumCorrectionDistance = 2;

    // runner defaults to the global thread pool.
    OcrFallback(ScreenTextRecognizer& recognizer, const LanguageRecognizer& languages, const SpellChecker& spelling,
                Scheduler& scheduler, BackgroundRunner runner = {});
    ~OcrFallback();

    // point: the pointer in bottom-left-origin screen points; targetCode: the learner's language.
    // completion is called exactly once, on the main thread.
    void recognizeWord(QPointF point, const QString& targetCode, Completion completion);
    // The word with its English spelling corrected, or unchanged. May take tens of milliseconds.
    QString spellCorrected(const QString& word, const QString& targetCode) const;

    // The strip to capture: centred on the pointer snapped to the grid, so small movements of the
    // pointer keep the same strip. Bottom-left-origin points.
    static QRectF captureStrip(QPointF point);

    struct NearestWord
    {
        QString word;
        std::optional<QString> line;
    };
    // The recognised word nearest the strip's centre (the first of equally near ones), trimmed of
    // whitespace and punctuation; nothing when none is left.
    static std::optional<NearestWord> nearestWord(const RecognizedText& text);
    // Whether the word reads as English rather than the target language.
    bool looksEnglish(const QString& word, const QString& targetCode) const;
    // The spell checker's correction, when it is a small edit of the word.
    static QString acceptedCorrection(const QString& word, const QString& correction);

private:
    struct Pending;
    void finish(const std::shared_ptr<Pending>& pending, std::optional<NearestWord> nearest);

    ScreenTextRecognizer& m_recognizer;
    const LanguageRecognizer& m_languages;
    const SpellChecker& m_spelling;
    Scheduler& m_scheduler;
    BackgroundRunner m_runner;
    Lifetime m_lifetime;
};

} // namespace tolvane
