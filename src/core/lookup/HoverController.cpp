// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/lookup/HoverController.h"

#include "core/capture/AXHoverInspector.h"
#include "core/capture/GraphemeText.h"
#include "core/capture/OcrFallback.h"
#include "core/hotkeys/CarbonModifiers.h"
#include "core/progress/LookupMilestoneManager.h"
#include "core/records/ConfusionLogStore.h"
#include "core/records/ReviewDeckStore.h"
#include "core/records/UsageEventStore.h"
#include "core/setup/PermissionManager.h"
#include "core/support/Clock.h"
#include "core/support/Logging.h"
#include "core/translation/DirectionDetection.h"
#include "core/translation/LanguageTable.h"
#include "core/translation/LiveTranslationService.h"
#include "core/translation/PartOfSpeech.h"
#include "platform/ScreenService.h"
#include "platform/SpeechSynthesizer.h"
#include "platform/Workspace.h"

#include <QPointer>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>

TOLVANE_DEFINE_LOG(lcHoverController, "HoverController")

namespace tolvane {

namespace {

constexpr qsizetype longestExampleWord = 64;

Duration secondsToDuration(double seconds)
{
    // A hand-written 1e300 is a valid positive duration; a year stands for it without overflowing.
    constexpr double longest = 365.0 * 24 * 3600;
    return Duration(qint64(std::llround(std::clamp(seconds, 0.0, longest) * 1000.0)));
}

// A piece of a sentence without the punctuation around it: "book," and "«book»" read as "book".
QString trimmedOfNonLetters(const QString& piece)
{
    const QList<uint> characters = piece.toUcs4();
    qsizetype begin = 0, end = characters.size();
    while (begin < end && !QChar::isLetter(characters.at(begin)))
        ++begin;
    while (end > begin && !QChar::isLetter(characters.at(end - 1)))
        --end;
    const QList<uint> kept = characters.mid(begin, end - begin);
    return QString::fromUcs4(reinterpret_cast<const char32_t*>(kept.constData()), kept.size());
}

} // namespace

HoverController::HoverController(Services services, QObject* parent)
    : QObject(parent)
    , m_services(std::move(services))
{}

HoverController::~HoverController()
{
    m_wordModeTimer.cancel();
    removeKeyReleaseMonitor();
}

void HoverController::start()
{
    for (const auto& connection : std::as_const(m_cancellables))
        disconnect(connection);
    m_cancellables = {
        connect(&m_services.accessibilityPermission, &PermissionManager::isGrantedChanged, this,
                &HoverController::refreshAvailability),
        connect(&m_services.preferences, &Preferences::changed, this, &HoverController::refreshAvailability),
    };
    refreshAvailability();
}

void HoverController::refreshAvailability()
{
    if (!m_services.preferences.axWordLookupEnabled() || !m_services.accessibilityPermission.isGranted()) {
        endWordMode();
        m_lastLoggedText.reset();
    }
}

void HoverController::beginWordLookup(std::optional<PointedElement> pointed)
{
    const QPointF pointer = pointed ? pointed->pointer : m_services.screens.pointerLocation();
    if (!m_overlayWindow)
        m_overlayWindow = m_services.makeCard();
    m_overlayWindow->showAt(pointer);

    const QString label = makeDirectionLabel(m_services.preferences.targetLanguage());
    m_lookupStartTime = m_services.clock.now();
    m_hotkeyHeld = true;

    // Should the release never be heard, the card still goes away.
    m_wordModeTimer.cancel();
    scheduleWordModeEnd(secondsToDuration(m_services.preferences.wordOverlayMaximumHoldSeconds()), true);

    removeKeyReleaseMonitor();
    installKeyReleaseMonitor();

    m_activeDirection = Direction::englishToTarget;
    const qint64 generation = ++m_lookupGeneration;
    m_lastLoggedText.reset();
    lookupAt(generation, label, pointer, pointed ? std::optional(pointed->element) : std::nullopt);
}

void HoverController::installKeyReleaseMonitor()
{
    const HotkeyCombination hotkey = m_services.currentHotkey ? m_services.currentHotkey() : HotkeyCombination{};
    // A combination of modifiers alone is reported once, already released.
    if (hotkey.isModifierOnly())
        return;
    QPointer<HoverController> self(this);
    m_keyReleaseMonitor = m_services.keyReleases.addMonitor([self, hotkey](const GlobalKeyEvent& event) {
        const bool keyUp = event.kind == GlobalKeyEvent::Kind::keyUp && event.keyCode == hotkey.keyCode;
        const bool modifierUp = event.kind == GlobalKeyEvent::Kind::flagsChanged &&
                                (hotkey.modifiers & ~event.modifierFlags & CarbonModifier::all) != 0;
        if (!keyUp && !modifierUp)
            return;
        if (!self)
            return;
        self->m_services.scheduler.post([self] {
            if (!self || !self->m_hotkeyHeld)
                return;
            self->removeKeyReleaseMonitor();
            self->hotkeyReleased();
        });
    });
}

void HoverController::removeKeyReleaseMonitor()
{
    if (m_keyReleaseMonitor != 0)
        m_services.keyReleases.removeMonitor(m_keyReleaseMonitor);
    m_keyReleaseMonitor = 0;
}

void HoverController::scheduleWordModeEnd(Duration delay, bool safety)
{
    QPointer<HoverController> self(this);
    m_wordModeTimer = m_services.scheduler.singleShot(delay, [self, safety] {
        if (!self)
            return;
        if (safety) {
            qCInfo(lcHoverController) << "The hotkey was held past the longest reading time; the card closes";
            self->m_hotkeyHeld = false;
        }
        self->endWordMode();
    });
}

void HoverController::lookupAt(qint64 generation, const QString& label, QPointF point,
                               std::optional<AccessibleElementPtr> known)
{
    const AccessibleElementPtr element =
        known ? *known : AXHoverInspector::elementAtPointer(m_services.accessibility, point);
    if (!element) {
        handOver(generation, std::nullopt, std::nullopt, label, point);
        return;
    }
    const WordAtPositionResult found = AXHoverInspector::wordAtPosition(*element, point);
    switch (found.kind) {
    case WordAtPositionResult::Kind::word:
        handOver(generation, found.word, found.sentence, label, point);
        return;
    case WordAtPositionResult::Kind::noText:
        handOver(generation, AXHoverInspector::firstTextAttribute(*element), std::nullopt, label, point);
        return;
    case WordAtPositionResult::Kind::rangeUnsupported: {
        // A label of one word is that word; in longer text only the screen can tell which word.
        const qsizetype pieces =
            found.fullText.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts).size();
        if (pieces >= 2 && ocrAllowed()) {
            QPointer<HoverController> self(this);
            const QString fullText = found.fullText;
            m_services.ocr.recognizeWord(
                point, m_services.preferences.targetLanguage(),
                [self, generation, fullText, label, point](std::optional<QString> word, std::optional<QString> line) {
                    if (!self)
                        return;
                    if (word)
                        self->handOver(generation, word, line, label, point);
                    else
                        self->handOver(generation, fullText, std::nullopt, label, point);
                });
            return;
        }
        handOver(generation, found.fullText, std::nullopt, label, point);
        return;
    }
    }
}

