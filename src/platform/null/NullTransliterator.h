// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Transliterator.h"

namespace tolvane {

class NullTransliterator final : public Transliterator
{
public:
    std::optional<QString> pinyin(const QString&) const override { return std::nullopt; }
    std::optional<QString> hiragana(const QString&) const override { return std::nullopt; }
};

} // namespace tolvane
