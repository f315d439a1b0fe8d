// SPDX-License-Identifier: GPL-3.0-or-later
// Acceptability of the first gloss, and of anything shown at all, per direction and word list.
//   bench_translation_quality EN_TO_TARGET.tsv TARGET_TO_EN.tsv [--own EN_TO_TARGET.tsv TARGET_TO_EN.tsv]
//                             [--tune CONCEPTS.tsv]… [--wordlists DIR] [--verbose]
// EN_TO_TARGET has a header "word<TAB>ru<TAB>fr…" and rows of accepted answers separated by '|';
// TARGET_TO_EN has rows "language<TAB>word<TAB>accepted|answers". The first pair of lists is split
// in two halves by alternate rows of each direction (devA, devB): ranking is tuned on devA, and
// devB shows whether the tuning carries over. The own lists are never tuned on.
// CONCEPTS lists (data/eval/concepts_*.tsv) give one concept a line: accepted English words, then
// the accepted words of ru fr de it ja pt es zh ko; each is scored both ways as "tune". Into
// English, a word first in the column of several concepts ("рука": hand, arm) accepts the English
// words of all of them and is scored once.
// "first" counts a word when one of the translations of its first gloss (what a card shows) is
// accepted, "any" when any translation of any sense is.
#include "platform/linux/translation/DictionaryTranslationEngine.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QMap>

#include <cstdio>

using namespace tolvane;

namespace {

struct Tally
{
    int n = 0;
    int first = 0;
    int any = 0;
    int found = 0;

