// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/Result.h"

#include <QString>

namespace tolvane {

enum class LanguageAvailability { installed, supported, unsupported };

// On-device translation between English and one learning language. Calls may block; the
// translation service makes them off the main thread, one at a time per engine.
class TranslationEngine
{
public:
    virtual ~TranslationEngine() = default;

    virtual LanguageAvailability availability(const QString& sourceCode, const QString& targetCode) const = 0;
    // Makes the pair ready (loads or installs what it needs).
    virtual Result<void> prepare(const QString& sourceCode, const QString& targetCode) = 0;
    virtual Result<QString> translate(const QString& text, const QString& sourceCode, const QString& targetCode) = 0;
};

} // namespace tolvane
