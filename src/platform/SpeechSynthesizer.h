// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace tolvane {

class SpeechSynthesizer
{
public:
    virtual ~SpeechSynthesizer() = default;

    // Speaks text in a voice for the locale ("en-US", "fr-FR", "zh-CN", …), stopping what was
    // being spoken.
    virtual void speak(const QString& text, const QString& localeCode) = 0;
    virtual void stop() = 0;
};

} // namespace tolvane
