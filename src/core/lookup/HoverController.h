// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/lookup/LookupCards.h"
#include "core/setup/Preferences.h"
#include "core/support/Scheduler.h"
#include "core/translation/DetectedDirection.h"
#include "platform/AccessibilityService.h"
#include "platform/KeyReleaseMonitor.h"

#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QPointF>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace tolvane {

class AccessibilityPermissionManager;
class AccessibilityService;
class Clock;
class ConfusionLogStore;
class LanguageRecognizer;
class LexicalTagger;
class LiveTranslationService;
class LookupMilestoneManager;
class OcrFallback;
class ReviewDeckStore;
class ScreenRecordingPermissionManager;
class ScreenService;
class SpeechSynthesizer;
class UsageEventStore;
class Workspace;

// Runs a word look-up, from the hotkey going down without a selection until the word card goes
// away: finds the word under the pointer (accessibility first, the screen text as a fallback),
// decides the direction, shows the card's successive states, translates with a cache kept for the
// life of the process, adds the part of speech, a translated example sentence and a speak action,
// records each successful look-up, and keeps the card up for the reading time after a release.
//
// Main thread only. Late answers (accessibility, recognition, translation) are recognised by the
// look-up generation they started with and dropped; nothing is ever cancelled.
class HoverController final : public QObject
{
    Q_OBJECT
public:
    // Everything the look-up reaches, owned elsewhere and outliving the controller.
    struct Services
    {
        Preferences& preferences;
        const Clock& clock;
        Scheduler& scheduler;
        AccessibilityService& accessibility;
        OcrFallback& ocr;
        const LanguageRecognizer& languages;
        const LexicalTagger& tagger;
        SpeechSynthesizer& speech;
        LiveTranslationService& translation;
        UsageEventStore& usageEvents;
        ConfusionLogStore& confusionLog;
        ReviewDeckStore& reviewDeck;
        LookupMilestoneManager& milestones;
        const Workspace& workspace;
        const ScreenService& screens;
        KeyReleaseMonitor& keyReleases;
        AccessibilityPermissionManager& accessibilityPermission;
        ScreenRecordingPermissionManager& screenCapturePermission;
        // The registered hotkey, for the key-release monitor.
        std::function<HotkeyCombination()> currentHotkey;
        WordCardFactory makeCard;
    };

    enum class Direction { englishToTarget };
    enum class LookupSource { accessibility, ocr };
    struct CachedResult
    {
        QString translation;
        std::optional<QString> exampleSentence;
    };

    static constexpr Duration exampleSentenceDelay{300};

    explicit HoverController(Services services, QObject* parent = nullptr);
    ~HoverController() override;

    // Once at launch: follows the permission and the preferences, then checks availability.
    void start();
    // Ends any look-up when word look-ups are switched off or accessibility is not allowed.
    void refreshAvailability();
    // pointed: the element under the pointer when the caller has just asked for it (it may be
    // none), so that the desktop is not asked twice for one press.
    struct PointedElement
    {
        QPointF pointer;
        AccessibleElementPtr element;
    };
    void beginWordLookup(std::optional<PointedElement> pointed = std::nullopt);
    // The hotkey went up: the card stays until the reading time since the press has passed.
    void hotkeyReleased();
    void endWordMode();
    // Says text in the locale's voice, stopping what was being said; nothing without a voice.
    void speak(const QString& text, const QString& localeCode);

    // "englishToTarget:ru:house": the word exactly as found.
    static QString cacheKey(DetectedDirection direction, const QString& targetCode, const QString& word);
    // Whether the sentence is worth translating as an example of the word: at least three words,
    // one of which is the word give or take a small edit (a plural, a tense).
    static bool exampleSentenceUsable(const QString& sentence, const QString& word);

    // State, for the screens and the tests.
    bool isHotkeyHeld() const { return m_hotkeyHeld; }
    bool isActive() const { return m_activeDirection.has_value(); }
    qint64 lookupGeneration() const { return m_lookupGeneration; }
    std::optional<QString> currentWord() const { return m_currentWord; }
    bool hasKeyReleaseMonitor() const { return m_keyReleaseMonitor != 0; }
    const QHash<QString, CachedResult>& cache() const { return m_liveTranslationCache; }
    WordCard* card() const { return m_overlayWindow.get(); }

private:
    void lookupAt(qint64 generation, const QString& label, QPointF point, std::optional<AccessibleElementPtr> known);
    void handOver(qint64 generation, std::optional<QString> text, std::optional<QString> sentence, const QString& label,
                  QPointF point);
    void handleTextResult(qint64 generation, const std::optional<QString>& text, const std::optional<QString>& sentence,
                          const QString& label, QPointF point);
    void presentWord(const QString& text, const std::optional<QString>& sentence, LookupSource source);
    void translateExample(const QString& key, const QString& text, const QString& sentence, const QString& translation,
                          const HoverOverlayView& shown, qint64 generation, const QString& sourceCode,
                          const QString& targetCode);
    void recordSuccess(const QString& text, const QString& translation, const QString& target,
                       DetectedDirection direction);
    std::function<void()> speakAction(DetectedDirection direction, const QString& text, const QString& translation,
                                      const QString& localeCode);
    bool isCurrent(qint64 generation, const QString& text) const;
    std::optional<QString> frontmostApplication() const;
    void show(const HoverOverlayView& view);
    void installKeyReleaseMonitor();
    void removeKeyReleaseMonitor();
    void scheduleWordModeEnd(Duration delay, bool safety);
    bool ocrAllowed() const;

    Services m_services;
    std::unique_ptr<WordCard> m_overlayWindow;
    std::optional<Direction> m_activeDirection;
    QList<QMetaObject::Connection> m_cancellables;
    TimerHandle m_wordModeTimer;
    std::optional<QDateTime> m_lookupStartTime;
    bool m_hotkeyHeld = false;
    KeyReleaseMonitor::Token m_keyReleaseMonitor = 0;
    std::optional<QString> m_lastLoggedText;
    qint64 m_lookupGeneration = 0;
    std::optional<QString> m_currentWord;
    QHash<QString, CachedResult> m_liveTranslationCache;
};

} // namespace tolvane