void HoverController::handOver(qint64 generation, std::optional<QString> text, std::optional<QString> sentence,
                               const QString& label, QPointF point)
{
    QPointer<HoverController> self(this);
    m_services.scheduler.post([self, generation, text = std::move(text), sentence = std::move(sentence), label, point] {
        if (self)
            self->handleTextResult(generation, text, sentence, label, point);
    });
}

void HoverController::handleTextResult(qint64 generation, const std::optional<QString>& text,
                                       const std::optional<QString>& sentence, const QString& label, QPointF point)
{
    if (m_lookupGeneration != generation)
        return;
    if (text) {
        presentWord(*text, sentence, LookupSource::accessibility);
        return;
    }
    show({HoverOverlayView::State::noLabel(),
          label,
          std::nullopt,
          std::nullopt,
          m_services.preferences.storedTargetLanguage(),
          {}});
    if (!ocrAllowed())
        return;
    QPointer<HoverController> self(this);
    m_services.ocr.recognizeWord(point, m_services.preferences.targetLanguage(),
                                 [self, generation](std::optional<QString> word, std::optional<QString> line) {
                                     if (!self)
                                         return;
                                     self->m_services.scheduler.post([self, generation, word, line] {
                                         if (self && self->m_lookupGeneration == generation && word)
                                             self->presentWord(*word, line, LookupSource::ocr);
                                     });
                                 });
}

