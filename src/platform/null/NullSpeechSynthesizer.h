// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/SpeechSynthesizer.h"

namespace tolvane {

class NullSpeechSynthesizer final : public SpeechSynthesizer
{
public:
    void speak(const QString&, const QString&) override {}
    void stop() override {}
    bool hasVoice(const QString&) const override { return false; }
};

} // namespace tolvane
