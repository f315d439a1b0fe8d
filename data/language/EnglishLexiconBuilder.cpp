// SPDX-License-Identifier: GPL-3.0-or-later
//
// Compiles the English lexicon of the part-of-speech tagger from WordNet (wordnet-base): for
// each word form, its number of senses and sense-tagged uses as noun, verb, adjective and
// adverb, with the irregular forms of the exception lists credited to their base words.
//
//   tolvane_english_lexicon_builder WORDNET_DIR OUTPUT

#include "platform/linux/language/EnglishLexiconFormat.h"
#include "platform/linux/language/LanguageModelFormat.h"

#include <QCoreApplication>
#include <QFile>
#include <QHash>
#include <QSaveFile>

#include <algorithm>
#include <cstdio>
#include <map>

using namespace tolvane::englishlexicon;

namespace {

struct Counts
{
    quint32 uses[openClassCount] = {};
    quint32 senses[openClassCount] = {};
    std::uint8_t flags = 0;
};

QList<QByteArray> readLines(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "cannot read %s\n", qPrintable(path));
        return {};
    }
    return file.readAll().split('\n');
}

int classOfSynsetType(char type)
{
    switch (type) {
    case '1':
    case 'n':
        return noun;
    case '2':
    case 'v':
        return verb;
    case '3':
    case '5':
    case 'a':
    case 's':
        return adjective;
    case '4':
    case 'r':
        return adverb;
    default:
        return -1;
    }
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "usage: tolvane_english_lexicon_builder WORDNET_DIR OUTPUT\n");
        return 2;
    }
    const QString dir = QString::fromLocal8Bit(argv[1]);
    QHash<QByteArray, Counts> lexicon;

    const char* indexes[][2] = {{"index.noun", "n"}, {"index.verb", "v"}, {"index.adj", "a"}, {"index.adv", "r"}};
    for (const auto& [file, type] : indexes) {
        for (const QByteArray& line : readLines(dir + QLatin1Char('/') + QLatin1String(file))) {
            if (line.isEmpty() || line.startsWith(' '))
                continue; // licence header
            const QList<QByteArray> fields = line.split(' ');
            if (fields.size() < 3 || fields[0].contains('_'))
                continue;
            Counts& counts = lexicon[fields[0]];
            counts.senses[classOfSynsetType(type[0])] += fields[2].toUInt();
            counts.flags |= isLemma;
        }
    }
    // Sense keys look like "book%1:10:00::"; the digit after % is the synset type.
    for (const QByteArray& line : readLines(dir + QStringLiteral("/cntlist.rev"))) {
        const QList<QByteArray> fields = line.split(' ');
        if (fields.size() < 3)
            continue;
        const qsizetype percent = fields[0].indexOf('%');
        if (percent <= 0 || percent + 1 >= fields[0].size())
            continue;
        const QByteArray lemma = fields[0].left(percent);
        const int cls = classOfSynsetType(fields[0].at(percent + 1));
        if (cls < 0 || lemma.contains('_'))
            continue;
        lexicon[lemma].uses[cls] += fields[2].toUInt();
    }
    // Irregular forms borrow their base word's uses in the one class the list is about.
    const char* exceptions[][2] = {{"noun.exc", "n"}, {"verb.exc", "v"}, {"adj.exc", "a"}, {"adv.exc", "r"}};
    QHash<QByteArray, Counts> irregular;
    for (const auto& exception : exceptions) {
        const int cls = classOfSynsetType(exception[1][0]);
        for (const QByteArray& line : readLines(dir + QLatin1Char('/') + QLatin1String(exception[0]))) {
            const QList<QByteArray> fields = line.split(' ');
            if (fields.size() < 2 || fields[0].contains('_'))
                continue;
            const Counts base = lexicon.value(fields[1]);
            Counts& form = irregular[fields[0]];
            form.uses[cls] += std::max<quint32>(1, base.uses[cls]);
            form.senses[cls] += std::max<quint32>(1, base.senses[cls]);
            form.flags |= cls == noun ? irregularPlural : cls == verb ? irregularVerbForm : irregularComparison;
        }
    }
    for (auto it = irregular.cbegin(); it != irregular.cend(); ++it) {
        Counts& counts = lexicon[it.key()];
        for (int c = 0; c < openClassCount; ++c) {
            counts.uses[c] += it->uses[c];
            counts.senses[c] += it->senses[c];
        }
        counts.flags |= it->flags;
    }

    std::map<std::uint32_t, EnglishLexiconEntry> entries;
    for (auto it = lexicon.cbegin(); it != lexicon.cend(); ++it) {
        const std::uint32_t key = tolvane::languagemodel::wordKey(QString::fromUtf8(it.key()).toLower());
        EnglishLexiconEntry& entry = entries[key];
        entry.key = key;
        for (int c = 0; c < openClassCount; ++c) {
            entry.taggedUses[c] =
                static_cast<std::uint16_t>(std::min<quint32>(65535, entry.taggedUses[c] + it->uses[c]));
            entry.senses[c] = static_cast<std::uint8_t>(std::min<quint32>(255, entry.senses[c] + it->senses[c]));
        }
        entry.flags |= it->flags;
    }

    EnglishLexiconHeader header{};
    std::copy(std::begin(magic), std::end(magic), header.magic);
    header.entryCount = static_cast<std::uint32_t>(entries.size());
    QSaveFile out(QString::fromLocal8Bit(argv[2]));
    if (!out.open(QIODevice::WriteOnly)) {
        std::fprintf(stderr, "cannot write %s\n", argv[2]);
        return 1;
    }
    out.write(reinterpret_cast<const char*>(&header), sizeof header);
    for (const auto& [key, entry] : entries)
        out.write(reinterpret_cast<const char*>(&entry), sizeof entry);
    return out.commit() ? 0 : 1;
}
