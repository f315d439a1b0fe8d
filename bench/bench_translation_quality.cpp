// SPDX-License-Identifier: GPL-3.0-or-later
// First-gloss acceptability per direction and coverage of the word lists.
//   bench_translation_quality EN_TO_TARGET.tsv TARGET_TO_EN.tsv [WORDLIST_DIR]
// EN_TO_TARGET has a header "word<TAB>ru<TAB>fr…" and rows of accepted answers separated by '|';
// TARGET_TO_EN has rows "language<TAB>word<TAB>accepted|answers". A gloss counts when one of the
// translations it shows is accepted.
#include "platform/linux/translation/DictionaryTranslationEngine.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QMap>
#include <QTextStream>

#include <cstdio>

using namespace tolvane;

namespace {

struct Tally
{
    int n = 0;
    int top1 = 0;
    int found = 0;
};

QStringList readLines(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    return lines;
}

void score(DictionaryTranslationEngine& engine, Tally& tally, const QString& word, const QString& source,
           const QString& target, const QStringList& accepted, bool verbose)
{
    ++tally.n;
    auto result = engine.lookUpWord(word, source, target);
    if (!result) {
        if (verbose)
            std::printf("  miss %s-%s %s\n", qPrintable(source), qPrintable(target), qPrintable(word));
        return;
    }
    ++tally.found;
    const QStringList shown = result.value().senses.first().translations.mid(0, 3);
    for (const QString& t : shown) {
        if (accepted.contains(t)) {
            ++tally.top1;
            return;
        }
    }
    if (verbose)
        std::printf("  wrong %s-%s %s -> %s (want %s)\n", qPrintable(source), qPrintable(target), qPrintable(word),
                    qPrintable(shown.join(QLatin1Char(','))), qPrintable(accepted.join(QLatin1Char('|'))));
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 3) {
        std::fprintf(stderr, "usage: %s EN_TO_TARGET.tsv TARGET_TO_EN.tsv [WORDLIST_DIR] [--verbose]\n", argv[0]);
        return 2;
    }
    const bool verbose = args.contains(QStringLiteral("--verbose"));
    DictionaryTranslationEngine engine;
    QMap<QString, Tally> tallies; // by "source-target"

    const QStringList forward = readLines(args.at(1));
    if (!forward.isEmpty()) {
        const QStringList header = forward.first().split(QLatin1Char('\t'));
        for (const QString& line : forward.mid(1)) {
            const QStringList columns = line.split(QLatin1Char('\t'));
            for (qsizetype c = 1; c < columns.size() && c < header.size(); ++c) {
                const QString target = header.at(c).trimmed();
                score(engine, tallies[QStringLiteral("en-") + target], columns.first().trimmed(), QStringLiteral("en"),
                      target, columns.at(c).split(QLatin1Char('|')), verbose);
            }
        }
    }
    for (const QString& line : readLines(args.at(2))) {
        const QStringList columns = line.split(QLatin1Char('\t'));
        if (columns.size() < 3)
            continue;
        const QString source = columns.at(0).trimmed();
        score(engine, tallies[source + QStringLiteral("-en")], columns.at(1).trimmed(), source, QStringLiteral("en"),
              columns.at(2).split(QLatin1Char('|')), verbose);
    }

    double minimum = 100.0, sum = 0.0;
    for (auto it = tallies.cbegin(); it != tallies.cend(); ++it) {
        const double top1 = it->n ? 100.0 * it->top1 / it->n : 0.0;
        const double found = it->n ? 100.0 * it->found / it->n : 0.0;
        std::printf("%s top1=%.1f found=%.1f n=%d\n", qPrintable(it.key()), top1, found, it->n);
        minimum = std::min(minimum, top1);
        sum += top1;
    }
    if (args.size() > 3 && !args.at(3).startsWith(QLatin1String("--"))) {
        // Coverage of the word lists: how many words of each language find an entry at all.
        const QDir lists(args.at(3));
        for (const QString& name : lists.entryList({QStringLiteral("*.txt")}, QDir::Files, QDir::Name)) {
            const QString language = name.section(QLatin1Char('.'), 0, 0);
            int n = 0, found = 0;
            for (const QString& word : readLines(lists.filePath(name))) {
                ++n;
                const bool english = language == QLatin1String("en");
                if (engine.lookUpWord(word.trimmed(), language, english ? QStringLiteral("ru") : QStringLiteral("en")))
                    ++found;
            }
            std::fprintf(stderr, "coverage %s %.1f n=%d\n", qPrintable(language), n ? 100.0 * found / n : 0.0, n);
        }
    }
    std::printf("translation min_top1=%.1f mean_top1=%.1f\n", tallies.isEmpty() ? 0.0 : minimum,
                tallies.isEmpty() ? 0.0 : sum / double(tallies.size()));
    return 0;
}
