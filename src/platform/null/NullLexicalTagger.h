// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/LexicalTagger.h"

namespace tolvane {

class NullLexicalTagger final : public LexicalTagger
{
public:
    std::optional<LexicalClass> lexicalClass(const QString&, qsizetype, qsizetype) const override
    {
        return std::nullopt;
    }
};

} // namespace tolvane
