// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace tolvane {

class SpeechSynthesizer
{
public:
    virtual ~SpeechSynthesizer() = default;

    // Speaks text in a voice for the locale ("en-US", "fr-FR", "zh-CN", …), stopping what was
    // being spoken. Never blocks: speech is played away from the caller's thread.
    virtual void speak(const QString& text, const QString& localeCode) = 0;
    virtual void stop() = 0;
    // Whether a voice speaks the locale's language; a card offers its speaker button only then.
    virtual bool hasVoice(const QString& localeCode) const = 0;
};

} // namespace tolvane
