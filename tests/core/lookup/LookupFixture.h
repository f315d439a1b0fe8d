// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The look-up with every service faked or real-in-memory: real record stores in a temporary
// directory, the real translation service over the fake engine, the real text-recognition
// fallback over the fake recogniser, virtual time.
#include "core/capture/OcrFallback.h"
#include "core/lookup/HoverController.h"
#include "core/lookup/LookupEngine.h"
#include "core/progress/LookupMilestoneManager.h"
#include "core/records/ConfusionLogStore.h"
#include "core/records/ReviewDeckStore.h"
#include "core/records/UsageEventStore.h"
#include "core/setup/PermissionManager.h"
#include "core/setup/Preferences.h"
#include "core/translation/LiveTranslationService.h"
#include "fakes/FakeKeyReleaseMonitor.h"
#include "fakes/FakeLookupCards.h"
#include "fakes/FakePlatform.h"
#include "fakes/FakeScheduler.h"

#include <QTemporaryDir>

#include <functional>

namespace tolvane {

struct LookupFixture
{
    FakePlatform platform;
    FakeClock clock;
    FakeScheduler scheduler{&clock};
    Preferences preferences{*platform.preferences};
    QTemporaryDir records;
    UsageEventStore usageEvents{clock, records.path()};
    ConfusionLogStore confusionLog{clock, records.path()};
    ReviewDeckStore deck{clock, scheduler, preferences, usageEvents, nullptr, records.path()};
    LookupMilestoneManager milestones{preferences, [](const LookupMilestone&) {}};
    // Engine work waits here until the test lets it run, so answers can arrive late.
    QList<std::function<void()>> engineWork;
    LiveTranslationService translation{*platform.translationEngine, scheduler,
                                       [this](std::function<void()> work) { engineWork.append(std::move(work)); }};
    OcrFallback ocr{*platform.textRecognizer, *platform.languageRecognizer, *platform.spellChecker, scheduler,
                    [](Task task) { task(); }};
    AccessibilityPermissionManager accessibilityPermission{*platform.accessibility, scheduler};
    ScreenRecordingPermissionManager capturePermission{*platform.textRecognizer, scheduler};
    FakeKeyReleaseMonitor keyReleases;
    HotkeyCombination hotkey;
    FakeWordCard* card = nullptr;
    QList<FakePassageCard*> passageCards;
    HoverController hover{{preferences,
                           clock,
                           scheduler,
                           *platform.accessibility,
                           ocr,
                           *platform.languageRecognizer,
                           *platform.lexicalTagger,
                           *platform.speech,
                           translation,
                           usageEvents,
                           confusionLog,
                           deck,
                           milestones,
                           *platform.workspace,
                           *platform.screens,
                           keyReleases,
                           accessibilityPermission,
                           capturePermission,
                           [this] { return hotkey; },
                           [this] {
                               auto made = std::make_unique<FakeWordCard>();
                               card = made.get();
                               return made;
                           }}};
    LookupEngine engine{{preferences, *platform.accessibility, *platform.screens, *platform.languageRecognizer,
                         translation, usageEvents, confusionLog, deck, *platform.workspace, hover, [this] {
                             auto made = std::make_unique<FakePassageCard>();
                             passageCards.append(made.get());
                             return made;
                         }}};

    LookupFixture()
    {
        preferences.registerStartupDefaults();
        hover.start();
    }

    // The pointer rests on word, in the sentence around it.
    void pointAt(const QString& word, const std::optional<QString>& sentence = std::nullopt)
    {
        auto element = std::make_shared<FakeAccessibleElement>();
        const QString text = sentence.value_or(word);
        element->attributes.insert(QStringLiteral("AXValue"), text);
        element->range = TextRange{text.indexOf(word), 1};
        platform.accessibility->elementUnderPointer = element;
    }
    void select(const QString& text)
    {
        auto element = std::make_shared<FakeAccessibleElement>();
        element->selection = text;
        platform.accessibility->focused = element;
    }
    // Lets queued engine work and everything it posts run, until nothing is left.
    void settle()
    {
        for (int round = 0; round < 100; ++round) {
            scheduler.runPosted();
            if (engineWork.isEmpty())
                return;
            const auto work = std::exchange(engineWork, {});
            for (const auto& job : work)
                job();
        }
    }
    void advance(Duration by)
    {
        scheduler.advance(by);
        settle();
    }
    void press()
    {
        engine.hotkeyPressed();
        settle();
    }
    void release()
    {
        engine.hotkeyReleased();
        settle();
    }
    int translationsOf(const QString& text) const { return int(platform.translationEngine->translated.count(text)); }
};

} // namespace tolvane
