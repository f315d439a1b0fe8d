// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/SpeechSynthesizer.h"

#include <QList>
#include <QPair>
#include <QStringList>

namespace tolvane {

class FakeSpeechSynthesizer final : public SpeechSynthesizer
{
public:
    QList<QPair<QString, QString>> spoken; // text, locale
    int stops = 0;
    QStringList voicelessLocales; // locales without a voice
    void speak(const QString& text, const QString& locale) override { spoken.append({text, locale}); }
    void stop() override { ++stops; }
    bool hasVoice(const QString& locale) const override { return !voicelessLocales.contains(locale); }
};

} // namespace tolvane
