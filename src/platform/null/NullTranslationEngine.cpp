// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/null/NullTranslationEngine.h"

namespace tolvane {

Result<void> NullTranslationEngine::prepare(const QString& sourceCode, const QString& targetCode)
{
    return Error{
        QStringLiteral("No translation is available for %1 → %2 in this session.").arg(sourceCode, targetCode)};
}

Result<QString> NullTranslationEngine::translate(const QString&, const QString& sourceCode, const QString& targetCode)
{
    return prepare(sourceCode, targetCode).error();
}

Result<WordTranslation> NullTranslationEngine::lookUpWord(const QString&, const QString& sourceCode,
                                                          const QString& targetCode)
{
    return prepare(sourceCode, targetCode).error();
}

} // namespace tolvane
