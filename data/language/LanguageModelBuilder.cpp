// SPDX-License-Identifier: GPL-3.0-or-later
//
// Compiles one language's recogniser model from text that Debian packages ship: running text
// (word counts and character n-grams), a Hunspell dictionary (its stems, and which corpus words
// it accepts) and bilingual dictionary headwords. Run by the build; see language.cmake.
//
//   tolvane_language_model_builder --output FILE [--corpus TEXT]... [--glosses WORDNET_DATA]... [--dictionary
//   AFF_DIC_BASE]
//       [--headwords DICTD_INDEX]... [--rare-headwords DICTD_INDEX]... [--probe TEXT]... [--keep-capitalized]

#include "platform/linux/language/LanguageModelFormat.h"

#include <hunspell/hunspell.hxx>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QHash>
#include <QSaveFile>
#include <QSet>
#include <QTextStream>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <set>
#include <vector>

using namespace tolvane::languagemodel;

namespace {

struct WordInfo
{
    std::uint16_t flags = 0;
    quint64 count = 0;
    QString surface; // a spelling as written, for the spelling dictionary
};

QString readText(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "cannot read %s\n", qPrintable(path));
        return {};
    }
    return QString::fromUtf8(file.readAll());
}

class ModelBuilder
{
public:
    std::vector<quint64> ngramCounts = std::vector<quint64>(ngramBuckets, 0);
    double totals[maxNgramOrder] = {};
    QHash<QString, WordInfo> words;
    std::set<std::pair<QString, QString>> suffixRules; // ending, strip (folded)

    void addNgrams(const QString& folded, quint64 weight)
    {
        forEachNgram(folded, [&](int order, std::uint32_t bucket) {
            ngramCounts[bucket] += weight;
            totals[order - 1] += static_cast<double>(weight);
        });
    }

    // occurrencesPerCount > 1 for text that over-represents unusual words (definitions): only
    // every so many occurrences count as one.
    void addCorpus(const QString& text, quint64 occurrencesPerCount = 1)
    {
        QHash<QString, quint64> counts;
        QHash<QString, QString> surfaces;
        forEachWord(text, [&](QStringView word) {
            const QString folded = foldWord(word);
            if (++counts[folded] == 1)
                surfaces.insert(folded, word.toString());
            return true;
        });
        for (auto it = counts.cbegin(); it != counts.cend(); ++it) {
            addNgrams(it.key(), it.value());
            const quint64 count = it.value() / occurrencesPerCount;
            if (count == 0)
                continue;
            WordInfo& info = words[it.key()];
            info.flags |= inCorpus;
            info.count += count;
            if (info.surface.isEmpty())
                info.surface = surfaces.value(it.key());
        }
    }

    void addDictionaryStems(const QString& dicPath, bool keepCapitalized)
    {
        const QString text = readText(dicPath);
        const QStringList lines = text.split(QLatin1Char('\n'));
        for (qsizetype i = 1; i < lines.size(); ++i) {
            QString stem = lines[i].section(QLatin1Char('/'), 0, 0).trimmed();
            if (stem.startsWith(QChar(0xFEFF)))
                stem.remove(0, 1);
            if (stem.isEmpty() || stem.size() > 40)
                continue;
            if (!keepCapitalized && stem.front().isUpper())
                continue; // names, not words of the language
            if (!std::all_of(stem.cbegin(), stem.cend(), [](QChar c) { return isWordCharacter(c) || isApostrophe(c); }))
                continue;
            const QString folded = foldWord(stem);
            WordInfo& info = words[folded];
            if (!(info.flags & (inDictionary | isHeadword | isRareHeadword)))
                addNgrams(folded, 1);
            info.flags |= inDictionary;
            if (info.surface.isEmpty())
                info.surface = stem;
        }
    }

