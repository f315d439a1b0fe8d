// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Transliterator.h"

#include <memory>

namespace tolvane {

// Pinyin through ICU's "Han-Latin" transliterator; Japanese readings from MeCab's IPAdic token
// readings (katakana) turned into hiragana by ICU's "Katakana-Hiragana". Each engine is created
// on first use and kept. Main thread only: ICU transliterators and MeCab keep per-call state.
class IcuMecabTransliterator final : public Transliterator
{
public:
    IcuMecabTransliterator();
    ~IcuMecabTransliterator() override;

    std::optional<QString> pinyin(const QString& text) const override;
    std::optional<QString> hiragana(const QString& text) const override;

private:
    struct Engines;
    std::unique_ptr<Engines> m_engines;
};

} // namespace tolvane
