// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/capture/OcrFallback.h"

#include "core/capture/GraphemeText.h"
#include "core/translation/LanguageTable.h"

#include <QThreadPool>

#include <atomic>
#include <cmath>
#include <limits>

namespace tolvane {

namespace {

const QString english = QStringLiteral("en");

} // namespace

// One recognition in flight; its completion runs once, whatever happens on the way.
struct OcrFallback::Pending
{
    QString targetCode;
    Completion completion;
    std::atomic_bool done{false};

    void complete(std::optional<QString> word, std::optional<QString> line)
    {
        if (done.exchange(true))
            return;
        if (!word || word->isEmpty())
            completion(std::nullopt, std::nullopt);
        else
            completion(std::move(word), std::move(line));
    }
};

OcrFallback::OcrFallback(ScreenTextRecognizer& recognizer, const LanguageRecognizer& languages,
                         const SpellChecker& spelling, Scheduler& scheduler, BackgroundRunner runner)
    : m_recognizer(recognizer)
    , m_languages(languages)
    , m_spelling(spelling)
    , m_scheduler(scheduler)
    , m_runner(std::move(runner))
{
    if (!m_runner)
        m_runner = [](Task task) { QThreadPool::globalInstance()->start(std::move(task)); };
}

OcrFallback::~OcrFallback() = default;

QRectF OcrFallback::captureStrip(QPointF point)
{
    const double x = std::round(point.x() / snapGrid) * snapGrid;
    const double y = std::round(point.y() / snapGrid) * snapGrid;
    return {x - stripWidth / 2, y - stripHeight / 2, stripWidth, stripHeight};
}

std::optional<OcrFallback::NearestWord> OcrFallback::nearestWord(const RecognizedText& text)
{
    const QSizeF size = text.strip.size().isEmpty() ? QSizeF(stripWidth, stripHeight) : text.strip.size();
    auto distance = [&](const QRectF& box) {
        // In the strip's own unit square, as a recogniser reports boxes: a line above or below
        // is much further than a word beside.
        const double dx = box.center().x() / size.width() - 0.5;
        const double dy = box.center().y() / size.height() - 0.5;
        return std::hypot(dx, dy);
    };

    double bestDistance = std::numeric_limits<double>::max();
    std::optional<NearestWord> best;
    for (const RecognizedLine& line : text.lines) {
        qsizetype searchFrom = 0;
        qsizetype nextWord = 0;
        for (const QString& piece : textrules::splitAtWhitespace(line.text)) {
            const qsizetype at = line.text.indexOf(piece, searchFrom);
            if (at < 0)
                continue;
            searchFrom = at + piece.size();
            QRectF box = line.box;
            for (qsizetype w = nextWord; w < line.words.size(); ++w) {
                if (line.words[w].text == piece) {
                    if (!line.words[w].box.isEmpty())
                        box = line.words[w].box;
                    nextWord = w + 1;
                    break;
                }
            }
            const double d = distance(box);
            if (d < bestDistance) {
                bestDistance = d;
                const QString trimmedLine = textrules::trimmedWhitespace(line.text);
                best = NearestWord{piece, trimmedLine.isEmpty() ? std::nullopt : std::optional<QString>(trimmedLine)};
            }
        }
    }
    if (!best)
        return std::nullopt;
    best->word = textrules::trimmedPunctuation(textrules::trimmedWhitespace(best->word));
    if (best->word.isEmpty())
        return std::nullopt;
    return best;
}

bool OcrFallback::looksEnglish(const QString& word, const QString& targetCode) const
{
    const LanguageHypotheses hypotheses = m_languages.recognize(word, {english, targetCode});
    const double pEnglish = hypotheses.probability.value(english, 0.0);
    if (pEnglish < englishConfidence)
        return false;
    const auto target = hypotheses.probability.constFind(targetCode);
    return target == hypotheses.probability.cend() || *target < pEnglish;
}

QString OcrFallback::acceptedCorrection(const QString& word, const QString& correction)
{
    if (correction.isEmpty() || correction.compare(word, Qt::CaseInsensitive) == 0)
        return word;
    if (textrules::editDistance(word.toLower(), correction.toLower()) > maximumCorrectionDistance)
        return word;
    return correction;
}

QString OcrFallback::spellCorrected(const QString& word, const QString& targetCode) const
{
    if (!looksEnglish(word, targetCode) || m_spelling.isCorrect(word))
        return word;
    return acceptedCorrection(word, m_spelling.suggestions(word).value(0));
}

void OcrFallback::recognizeWord(QPointF point, const QString& targetCode, Completion completion)
{
    auto pending = std::make_shared<Pending>();
    pending->targetCode = targetCode;
    pending->completion = std::move(completion);
    const Lifetime::Watch alive = m_lifetime.watch();
    Scheduler& scheduler = m_scheduler;
    m_recognizer.recognizeStrip(captureStrip(point), recognitionLanguages(targetCode),
                                [this, pending, alive, &scheduler](Result<RecognizedText> result) {
                                    // Any thread. Choosing the word is pure; the rest goes back to the main thread.
                                    std::optional<NearestWord> nearest =
                                        result ? nearestWord(result.value()) : std::nullopt;
                                    scheduler.post([this, pending, alive, nearest = std::move(nearest)]() mutable {
                                        if (!alive)
                                            pending->complete(std::nullopt, std::nullopt);
                                        else
                                            finish(pending, std::move(nearest));
                                    });
                                });
}

void OcrFallback::finish(const std::shared_ptr<Pending>& pending, std::optional<NearestWord> nearest)
{
    if (!nearest) {
        pending->complete(std::nullopt, std::nullopt);
        return;
    }
    if (!looksEnglish(nearest->word, pending->targetCode) || m_spelling.isCorrect(nearest->word)) {
        pending->complete(nearest->word, nearest->line);
        return;
    }
    // Suggestions cost tens of milliseconds: find them off the main thread.
    const Lifetime::Watch alive = m_lifetime.watch();
    const SpellChecker& spelling = m_spelling;
    Scheduler& scheduler = m_scheduler;
    m_runner([pending, nearest = *nearest, alive, &spelling, &scheduler] {
        const QString correction = alive ? spelling.suggestions(nearest.word).value(0) : QString();
        scheduler.post([pending, nearest, correction] {
            pending->complete(acceptedCorrection(nearest.word, correction), nearest.line);
        });
    });
}

} // namespace tolvane
