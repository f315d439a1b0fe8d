// SPDX-License-Identifier: GPL-3.0-or-later
//
// Quality and speed of the English part-of-speech tagger.
//
//   bench_pos [--verbose] EVALUATION.tsv…
//
// Each file has the columns id, sentence, word, occurrence, gold (noun, verb, adjective, adverb,
// preposition, conjunction, pronoun, determiner, or other for "no class"). occurrence counts
// whole-word, case-insensitive matches from 1. The time per sentence is taken over all files;
// the last lines are machine-readable, one per file:
//   pos accuracy=86.6 n=149 file=pos_eval.tsv

#include "BenchSupport.h"
#include "platform/linux/language/WordNetLexicalTagger.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <cstdio>

using namespace tolvane;

namespace {

QString className(std::optional<LexicalClass> c)
{
    if (!c)
        return QStringLiteral("other");
    switch (*c) {
    case LexicalClass::noun:
        return QStringLiteral("noun");
    case LexicalClass::verb:
        return QStringLiteral("verb");
    case LexicalClass::adjective:
        return QStringLiteral("adjective");
    case LexicalClass::adverb:
        return QStringLiteral("adverb");
    case LexicalClass::preposition:
        return QStringLiteral("preposition");
    case LexicalClass::conjunction:
        return QStringLiteral("conjunction");
    case LexicalClass::pronoun:
        return QStringLiteral("pronoun");
    case LexicalClass::determiner:
        return QStringLiteral("determiner");
    }
    return QStringLiteral("other");
}

struct Item
{
    QString id, sentence, word, gold;
    qsizetype start = -1;
};

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QStringList paths = QCoreApplication::arguments().mid(1);
    const bool verbose = paths.removeAll(QStringLiteral("--verbose")) > 0;
    if (paths.isEmpty()) {
        std::fprintf(stderr, "usage: bench_pos [--verbose] EVALUATION.tsv…\n");
        return 2;
    }
    QList<QList<Item>> files;
    for (const QString& path : paths) {
        const std::optional<QList<QStringList>> table = bench::readEvaluationTable(path);
        if (!table) {
            std::fprintf(stderr, "cannot read %s\n", qPrintable(path));
            return 2;
        }
        QList<Item> items;
        for (const QStringList& f : *table) {
            if (f.size() < 5)
                continue;
            Item item{f[0], f[1], f[2], f[4].trimmed()};
            const QRegularExpression whole(QStringLiteral("\\b%1\\b").arg(QRegularExpression::escape(item.word)),
                                           QRegularExpression::CaseInsensitiveOption);
            int wanted = qMax(1, f[3].toInt());
            for (auto it = whole.globalMatch(item.sentence); it.hasNext();) {
                const auto match = it.next();
                if (--wanted == 0) {
                    item.start = match.capturedStart();
                    break;
                }
            }
            items.append(item);
        }
        files.append(items);
    }

    QElapsedTimer loadTimer;
    loadTimer.start();
    WordNetLexicalTagger tagger(WordNetLexicalTagger::defaultLexiconPath());
    const double loadMs = static_cast<double>(loadTimer.nsecsElapsed()) / 1e6;
    if (!tagger.hasLexicon()) {
        // Closed classes alone would score about half: a figure that measures the set-up, not the tagger.
        std::fprintf(stderr, "bench_pos: no English lexicon found (build the language data first); nothing measured\n");
        return 1;
    }

    QList<int> correct;
    for (const QList<Item>& items : files) {
        int right = 0;
        for (const Item& item : items) {
            const QString answer = item.start < 0
                                       ? QStringLiteral("other")
                                       : className(tagger.lexicalClass(item.sentence, item.start, item.word.size()));
            right += answer == item.gold;
            if (verbose && answer != item.gold)
                std::printf("miss %s %s | %s: %s, expected %s\n", qPrintable(item.id), qPrintable(item.sentence),
                            qPrintable(item.word), qPrintable(answer), qPrintable(item.gold));
        }
        correct.append(right);
    }

    QElapsedTimer timer;
    timer.start();
    long calls = 0;
    while (timer.elapsed() < 300) {
        for (const QList<Item>& items : files) {
            for (const Item& item : items) {
                if (item.start >= 0)
                    tagger.lexicalClass(item.sentence, item.start, item.word.size());
                ++calls;
            }
        }
    }
    std::printf("load %.2f ms, resident memory %.1f MB\n", loadMs, bench::residentKilobytes() / 1024.0);
    std::printf("time per sentence %.2f us\n", static_cast<double>(timer.nsecsElapsed()) / 1000.0 / calls);
    for (qsizetype i = 0; i < files.size(); ++i) {
        const qsizetype n = files[i].size();
        std::printf("pos accuracy=%.1f n=%lld file=%s\n", n == 0 ? 0.0 : 100.0 * correct[i] / n,
                    static_cast<long long>(n), qPrintable(QFileInfo(paths[i]).fileName()));
    }
    return 0;
}