    double percent(int count) const { return n ? 100.0 * count / n : 0.0; }
};

using Tallies = QMap<QString, Tally>; // by "source-target"

QStringList readLines(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        std::fprintf(stderr, "cannot read %s\n", qPrintable(path));
        return {};
    }
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

void score(DictionaryTranslationEngine& engine, Tally& tally, const QString& word, const QString& source,
           const QString& target, const QStringList& accepted, const char* set, bool verbose)
{
    ++tally.n;
    auto result = engine.lookUpWord(word, source, target);
    if (!result) {
        if (verbose)
            std::printf("  %s miss %s-%s %s\n", set, qPrintable(source), qPrintable(target), qPrintable(word));
        return;
    }
    ++tally.found;
    const WordTranslation& found = result.value();
    const QStringList shown = found.senses.first().translations.mid(0, 3);
    const bool first =
        std::any_of(shown.cbegin(), shown.cend(), [&](const QString& t) { return accepted.contains(t); });
    bool any = first;
    for (const auto& sense : found.senses) {
        for (const QString& t : sense.translations)
            any = any || accepted.contains(t);
    }
    tally.first += first ? 1 : 0;
    tally.any += any ? 1 : 0;
    if (verbose && !first)
        std::printf("  %s %s %s-%s %s -> %s (want %s)\n", set, any ? "later" : "wrong", qPrintable(source),
                    qPrintable(target), qPrintable(word), qPrintable(found.gloss()),
                    qPrintable(accepted.join(QLatin1Char('|'))));
}

// Scores both lists; with `split`, alternate rows of each direction go to `tallies` and `other`.
void scoreLists(DictionaryTranslationEngine& engine, const QString& forwardPath, const QString& backwardPath,
                Tallies& tallies, Tallies* other, const char* set, const char* otherSet, bool verbose)
{
    QMap<QString, int> rowOfDirection;
    auto place = [&](const QString& direction) -> std::pair<Tally*, const char*> {
        const int row = rowOfDirection[direction]++;
        if (other && row % 2 == 1)
            return {&(*other)[direction], otherSet};
        return {&tallies[direction], set};
    };
    const QStringList forward = readLines(forwardPath);
    if (!forward.isEmpty()) {
        const QStringList header = forward.first().split(QLatin1Char('\t'));
        for (const QString& line : forward.mid(1)) {
            const QStringList columns = line.split(QLatin1Char('\t'));
            for (qsizetype c = 1; c < columns.size() && c < header.size(); ++c) {
                const QString target = header.at(c).trimmed();
                if (columns.at(c).trimmed().isEmpty())
                    continue;
                const QString direction = QStringLiteral("en-") + target;
                auto [tally, name] = place(direction);
                score(engine, *tally, columns.first().trimmed(), QStringLiteral("en"), target,
                      columns.at(c).split(QLatin1Char('|')), name, verbose);
            }
        }
    }
    for (const QString& line : readLines(backwardPath)) {
        const QStringList columns = line.split(QLatin1Char('\t'));
        if (columns.size() < 3)
            continue;
        const QString source = columns.at(0).trimmed();
        auto [tally, name] = place(source + QStringLiteral("-en"));
        score(engine, *tally, columns.at(1).trimmed(), source, QStringLiteral("en"),
              columns.at(2).split(QLatin1Char('|')), name, verbose);
    }
}

void scoreConcepts(DictionaryTranslationEngine& engine, const QStringList& paths, Tallies& tallies, bool verbose)
{
    static const QStringList languages = {QStringLiteral("ru"), QStringLiteral("fr"), QStringLiteral("de"),
                                          QStringLiteral("it"), QStringLiteral("ja"), QStringLiteral("pt"),
                                          QStringLiteral("es"), QStringLiteral("zh"), QStringLiteral("ko")};
    QList<QStringList> concepts;
    for (const QString& path : paths) {
        for (const QString& line : readLines(path)) {
            QStringList columns = line.split(QLatin1Char('\t'));
            if (columns.size() == languages.size() + 1 && !columns.first().trimmed().isEmpty())
                concepts.append(columns);
        }
    }
    // Into English: every concept a word heads adds its English words.
    QMap<std::pair<QString, QString>, QStringList> english; // (language, word) -> accepted
    QList<std::pair<QString, QString>> order;
    for (const QStringList& row : concepts) {
        const QStringList accepted = row.first().split(QLatin1Char('|'), Qt::SkipEmptyParts);
        for (qsizetype c = 0; c < languages.size(); ++c) {
            const QStringList answers = row.at(c + 1).split(QLatin1Char('|'), Qt::SkipEmptyParts);
            if (answers.isEmpty())
                continue;
            const QString query = answers.first().trimmed();
            score(engine, tallies[QStringLiteral("en-") + languages.at(c)], accepted.first().trimmed(),
                  QStringLiteral("en"), languages.at(c), answers, "tune", verbose);
            const std::pair key{languages.at(c), query};
            if (!english.contains(key))
                order.append(key);
            english[key] += accepted;
        }
    }
    for (const auto& key : order)
        score(engine, tallies[key.first + QStringLiteral("-en")], key.second, key.first, QStringLiteral("en"),
              english.value(key), "tune", verbose);
}

void printSummary(const char* set, const Tallies& tallies)
{
    if (tallies.isEmpty())
        return;
    double minimum = 100.0, sum = 0.0, minimumAny = 100.0;
    for (const Tally& t : tallies) {
        minimum = std::min(minimum, t.percent(t.first));
        minimumAny = std::min(minimumAny, t.percent(t.any));
        sum += t.percent(t.first);
    }
    std::printf("%s min_first=%.1f mean_first=%.1f min_any=%.1f\n", set, minimum, sum / double(tallies.size()),
                minimumAny);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QStringList args = app.arguments().mid(1);
    const bool verbose = args.removeAll(QStringLiteral("--verbose")) > 0;
    QString ownForward, ownBackward, wordlists;
    if (const qsizetype i = args.indexOf(QStringLiteral("--own")); i >= 0 && i + 2 < args.size()) {
        ownForward = args.at(i + 1);
        ownBackward = args.at(i + 2);
        args.remove(i, 3);
    }
    QStringList tuneLists;
    for (qsizetype i = args.indexOf(QStringLiteral("--tune")); i >= 0 && i + 1 < args.size();
         i = args.indexOf(QStringLiteral("--tune"))) {
        tuneLists.append(args.at(i + 1));
        args.remove(i, 2);
    }
    if (const qsizetype i = args.indexOf(QStringLiteral("--wordlists")); i >= 0 && i + 1 < args.size()) {
        wordlists = args.at(i + 1);
        args.remove(i, 2);
    }
    if (args.size() == 3 && wordlists.isEmpty())
        wordlists = args.takeLast();
    if (args.size() != 2) {
        std::fprintf(stderr,
                     "usage: %s EN_TO_TARGET.tsv TARGET_TO_EN.tsv [--own EN_TO_TARGET.tsv TARGET_TO_EN.tsv] "
                     "[--tune CONCEPTS.tsv]… [--wordlists DIR] [--verbose]\n",
                     argv[0]);
        return 2;
    }
    DictionaryTranslationEngine engine;
    Tallies devA, devB, tune, own;
    scoreLists(engine, args.at(0), args.at(1), devA, &devB, "devA", "devB", verbose);
    if (!tuneLists.isEmpty())
        scoreConcepts(engine, tuneLists, tune, verbose);
    if (!ownForward.isEmpty())
        scoreLists(engine, ownForward, ownBackward, own, nullptr, "own", nullptr, verbose);

    QStringList directions = devA.keys() + tune.keys() + own.keys();
    directions.removeDuplicates();
    std::sort(directions.begin(), directions.end());
    for (const QString& direction : directions) {
        std::printf("%-6s", qPrintable(direction));
        for (const auto& [name, tallies] :
             {std::pair{"devA", &devA}, {"devB", &devB}, {"tune", &tune}, {"own", &own}}) {
            if (!tallies->contains(direction))
                continue;
            const Tally& t = tallies->value(direction);
            std::printf("  %s first=%5.1f any=%5.1f n=%-3d", name, t.percent(t.first), t.percent(t.any), t.n);
        }
        std::printf("\n");
    }
    printSummary("devA", devA);
    printSummary("devB", devB);
    printSummary("tune", tune);
    printSummary("own", own);

    if (!wordlists.isEmpty()) {
        // Coverage of the word lists: how many words of each language find an entry at all.
        const QDir lists(wordlists);
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
    return 0;
}