bool HoverController::ocrAllowed() const
{
    return m_services.preferences.ocrFallbackEnabled() && m_services.screenCapturePermission.isGranted();
}

void HoverController::presentWord(const QString& text, const std::optional<QString>& sentence, LookupSource source)
{
    const QString target = m_services.preferences.targetLanguage();
    const std::optional<QString> rawTarget = m_services.preferences.storedTargetLanguage();
    const DetectedDirection direction = detectDirection(text, target, m_services.languages);
    const QString label = makeDirectionLabel(direction, target);
    const std::optional<QString> partOfSpeech = direction == DetectedDirection::englishToTarget
                                                    ? partOfSpeechOf(text, sentence, m_services.tagger)
                                                    : std::nullopt;
    const QString locale = speechLocaleCode(target);
    const QString key = cacheKey(direction, target, text);

    if (const auto cached = m_liveTranslationCache.constFind(key); cached != m_liveTranslationCache.cend()) {
        const CachedResult result = *cached;
        m_services.usageEvents.record(UsageEventType::lookup);
        m_currentWord = text;
        show({HoverOverlayView::State::liveLookup(text, result.translation), label, partOfSpeech,
              result.exampleSentence, rawTarget, speakAction(direction, text, result.translation, locale)});
        recordSuccess(text, result.translation, target, direction);
        return;
    }

    const auto unmatched = [&] {
        return source == LookupSource::ocr ? HoverOverlayView::State::ocrUnmatched(text)
                                           : HoverOverlayView::State::unmatched(text);
    };
    show({unmatched(), label, std::nullopt, std::nullopt, rawTarget, {}});
    // Already on its way in this look-up.
    if (m_lastLoggedText == text)
        return;
    m_lastLoggedText = text;
    m_currentWord = text;
    const qint64 generation = m_lookupGeneration;
    const LanguagePair pair = languagePair(direction, target);
    m_services.usageEvents.record(UsageEventType::lookup);
    show({HoverOverlayView::State::translating(text), label, std::nullopt, std::nullopt, rawTarget, {}});

    QPointer<HoverController> self(this);
    m_services.translation.translate(
        text, pair.source, pair.target,
        [self, text, sentence, source, direction, target, rawTarget, label, partOfSpeech, locale, key, generation,
         pair](Result<QString> result) {
            if (!self)
                return;
            if (!result) {
                if (self->m_lookupGeneration != generation || !self->m_activeDirection)
                    return;
                // Failures are not cached: the next look-up of the word tries again.
                self->m_services.confusionLog.recordLookup(text, QString(), self->frontmostApplication());
                const auto state = source == LookupSource::ocr ? HoverOverlayView::State::ocrUnmatched(text)
                                                               : HoverOverlayView::State::unmatched(text);
                self->show({state, label, std::nullopt, std::nullopt, rawTarget, {}});
                return;
            }
            if (!self->isCurrent(generation, text))
                return;
            const QString translation = result.value();
            const HoverOverlayView shown{
                HoverOverlayView::State::liveLookup(text, translation), label, partOfSpeech, std::nullopt, rawTarget,
                self->speakAction(direction, text, translation, locale)};
            self->show(shown);
            self->recordSuccess(text, translation, target, direction);
            if (direction == DetectedDirection::englishToTarget && sentence && exampleSentenceUsable(*sentence, text)) {
                self->translateExample(key, text, *sentence, translation, shown, generation, pair.source, pair.target);
                return;
            }
            self->m_liveTranslationCache.insert(key, {translation, std::nullopt});
        });
}

void HoverController::translateExample(const QString& key, const QString& text, const QString& sentence,
                                       const QString& translation, const HoverOverlayView& shown, qint64 generation,
                                       const QString& sourceCode, const QString& targetCode)
{
    // The word is on screen first; its example follows after a short pause.
    QPointer<HoverController> self(this);
    m_services.scheduler.singleShot(exampleSentenceDelay, [=] {
        if (!self)
            return;
        self->m_services.translation.translate(sentence, sourceCode, targetCode, [=](Result<QString> result) {
            if (!self)
                return;
            if (!result) {
                self->m_liveTranslationCache.insert(key, {translation, std::nullopt});
                return;
            }
            const QString translated = result.value();
            std::optional<QString> example;
            if (!translated.trimmed().isEmpty() && translated != sentence)
                example = sentence + QLatin1Char('\n') + translated;
            self->m_liveTranslationCache.insert(key, {translation, example});
            if (example && self->isCurrent(generation, text)) {
                HoverOverlayView withExample = shown;
                withExample.exampleSentence = example;
                self->show(withExample);
            }
        });
    });
}

