// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TranslationEngine.h"

namespace tolvane {

class NullTranslationEngine final : public TranslationEngine
{
public:
    LanguageAvailability availability(const QString&, const QString&) const override
    {
        return LanguageAvailability::unsupported;
    }
    Result<void> prepare(const QString& sourceCode, const QString& targetCode) override;
    Result<QString> translate(const QString&, const QString& sourceCode, const QString& targetCode) override;
    Result<WordTranslation> lookUpWord(const QString&, const QString& sourceCode, const QString& targetCode) override;
};

} // namespace tolvane
