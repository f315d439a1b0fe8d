// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/SpeechSynthesizer.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace tolvane {

// Speaks through speech-dispatcher, the desktop's speech service shared with screen readers, when
// it answers; through the espeak-ng library otherwise. Everything that talks to either runs on
// one thread of its own (espeak-ng is global state), so neither a missing nor a hung service ever
// holds the caller. Only the newest request matters: a new utterance stops the one playing.
class DesktopSpeechSynthesizer final : public SpeechSynthesizer
{
public:
    // Turns Japanese text into kana, which is all espeak-ng reads; called on the caller's thread.
    using KanaReading = std::function<std::optional<QString>(const QString&)>;

    explicit DesktopSpeechSynthesizer(KanaReading kana = {});
    ~DesktopSpeechSynthesizer() override;

    void speak(const QString& text, const QString& localeCode) override;
    void stop() override;
    bool hasVoice(const QString& localeCode) const override;

    // espeak-ng's voice for a locale: "cmn-latn-pinyin" for Chinese (plain "cmn" misreads many
    // characters), "pt-BR", "en-us", otherwise the language.
    static QString espeakVoice(const QString& localeCode);

    struct State;

private:
    std::shared_ptr<State> m_state;
    KanaReading m_kana;
};

} // namespace tolvane
