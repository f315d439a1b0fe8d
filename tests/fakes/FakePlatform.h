// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Recording fakes of every platform interface, one per file, and the full set a test steers.
// Each keeps what it was asked and answers what the test set up; none touches the desktop.

#include "fakes/FakeAccessibilityService.h"
#include "fakes/FakeEventMonitor.h"
#include "fakes/FakeGlobalHotkeyService.h"
#include "fakes/FakeKeyReleaseMonitor.h"
#include "fakes/FakeLanguageRecognizer.h"
#include "fakes/FakeLexicalTagger.h"
#include "fakes/FakeNotificationCenter.h"
#include "fakes/FakeScreenService.h"
#include "fakes/FakeScreenTextRecognizer.h"
#include "fakes/FakeSpeechSynthesizer.h"
#include "fakes/FakeSpellChecker.h"
#include "fakes/FakeTranslationEngine.h"
#include "fakes/FakeTransliterator.h"
#include "fakes/FakeUpdateChecker.h"
#include "fakes/FakeWorkspace.h"
#include "platform/PlatformServices.h"
#include "platform/null/MemoryPreferenceStore.h"

namespace tolvane {

// A full set of fakes, with typed pointers to each for the test to steer.
struct FakePlatform
{
    FakePlatform();
    PlatformServices services;
    MemoryPreferenceStore* preferences;
    FakeAccessibilityService* accessibility;
    FakeGlobalHotkeyService* hotkeys;
    FakeEventMonitor* eventMonitor;
    FakeKeyReleaseMonitor* keyReleases;
    FakeScreenService* screens;
    FakeScreenTextRecognizer* textRecognizer;
    FakeLanguageRecognizer* languageRecognizer;
    FakeLexicalTagger* lexicalTagger;
    FakeTransliterator* transliterator;
    FakeSpellChecker* spellChecker;
    FakeSpeechSynthesizer* speech;
    FakeTranslationEngine* translationEngine;
    FakeNotificationCenter* notifications;
    FakeWorkspace* workspace;
    FakeUpdateChecker* updates;
};

} // namespace tolvane
