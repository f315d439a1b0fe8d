// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/PlatformServices.h"
#include "platform/null/NullAccessibilityService.h"
#include "platform/null/NullEventMonitor.h"
#include "platform/null/NullGlobalHotkeyService.h"
#include "platform/null/NullKeyReleaseMonitor.h"
#include "platform/null/NullLanguageRecognizer.h"
#include "platform/null/NullLexicalTagger.h"
#include "platform/null/NullNotificationCenter.h"
#include "platform/null/NullScreenService.h"
#include "platform/null/NullScreenTextRecognizer.h"
#include "platform/null/NullSpeechSynthesizer.h"
#include "platform/null/NullSpellChecker.h"
#include "platform/null/NullTranslationEngine.h"
#include "platform/null/NullTransliterator.h"
#include "platform/null/NullUpdateChecker.h"
#include "platform/null/NullWorkspace.h"

namespace tolvane {

// Services that do nothing and refuse politely: for headless runs, where there is no desktop to
// read from or draw on. Preferences live in memory.
PlatformServices createNullPlatform();

} // namespace tolvane
