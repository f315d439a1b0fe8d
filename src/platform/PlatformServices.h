// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/AccessibilityService.h"
#include "platform/EventMonitor.h"
#include "platform/GlobalHotkeyService.h"
#include "platform/KeyReleaseMonitor.h"
#include "platform/LanguageRecognizer.h"
#include "platform/LexicalTagger.h"
#include "platform/NotificationCenter.h"
#include "platform/PreferenceStore.h"
#include "platform/ScreenService.h"
#include "platform/ScreenTextRecognizer.h"
#include "platform/SpeechSynthesizer.h"
#include "platform/SpellChecker.h"
#include "platform/TranslationEngine.h"
#include "platform/Transliterator.h"
#include "platform/UpdateChecker.h"
#include "platform/Workspace.h"

#include <memory>

namespace tolvane {

// Every platform service the application uses, owned in one place by the composition root.
struct PlatformServices
{
    QString name; // "linux" or "null"
    std::unique_ptr<PreferenceStore> preferences;
    std::unique_ptr<AccessibilityService> accessibility;
    std::unique_ptr<GlobalHotkeyService> hotkeys;
    std::unique_ptr<EventMonitor> eventMonitor;
    std::unique_ptr<KeyReleaseMonitor> keyReleases;
    std::unique_ptr<ScreenService> screens;
    std::unique_ptr<ScreenTextRecognizer> textRecognizer;
    std::unique_ptr<LanguageRecognizer> languageRecognizer;
    std::unique_ptr<LexicalTagger> lexicalTagger;
    std::unique_ptr<Transliterator> transliterator;
    std::unique_ptr<SpellChecker> spellChecker;
    std::unique_ptr<SpeechSynthesizer> speech;
    std::unique_ptr<TranslationEngine> translationEngine;
    std::unique_ptr<NotificationCenter> notifications;
    std::unique_ptr<Workspace> workspace;
    std::unique_ptr<UpdateChecker> updates;
};

} // namespace tolvane
