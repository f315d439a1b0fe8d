// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TranslationEngine.h"

#include <QHash>
#include <QStringList>

#include <memory>
#include <mutex>
#include <optional>

namespace tolvane {

class DictionaryFile;
class JapaneseAnalyzer;

// The offline engine: one compiled dictionary per direction (see tools/dictionaries), looked up
// by exact form, then case-folded, then through the form's lemma. Passages are glossed word by
// word, keeping the words it cannot translate.
class DictionaryTranslationEngine final : public TranslationEngine
{
public:
    // Directories searched in order for "<source>-<target>.tdict".
    explicit DictionaryTranslationEngine(QStringList directories = defaultDirectories());
    ~DictionaryTranslationEngine() override;

    // $TOLVANE_DICTIONARY_DIR alone when it is set; otherwise share/tolvane/dictionaries beside
    // the program (installed, or the build tree's link to where scripts/setup compiles them), and
    // $XDG_DATA_HOME/tolvane/dictionaries.
    static QStringList defaultDirectories();

    LanguageAvailability availability(const QString& sourceCode, const QString& targetCode) const override;
    Result<void> prepare(const QString& sourceCode, const QString& targetCode) override;
    Result<QString> translate(const QString& text, const QString& sourceCode, const QString& targetCode) override;

    Result<WordTranslation> lookUpWord(const QString& word, const QString& sourceCode,
                                       const QString& targetCode) override;
    // Where the pair's file is, or empty when it is not installed.
    QString dictionaryPath(const QString& sourceCode, const QString& targetCode) const;

private:
    Result<DictionaryFile*> pair(const QString& sourceCode, const QString& targetCode);
    std::optional<WordTranslation> lookUp(const DictionaryFile& file, const QString& word,
                                          const QString& sourceLanguage);
    std::optional<WordTranslation> entryFor(const DictionaryFile& file, const QString& key, const QString& lexicalClass,
                                            int depth) const;
    QStringList lemmaCandidates(const QString& word, const QString& sourceLanguage);
    QString glossPassage(const DictionaryFile& file, const QString& text, const QString& sourceLanguage,
                         const QString& targetLanguage);

    QStringList m_directories;
    std::mutex m_mutex;
    QHash<QString, std::shared_ptr<DictionaryFile>> m_pairs;
    std::unique_ptr<JapaneseAnalyzer> m_japanese;
};

} // namespace tolvane