    void addHeadwords(const QString& indexPath, std::uint16_t flag)
    {
        const QString text = readText(indexPath);
        for (const QString& line : text.split(QLatin1Char('\n'))) {
            const QString headword = line.section(QLatin1Char('\t'), 0, 0).trimmed();
            if (headword.isEmpty() || headword.startsWith(QLatin1String("00database")) ||
                headword.startsWith(QLatin1Char('_')) || headword.size() > 40)
                continue;
            bool single = true;
            qsizetype letters = 0;
            for (const QChar c : headword) {
                if (isWordCharacter(c))
                    ++letters;
                else if (!isApostrophe(c))
                    single = false;
            }
            if (!single || letters == 0)
                continue;
            const QString folded = foldWord(headword);
            WordInfo& info = words[folded];
            if (!(info.flags & (inDictionary | isHeadword | isRareHeadword)))
                addNgrams(folded, 1);
            info.flags |= flag;
            if (info.surface.isEmpty())
                info.surface = headword;
        }
    }

    // Suffix rules ("SFX flag strip add condition") in the affix file; flags after "/" are dropped.
    void addSuffixRules(const QString& affPath)
    {
        for (const QString& line : readText(affPath).split(QLatin1Char('\n'))) {
            const QStringList fields = line.simplified().split(QLatin1Char(' '));
            if (fields.size() < 5 || fields[0] != QLatin1String("SFX"))
                continue;
            QString strip = fields[2] == QLatin1String("0") ? QString() : fields[2];
            QString ending = fields[3].section(QLatin1Char('/'), 0, 0);
            if (ending == QLatin1String("0"))
                ending.clear();
            ending = foldWord(ending);
            strip = foldWord(strip);
            if (ending.isEmpty() || ending.size() > 12 || strip.size() > 12 || ending == strip)
                continue;
            suffixRules.insert({ending, strip});
        }
    }

    // Marks the words the spelling dictionary accepts, in any of their spellings we have seen.
    void checkSpelling(Hunspell& speller, const QSet<QString>& extraSurfaces)
    {
        auto accepts = [&](const QString& surface) {
            const std::string utf8 = surface.toStdString();
            if (speller.spell(utf8))
                return true;
            const QString capitalized = surface.left(1).toUpper() + surface.mid(1);
            return capitalized != surface && speller.spell(capitalized.toStdString());
        };
        for (auto it = words.begin(); it != words.end(); ++it) {
            if (!(it->flags & inDictionary) && !it->surface.isEmpty() && accepts(it->surface))
                it->flags |= inDictionary;
        }
        for (const QString& surface : extraSurfaces) {
            const QString folded = foldWord(surface);
            if (words.contains(folded) || !accepts(surface))
                continue;
            WordInfo& info = words[folded];
            info.flags |= inDictionary;
            info.surface = surface;
        }
    }

