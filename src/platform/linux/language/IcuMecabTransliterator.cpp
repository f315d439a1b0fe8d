// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/language/IcuMecabTransliterator.h"

#include "core/support/Logging.h"

#include <mecab.h>
#include <unicode/translit.h>
#include <unicode/unistr.h>

TOLVANE_DEFINE_LOG(lcTransliterator, "Transliterator")

namespace tolvane {

namespace {

// Readings are for a word or a short phrase; a longer text is read on its beginning only, so a
// pasted page cannot stall the card.
constexpr qsizetype readingLimit = 256;

struct MecabDeleter
{
    void operator()(mecab_t* mecab) const { mecab_destroy(mecab); }
};

std::unique_ptr<icu::Transliterator> createTransliterator(const char* id)
{
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Transliterator> transliterator(
        icu::Transliterator::createInstance(icu::UnicodeString::fromUTF8(id), UTRANS_FORWARD, status));
    if (U_FAILURE(status) || !transliterator) {
        qCWarning(lcTransliterator) << "ICU has no" << id << "transliterator:" << u_errorName(status);
        return nullptr;
    }
    return transliterator;
}

icu::UnicodeString toIcu(const QString& text)
{
    return icu::UnicodeString(reinterpret_cast<const UChar*>(text.utf16()), static_cast<int32_t>(text.size()));
}

QString fromIcu(const icu::UnicodeString& text)
{
    return QString(reinterpret_cast<const QChar*>(text.getBuffer()), text.length());
}

} // namespace

struct IcuMecabTransliterator::Engines
{
    bool pinyinTried = false;
    std::unique_ptr<icu::Transliterator> hanLatin;
    bool japaneseTried = false;
    std::unique_ptr<icu::Transliterator> katakanaHiragana;
    std::unique_ptr<mecab_t, MecabDeleter> mecab;
};

IcuMecabTransliterator::IcuMecabTransliterator()
    : m_engines(std::make_unique<Engines>())
{}

IcuMecabTransliterator::~IcuMecabTransliterator() = default;

std::optional<QString> IcuMecabTransliterator::pinyin(const QString& text) const
{
    if (!m_engines->pinyinTried) {
        m_engines->pinyinTried = true;
        m_engines->hanLatin = createTransliterator("Han-Latin");
    }
    if (!m_engines->hanLatin || text.isEmpty())
        return std::nullopt;
    icu::UnicodeString buffer = toIcu(text.left(readingLimit));
    m_engines->hanLatin->transliterate(buffer);
    return fromIcu(buffer);
}

std::optional<QString> IcuMecabTransliterator::hiragana(const QString& text) const
{
    if (!m_engines->japaneseTried) {
        m_engines->japaneseTried = true;
        m_engines->katakanaHiragana = createTransliterator("Katakana-Hiragana");
        // The system's mecabrc names the dictionary (IPAdic on Debian).
        m_engines->mecab.reset(mecab_new2(""));
        if (!m_engines->mecab)
            qCWarning(lcTransliterator) << "MeCab could not start:" << mecab_strerror(nullptr);
    }
    if (!m_engines->mecab || !m_engines->katakanaHiragana || text.isEmpty())
        return std::nullopt;

    const QByteArray utf8 = text.left(readingLimit).toUtf8();
    const mecab_node_t* node =
        mecab_sparse_tonode2(m_engines->mecab.get(), utf8.constData(), static_cast<size_t>(utf8.size()));
    if (!node)
        return std::nullopt;
    // IPAdic features: part of speech ×4, conjugation ×2, base form, reading, pronunciation.
    QString katakana;
    for (; node; node = node->next) {
        if (node->stat == MECAB_BOS_NODE || node->stat == MECAB_EOS_NODE)
            continue;
        const QStringList features = QString::fromUtf8(node->feature).split(QLatin1Char(','));
        if (features.size() > 7 && features[7] != QLatin1String("*"))
            katakana += features[7];
        else
            katakana += QString::fromUtf8(node->surface, static_cast<qsizetype>(node->length));
    }
    if (katakana.isEmpty())
        return std::nullopt;
    icu::UnicodeString buffer = toIcu(katakana);
    m_engines->katakanaHiragana->transliterate(buffer);
    return fromIcu(buffer);
}

} // namespace tolvane
