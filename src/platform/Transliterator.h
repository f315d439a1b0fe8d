// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

namespace tolvane {

// Readings of Chinese and Japanese text.
class Transliterator
{
public:
    virtual ~Transliterator() = default;

    // Mandarin in pinyin with tone marks.
    virtual std::optional<QString> pinyin(const QString& text) const = 0;
    // Japanese in hiragana.
    virtual std::optional<QString> hiragana(const QString& text) const = 0;
};

} // namespace tolvane
