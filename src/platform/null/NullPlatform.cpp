// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/null/NullPlatform.h"

#include "platform/null/MemoryPreferenceStore.h"

namespace tolvane {

PlatformServices createNullPlatform()
{
    PlatformServices services;
    services.name = QStringLiteral("null");
    services.preferences = std::make_unique<MemoryPreferenceStore>();
    services.accessibility = std::make_unique<NullAccessibilityService>();
    services.hotkeys = std::make_unique<NullGlobalHotkeyService>();
    services.eventMonitor = std::make_unique<NullEventMonitor>();
    services.screens = std::make_unique<NullScreenService>();
    services.textRecognizer = std::make_unique<NullScreenTextRecognizer>();
    services.languageRecognizer = std::make_unique<NullLanguageRecognizer>();
    services.lexicalTagger = std::make_unique<NullLexicalTagger>();
    services.transliterator = std::make_unique<NullTransliterator>();
    services.spellChecker = std::make_unique<NullSpellChecker>();
    services.keyReleases = std::make_unique<NullKeyReleaseMonitor>();
    services.speech = std::make_unique<NullSpeechSynthesizer>();
    services.translationEngine = std::make_unique<NullTranslationEngine>();
    services.notifications = std::make_unique<NullNotificationCenter>();
    services.workspace = std::make_unique<NullWorkspace>();
    services.updates = std::make_unique<NullUpdateChecker>();
    return services;
}

} // namespace tolvane
