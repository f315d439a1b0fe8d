// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/LanguageRecognizer.h"

namespace tolvane {

// Says English to everything; the recogniser proper is language data, not platform.
class NullLanguageRecognizer final : public LanguageRecognizer
{
public:
    LanguageHypotheses recognize(const QString& text, const QStringList& candidates) const override;
};

} // namespace tolvane
