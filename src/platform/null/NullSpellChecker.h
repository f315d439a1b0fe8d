// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/SpellChecker.h"

namespace tolvane {

class NullSpellChecker final : public SpellChecker
{
public:
    bool isCorrect(const QString&) const override { return true; }
    QStringList suggestions(const QString&) const override { return {}; }
};

} // namespace tolvane