bool HoverController::isCurrent(qint64 generation, const QString& text) const
{
    return m_lookupGeneration == generation && m_activeDirection.has_value() && m_currentWord == text;
}

void HoverController::recordSuccess(const QString& text, const QString& translation, const QString& target,
                                    DetectedDirection direction)
{
    m_services.confusionLog.recordLookup(text, translation, frontmostApplication());
    m_services.reviewDeck.addCard(text, translation, true, target, direction);
    m_services.milestones.recordSuccessfulLookup(text, translation, target, direction);
}

std::function<void()> HoverController::speakAction(DetectedDirection direction, const QString& text,
                                                   const QString& translation, const QString& localeCode)
{
    if (!m_services.speech.hasVoice(localeCode))
        return {};
    // The learner hears the target language: the word itself, or its translation.
    const QString spoken = direction == DetectedDirection::targetToEnglish ? text : translation;
    QPointer<HoverController> self(this);
    return [self, spoken, localeCode] {
        if (self)
            self->speak(spoken, localeCode);
    };
}

void HoverController::speak(const QString& text, const QString& localeCode)
{
    if (!m_services.speech.hasVoice(localeCode))
        return;
    m_services.speech.stop();
    m_services.speech.speak(text, localeCode);
}

std::optional<QString> HoverController::frontmostApplication() const
{
    const QString name = m_services.workspace.frontmostApplicationName();
    if (name.isEmpty())
        return std::nullopt;
    return name;
}

void HoverController::show(const HoverOverlayView& view)
{
    if (m_overlayWindow)
        m_overlayWindow->update(view);
}

void HoverController::hotkeyReleased()
{
    if (!m_hotkeyHeld)
        return;
    m_hotkeyHeld = false;
    if (!m_lookupStartTime) {
        endWordMode();
        return;
    }
    const qint64 elapsedMs = m_lookupStartTime->msecsTo(m_services.clock.now());
    const qint64 durationMs = secondsToDuration(m_services.preferences.wordOverlayDurationSeconds()).count();
    const qint64 remainingMs = std::max<qint64>(0, durationMs - elapsedMs);
    m_wordModeTimer.cancel();
    m_wordModeTimer = {};
    if (remainingMs == 0) {
        endWordMode();
        return;
    }
    scheduleWordModeEnd(Duration(remainingMs), false);
}

void HoverController::endWordMode()
{
    m_wordModeTimer.cancel();
    m_wordModeTimer = {};
    removeKeyReleaseMonitor();
    m_activeDirection.reset();
    m_currentWord.reset();
    if (m_overlayWindow)
        m_overlayWindow->hide();
    m_lookupStartTime.reset();
    m_hotkeyHeld = false;
}

QString HoverController::cacheKey(DetectedDirection direction, const QString& targetCode, const QString& word)
{
    return rawValue(direction) + QLatin1Char(':') + targetCode + QLatin1Char(':') + word;
}

bool HoverController::exampleSentenceUsable(const QString& sentence, const QString& word)
{
    const QStringList pieces = sentence.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (pieces.size() < 3)
        return false;
    const QList<uint> lowered = word.toLower().toUcs4();
    // Nothing that long is a word; comparing it would cost its length squared.
    if (lowered.size() > longestExampleWord)
        return false;
    const int threshold = lowered.size() < 4 ? 1 : int(lowered.size() / 4);
    for (const QString& piece : pieces) {
        const QList<uint> candidate = trimmedOfNonLetters(piece.toLower()).toUcs4();
        // Lengths further apart than the threshold cannot be within it.
        if (std::abs(candidate.size() - lowered.size()) > threshold)
            continue;
        if (textrules::editDistance(candidate, lowered) <= threshold)
            return true;
    }
    return false;
}

} // namespace tolvane
