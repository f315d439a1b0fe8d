// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/PlatformFactory.h"

#include "core/support/AppPaths.h"
#include "platform/linux/DesktopWorkspace.h"
#include "platform/linux/JsonFilePreferenceStore.h"
#include "platform/linux/QtScreenService.h"
#include "platform/linux/capture/AtspiAccessibilityService.h"
#include "platform/linux/capture/HunspellSpellChecker.h"
#include "platform/linux/capture/TesseractScreenTextRecognizer.h"
#include "platform/linux/hotkeys/QtEventMonitor.h"
#include "platform/linux/hotkeys/XcbHotkeyService.h"
#include "platform/linux/hotkeys/XiKeyReleaseMonitor.h"
#include "platform/linux/language/IcuMecabTransliterator.h"
#include "platform/linux/language/LanguageModelRecognizer.h"
#include "platform/linux/language/WordNetLexicalTagger.h"
#include "platform/linux/notifications/DesktopNotificationCenter.h"
#include "platform/linux/speech/DesktopSpeechSynthesizer.h"
#include "platform/linux/translation/DictionaryTranslationEngine.h"
#include "platform/linux/updates/NetworkUpdateChecker.h"
#include "platform/null/NullPlatform.h"

namespace tolvane {

std::unique_ptr<PreferenceStore> createPreferenceStore()
{
    return std::make_unique<JsonFilePreferenceStore>(configDirectory() + QStringLiteral("/preferences.json"));
}

std::unique_ptr<TranslationEngine> createTranslationEngine()
{
    return std::make_unique<DictionaryTranslationEngine>();
}

std::unique_ptr<LanguageRecognizer> createLanguageRecognizer()
{
    return std::make_unique<LanguageModelRecognizer>(LanguageModelRecognizer::defaultModelDirectory());
}

std::unique_ptr<LexicalTagger> createLexicalTagger()
{
    return std::make_unique<WordNetLexicalTagger>(WordNetLexicalTagger::defaultLexiconPath());
}

std::unique_ptr<Transliterator> createTransliterator()
{
    return std::make_unique<IcuMecabTransliterator>();
}

PlatformServices createPlatformServices()
{
    PlatformServices services = createNullPlatform();
    if (qEnvironmentVariable("TOLVANE_PLATFORM") == QLatin1String("null"))
        return services;

    services.name = QStringLiteral("linux");
    services.preferences = createPreferenceStore();
    services.screens = std::make_unique<QtScreenService>();
    services.workspace = std::make_unique<DesktopWorkspace>();
    services.notifications = DesktopNotificationCenter::forSessionBus();
    services.eventMonitor = std::make_unique<QtEventMonitor>();
    if (auto hotkeys = createXcbHotkeyService())
        services.hotkeys = std::move(hotkeys);
    services.keyReleases = std::make_unique<XiKeyReleaseMonitor>();
    services.accessibility = std::make_unique<AtspiAccessibilityService>();
    services.textRecognizer = std::make_unique<TesseractScreenTextRecognizer>();
    services.spellChecker = std::make_unique<HunspellSpellChecker>();
    services.languageRecognizer = createLanguageRecognizer();
    services.lexicalTagger = createLexicalTagger();
    services.transliterator = createTransliterator();
    const Transliterator* transliterator = services.transliterator.get();
    services.speech = std::make_unique<DesktopSpeechSynthesizer>(
        [transliterator](const QString& text) { return transliterator->hiragana(text); });
    services.translationEngine = createTranslationEngine();
    services.updates = std::make_unique<NetworkUpdateChecker>(builtInUpdateFeedSettings());
    return services;
}

} // namespace tolvane