    bool write(const QString& path) const
    {
        std::vector<LanguageModelWord> entries;
        entries.reserve(static_cast<std::size_t>(words.size()));
        std::map<std::uint32_t, LanguageModelWord> byKey;
        for (auto it = words.cbegin(); it != words.cend(); ++it) {
            const std::uint32_t key = wordKey(it.key());
            LanguageModelWord& entry = byKey[key];
            entry.key = key;
            entry.flags |= it->flags;
            entry.corpusCount = static_cast<std::uint16_t>(std::min<quint64>(65535, entry.corpusCount + it->count));
        }
        for (const auto& [key, entry] : byKey)
            entries.push_back(entry);

        LanguageModelHeader header{};
        std::copy(std::begin(magic), std::end(magic), header.magic);
        header.ngramBuckets = ngramBuckets;
        header.wordCount = static_cast<std::uint32_t>(entries.size());
        for (int i = 0; i < maxNgramOrder; ++i)
            header.ngramTotals[i] = totals[i];

        std::vector<LanguageModelSuffix> suffixes;
        QByteArray strips;
        QHash<QString, std::uint16_t> stripOffsets;
        for (const auto& [ending, strip] : suffixRules) {
            if (!stripOffsets.contains(strip)) {
                stripOffsets.insert(strip, static_cast<std::uint16_t>(strips.size()));
                strips += strip.toUtf8();
            }
            if (strips.size() > 65000)
                break;
            LanguageModelSuffix suffix{};
            suffix.endingKey = wordKey(ending);
            suffix.stripOffset = stripOffsets.value(strip);
            suffix.stripLength = static_cast<std::uint8_t>(strip.toUtf8().size());
            suffix.endingLength = static_cast<std::uint8_t>(ending.size());
            suffixes.push_back(suffix);
        }
        std::sort(suffixes.begin(), suffixes.end(),
                  [](const LanguageModelSuffix& a, const LanguageModelSuffix& b) { return a.endingKey < b.endingKey; });
        header.suffixCount = static_cast<std::uint32_t>(suffixes.size());
        header.stripBytes = static_cast<std::uint32_t>(strips.size());

        std::vector<std::uint16_t> weights(ngramBuckets);
        for (std::size_t i = 0; i < ngramBuckets; ++i)
            weights[i] = static_cast<std::uint16_t>(
                std::min(65535.0, std::round(std::log(static_cast<double>(ngramCounts[i]) + 1.0) * ngramScale)));

        QSaveFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            return false;
        file.write(reinterpret_cast<const char*>(&header), sizeof header);
        file.write(reinterpret_cast<const char*>(weights.data()),
                   static_cast<qint64>(weights.size() * sizeof(std::uint16_t)));
        file.write(reinterpret_cast<const char*>(entries.data()),
                   static_cast<qint64>(entries.size() * sizeof(LanguageModelWord)));
        file.write(reinterpret_cast<const char*>(suffixes.data()),
                   static_cast<qint64>(suffixes.size() * sizeof(LanguageModelSuffix)));
        file.write(strips);
        return file.commit();
    }
};

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    const QCommandLineOption output("output", "Model file to write.", "file");
    const QCommandLineOption corpus("corpus", "Running text of the language (UTF-8).", "file");
    const QCommandLineOption dictionary("dictionary", "Hunspell dictionary, path without .aff/.dic.", "base");
    const QCommandLineOption headwords("headwords", "dictd index whose headwords are in the language.", "file");
    const QCommandLineOption rareHeadwords("rare-headwords", "dictd index of a large dictionary of the language.",
                                           "file");
    const QCommandLineOption glosses("glosses", "WordNet data file whose definitions are running text.", "file");
    const QCommandLineOption probe("probe", "Text whose words the spelling dictionary is asked about.", "file");
    const QCommandLineOption keepCapitalized("keep-capitalized", "Keep capitalised dictionary stems (German nouns).");
    parser.addOptions({output, corpus, glosses, dictionary, headwords, rareHeadwords, probe, keepCapitalized});
    parser.process(app);
    if (!parser.isSet(output))
        parser.showHelp(2);

    ModelBuilder builder;
    for (const QString& path : parser.values(corpus))
        builder.addCorpus(readText(path));
    for (const QString& path : parser.values(glosses)) {
        // Each synset line ends with " | " and its definition and examples.
        QString text;
        for (const QString& line : readText(path).split(QLatin1Char('\n'))) {
            const qsizetype bar = line.indexOf(QLatin1String(" | "));
            if (bar >= 0 && !line.startsWith(QLatin1Char(' ')))
                text += line.mid(bar + 3) + QLatin1Char('\n');
        }
        builder.addCorpus(text, 3);
    }
    for (const QString& path : parser.values(headwords))
        builder.addHeadwords(path, isHeadword);
    for (const QString& path : parser.values(rareHeadwords))
        builder.addHeadwords(path, isRareHeadword);
    if (parser.isSet(dictionary)) {
        const QString base = parser.value(dictionary);
        builder.addDictionaryStems(base + QStringLiteral(".dic"), parser.isSet(keepCapitalized));
        builder.addSuffixRules(base + QStringLiteral(".aff"));
        QSet<QString> probes;
        for (const QString& path : parser.values(probe)) {
            const QString text = readText(path);
            if (path.endsWith(QLatin1String(".index"))) {
                for (const QString& line : text.split(QLatin1Char('\n')))
                    probes.insert(line.section(QLatin1Char('\t'), 0, 0).trimmed());
            } else {
                forEachWord(text, [&](QStringView word) {
                    probes.insert(word.toString());
                    return true;
                });
            }
        }
        probes.remove(QString());
        Hunspell speller((base + QStringLiteral(".aff")).toLocal8Bit().constData(),
                         (base + QStringLiteral(".dic")).toLocal8Bit().constData());
        builder.checkSpelling(speller, probes);
    }
    if (!builder.write(parser.value(output))) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(parser.value(output)));
        return 1;
    }
    return 0;
}
