// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

#include <memory>

namespace tolvane {

// Japanese words and their dictionary forms, from MeCab with IPAdic. Created on first need:
// opening MeCab costs more than a dictionary look-up, and most pairs never need it.
class JapaneseAnalyzer final
{
public:
    struct Token
    {
        QString surface;
        QString baseForm;     // the dictionary form, or the surface when MeCab has none
        QString partOfSpeech; // IPAdic's first column: 名詞, 動詞, 助詞, …
        QString subclass;     // its second: 自立, 非自立 (いる of 遊んでいる), 接尾 (たち), …
    };

    JapaneseAnalyzer();
    ~JapaneseAnalyzer();

    bool isValid() const { return m_tagger != nullptr; }
    QList<Token> tokens(const QString& text) const;

private:
    struct Deleter
    {
        void operator()(void* tagger) const;
    };
    std::unique_ptr<void, Deleter> m_tagger;
};

} // namespace tolvane
