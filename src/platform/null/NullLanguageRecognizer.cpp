// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/null/NullLanguageRecognizer.h"

namespace tolvane {

LanguageHypotheses NullLanguageRecognizer::recognize(const QString&, const QStringList& candidates) const
{
    LanguageHypotheses result;
    for (const QString& code : candidates)
        result.probability.insert(code, code == QLatin1String("en") ? 1.0 : 0.0);
    if (candidates.contains(QLatin1String("en")))
        result.dominant = QStringLiteral("en");
    return result;
}

} // namespace tolvane
