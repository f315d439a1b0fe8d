// SPDX-License-Identifier: GPL-3.0-or-later
//
// Quality and speed of the language recogniser.
//
//   bench_langid [--verbose] EVALUATION.tsv
//
// The file has the columns id, lang, category, text, shared_with. A decision is "target" when
// the recogniser gives the target language at least 0.6, else English. Target-language rows are
// judged against their own language; English rows against the language they share the word
// with, or else against every Latin- and Cyrillic-script target in turn. Shared words should
// abstain (stay below 0.6). The last line is machine-readable:
//   langid accuracy=97.8 abstain=93.1 n=735

#include "BenchSupport.h"
#include "platform/linux/language/LanguageModelRecognizer.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTextStream>

#include <cstdio>

using namespace tolvane;

namespace {

struct Row
{
    QString id, lang, category, text, sharedWith;
};

QList<Row> readRows(const QString& path)
{
    QList<Row> rows;
    for (const QStringList& f : bench::readEvaluationTable(path).value_or(QList<QStringList>())) {
        if (f.size() < 4)
            continue;
        rows.append({f[0], f[1], f[2], f[3], f.size() > 4 ? f[4].trimmed() : QString()});
    }
    return rows;
}

double microsecondsPerCall(const LanguageModelRecognizer& recognizer, const QStringList& texts, const QString& target)
{
    if (texts.isEmpty())
        return 0;
    const QStringList candidates{QStringLiteral("en"), target};
    QElapsedTimer timer;
    timer.start();
    int calls = 0;
    volatile double sink = 0;
    while (timer.elapsed() < 300) {
        for (const QString& text : texts) {
            sink = sink + recognizer.recognize(text, candidates).probability.value(target);
            ++calls;
        }
    }
    return static_cast<double>(timer.nsecsElapsed()) / 1000.0 / calls;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const std::optional<bench::EvaluationArguments> arguments = bench::evaluationArguments("bench_langid");
    if (!arguments)
        return 2;
    const bool verbose = arguments->verbose;
    const QList<Row> rows = readRows(arguments->path);
    if (rows.isEmpty()) {
        std::fprintf(stderr, "no rows in %s\n", qPrintable(arguments->path));
        return 2;
    }
    const long rssBefore = bench::residentKilobytes();

    QElapsedTimer loadTimer;
    loadTimer.start();
    LanguageModelRecognizer recognizer(LanguageModelRecognizer::defaultModelDirectory());
    recognizer.recognize(QStringLiteral("warm"), {QStringLiteral("en"), QStringLiteral("fr")});
    const double loadMs = static_cast<double>(loadTimer.nsecsElapsed()) / 1e6;
    if (!recognizer.model(QStringLiteral("en"))) {
        std::fprintf(stderr, "no language models found (set TOLVANE_LANGUAGE_MODEL_DIR)\n");
        return 1;
    }

    // Speed and memory with English and one target, before the other models are mapped.
    QStringList words, sentences;
    for (const Row& row : rows) {
        if (row.lang == QLatin1String("fr") || row.lang == QLatin1String("en"))
            (row.category == QLatin1String("sentence") ? sentences : words).append(row.text);
    }
    const double wordMicros = microsecondsPerCall(recognizer, words, QStringLiteral("fr"));
    const double sentenceMicros = microsecondsPerCall(recognizer, sentences, QStringLiteral("fr"));
    const long rssTwoLanguages = bench::residentKilobytes();

    const QStringList everyTarget = {"fr", "de", "it", "pt", "es", "ru"};
    int decisions = 0, correct = 0, shared = 0, abstained = 0;
    for (const Row& row : rows) {
        const bool isShared = row.category == QLatin1String("word_shared");
        QStringList targets;
        if (row.lang != QLatin1String("en"))
            targets = {row.lang};
        else if (!row.sharedWith.isEmpty())
            targets = {row.sharedWith};
        else
            targets = everyTarget;
        for (const QString& target : targets) {
            const LanguageHypotheses answer = recognizer.recognize(row.text, {QStringLiteral("en"), target});
            const double p = answer.probability.value(target);
            const bool saysTarget = p >= 0.6;
            bool right = false;
            if (isShared) {
                ++shared;
                abstained += !saysTarget;
                right = !saysTarget;
            } else {
                ++decisions;
                right = saysTarget == (row.lang != QLatin1String("en"));
                correct += right;
            }
            if (verbose && !right)
                std::printf("miss %s %s [%s] %s p(%s)=%.3f\n", qPrintable(row.id), qPrintable(row.category),
                            qPrintable(row.lang), qPrintable(row.text), qPrintable(target), p);
        }
    }

    std::printf("load (English + French mapped) %.2f ms\n", loadMs);
    std::printf("time per word %.2f us, per sentence %.2f us\n", wordMicros, sentenceMicros);
    std::printf("resident memory %.1f MB (English + French; %.1f MB before loading)\n", rssTwoLanguages / 1024.0,
                rssBefore / 1024.0);
    std::printf("decisions %d, correct %d; shared words %d, abstained %d\n", decisions, correct, shared, abstained);
    std::printf("langid accuracy=%.1f abstain=%.1f n=%lld\n", decisions ? 100.0 * correct / decisions : 0.0,
                shared ? 100.0 * abstained / shared : 0.0, static_cast<long long>(rows.size()));
    return 0;
}
