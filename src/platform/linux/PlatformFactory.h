// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/PlatformServices.h"

namespace tolvane {

// The Linux services, or the null ones when TOLVANE_PLATFORM=null is set (headless runs, or to
// rule the desktop out when hunting a fault). Preferences are always the real file unless
// TOLVANE_PLATFORM=null.
PlatformServices createPlatformServices();

// The real services a command uses without a display, one at a time, so that a command depends
// on the interfaces alone.
std::unique_ptr<PreferenceStore> createPreferenceStore();
std::unique_ptr<TranslationEngine> createTranslationEngine();
std::unique_ptr<LanguageRecognizer> createLanguageRecognizer();
std::unique_ptr<LexicalTagger> createLexicalTagger();
std::unique_ptr<Transliterator> createTransliterator();

} // namespace tolvane
