// SPDX-License-Identifier: GPL-3.0-or-later
// libFuzzer target for the compiled dictionaries: any bytes in a .tdict file are refused on open
// with a message or give a file whose every headword is found again, and looking words up and
// glossing passages through the engine never reads outside the file.
#include "FuzzSupport.h"
#include "platform/linux/translation/ApertiumPassageTranslator.h"
#include "platform/linux/translation/DictionaryFile.h"
#include "platform/linux/translation/DictionaryTranslationEngine.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdlib>
#include <cstring>

using namespace tolvane;
using tolvane::fuzz::require;

namespace {

// Enough headwords to reach every branch of the look-up without making one input slow.
constexpr quint32 wordsPerInput = 64;

quint32 readU32(const std::uint8_t* p)
{
    quint32 value;
    std::memcpy(&value, p, sizeof value);
    return value;
}

// The headwords as the file lists them, read independently of DictionaryFile (which has already
// checked that every record lies inside the file).
QList<QByteArray> headwords(const std::uint8_t* data, quint32 count)
{
    const quint32 indexOffset = readU32(data + 12), blobOffset = readU32(data + 16);
    QList<QByteArray> words;
    for (quint32 i = 0; i < count && i < wordsPerInput; ++i) {
        const std::uint8_t* record = data + indexOffset + std::size_t(i) * 16;
        words.append(QByteArray(reinterpret_cast<const char*>(data + blobOffset + readU32(record)),
                                qsizetype(readU32(record + 4))));
    }
    return words;
}

// The pair the file says it translates, so that each language's rules for finding a word are
// reached; Japanese is left out because starting MeCab for every input would be all the run did.
QString pairOf(const DictionaryFile& file)
{
    static const QRegularExpression pair(QStringLiteral("^[a-z]{2}-[a-z]{2}$"));
    const QStringList directions = file.metadata(QStringLiteral("direction"));
    if (directions.isEmpty() || !pair.match(directions.first()).hasMatch() ||
        directions.first().startsWith(QLatin1String("ja")))
        return QStringLiteral("en-fr");
    return directions.first();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    new QCoreApplication(*argc, *argv);
    require(fuzz::workDirectory("dictionary")->isValid());
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QDir dir(fuzz::workDirectory("dictionary")->path());
    const QString probe = dir.filePath(QStringLiteral("probe.tdict"));
    {
        QFile file(probe);
        require(file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
                file.write(reinterpret_cast<const char*>(data), qint64(size)) == qint64(size));
    }
    QString pair;
    QList<QByteArray> words;
    {
        auto opened = DictionaryFile::open(probe);
        if (!opened) {
            require(!opened.error().message.isEmpty());
            QFile::remove(probe);
            return 0;
        }
        const DictionaryFile& file = *opened.value();
        words = headwords(data, file.entryCount());
        for (const QByteArray& word : words) {
            const std::string_view key(word.constData(), std::size_t(word.size()));
            require(file.find(key).has_value());
            // The longest prefix of a short headword is the headword itself.
            std::size_t matched = 0;
            const auto prefix = file.longestPrefix(key, &matched);
            require(key.empty() || key.size() > 48 || (prefix == file.find(key) && matched == key.size()));
        }
        (void)file.find("");
        (void)file.longestPrefix("\xE4\xB8\xAD\xE6\x96\x87\xFF", nullptr);
        pair = pairOf(file);
    }
    const QString path = dir.filePath(pair + QStringLiteral(".tdict"));
    require(QFile::rename(probe, path));
    {
        DictionaryTranslationEngine engine({dir.path()});
        const QString source = pair.left(2), target = pair.mid(3);
        QStringList passage;
        for (const QByteArray& word : words) {
            const QString text = QString::fromUtf8(word);
            (void)engine.lookUpWord(text, source, target);
            passage.append(text);
        }
        // Apertium's pipelines are other programs; only the pairs it has no route for are glossed here.
        if (ApertiumPassageTranslator::route(source, target).isEmpty()) {
            const QString separator = source == QLatin1String("zh") ? QString() : QStringLiteral(" ");
            (void)engine.translate(passage.join(separator) + QStringLiteral("."), source, target);
        }
    }
    QFile::remove(path);
    return 0;
}
