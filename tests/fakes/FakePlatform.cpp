// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/FakePlatform.h"

namespace tolvane {

namespace {
template <typename T> T* install(std::unique_ptr<T> object, auto& slot)
{
    T* raw = object.get();
    slot = std::move(object);
    return raw;
}
} // namespace

FakePlatform::FakePlatform()
    : preferences(install(std::make_unique<MemoryPreferenceStore>(), services.preferences))
    , accessibility(install(std::make_unique<FakeAccessibilityService>(), services.accessibility))
    , hotkeys(install(std::make_unique<FakeGlobalHotkeyService>(), services.hotkeys))
    , eventMonitor(install(std::make_unique<FakeEventMonitor>(), services.eventMonitor))
    , keyReleases(install(std::make_unique<FakeKeyReleaseMonitor>(), services.keyReleases))
    , screens(install(std::make_unique<FakeScreenService>(), services.screens))
    , textRecognizer(install(std::make_unique<FakeScreenTextRecognizer>(), services.textRecognizer))
    , languageRecognizer(install(std::make_unique<FakeLanguageRecognizer>(), services.languageRecognizer))
    , lexicalTagger(install(std::make_unique<FakeLexicalTagger>(), services.lexicalTagger))
    , transliterator(install(std::make_unique<FakeTransliterator>(), services.transliterator))
    , spellChecker(install(std::make_unique<FakeSpellChecker>(), services.spellChecker))
    , speech(install(std::make_unique<FakeSpeechSynthesizer>(), services.speech))
    , translationEngine(install(std::make_unique<FakeTranslationEngine>(), services.translationEngine))
    , notifications(install(std::make_unique<FakeNotificationCenter>(), services.notifications))
    , workspace(install(std::make_unique<FakeWorkspace>(), services.workspace))
    , updates(install(std::make_unique<FakeUpdateChecker>(), services.updates))
{
    services.name = QStringLiteral("fake");
}

} // namespace tolvane
