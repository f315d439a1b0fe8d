// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/LookupWiring.h"

#include "app/AppDelegate.h"
#include "core/capture/OcrFallback.h"
#include "core/hotkeys/HotkeyManager.h"
#include "core/lookup/HoverController.h"
#include "core/lookup/LookupEngine.h"
#include "core/setup/PermissionManager.h"
#include "core/setup/Preferences.h"
#include "core/support/Logging.h"
#include "core/translation/LanguageTable.h"
#include "core/translation/LiveTranslationService.h"
#include "platform/PlatformServices.h"
#include "ui/overlay/HoverOverlayWindow.h"
#include "ui/overlay/TranslationOverlayWindow.h"

#include <QPointer>
#include <QThreadPool>

TOLVANE_DEFINE_LOG(lcLookupWiring, "LookupWiring")

namespace tolvane {

namespace {

// The word card the controller drives: the one window, made early so the first look-up does
// not pay for it.
class WordCardAdapter final : public WordCard
{
public:
    explicit WordCardAdapter(HoverOverlayWindow& window)
        : m_window(window)
    {}
    void showAt(QPointF pointer) override { m_window.show(pointer); }
    void update(const HoverOverlayView& view) override { m_window.update(view); }
    void hide() override { m_window.hide(); }
    bool isVisible() const override { return m_window.isVisible(); }

private:
    HoverOverlayWindow& m_window;
};

class PassageCardAdapter final : public PassageCard
{
public:
    explicit PassageCardAdapter(std::unique_ptr<TranslationOverlayWindow> window)
        : m_window(std::move(window))
    {}
    void show(const TranslationOverlayView& view) override { m_window->show(view); }
    void update(const TranslationOverlayView& view) override { m_window->update(view); }
    void requestDismiss() override { m_window->requestDismiss(); }
    bool isVisible() const override { return m_window->isVisible(); }
    const TranslationOverlayView& view() const override { return m_window->view(); }

private:
    std::unique_ptr<TranslationOverlayWindow> m_window;
};

// A short passage and a word per direction: enough to load the pair's dictionary and start its
// passage pipeline.
const QString warmUpWord = QStringLiteral("house");
const QString warmUpPassage = QStringLiteral("The house is small.");

} // namespace

LookupWiring::LookupWiring(AppDelegate& delegate, PlatformServices& services, Preferences& preferences,
                           const Clock& clock, Scheduler& scheduler)
    : m_delegate(delegate)
    , m_services(services)
    , m_preferences(preferences)
    , m_scheduler(scheduler)
{
    m_translation = std::make_unique<LiveTranslationService>(*services.translationEngine, scheduler);
    m_ocr = std::make_unique<OcrFallback>(*services.textRecognizer, *services.languageRecognizer,
                                          *services.spellChecker, scheduler);
    m_wordCard = std::make_unique<HoverOverlayWindow>(*services.screens, *services.transliterator);

    HotkeyManager& hotkeys = delegate.hotkeys();
    HoverOverlayWindow* wordCard = m_wordCard.get();
    m_hover = std::make_unique<HoverController>(HoverController::Services{
        preferences,
        clock,
        scheduler,
        *services.accessibility,
        *m_ocr,
        *services.languageRecognizer,
        *services.lexicalTagger,
        *services.speech,
        *m_translation,
        delegate.usageEvents(),
        delegate.confusionLog(),
        delegate.reviewDeck(),
        delegate.milestones(),
        *services.workspace,
        *services.screens,
        *services.keyReleases,
        delegate.accessibilityPermission(),
        delegate.screenRecordingPermission(),
        [&hotkeys] { return hotkeys.currentCombination(); },
        [wordCard] { return std::make_unique<WordCardAdapter>(*wordCard); },
    });

    PlatformServices* platform = &services;
    Preferences* prefs = &preferences;
    const Clock* clockPointer = &clock;
    Scheduler* schedulerPointer = &scheduler;
    m_engine = std::make_unique<LookupEngine>(LookupEngine::Services{
        preferences,
        *services.accessibility,
        *services.screens,
        *services.languageRecognizer,
        *m_translation,
        delegate.usageEvents(),
        delegate.confusionLog(),
        delegate.reviewDeck(),
        *services.workspace,
        *m_hover,
        [platform, prefs, clockPointer, schedulerPointer] {
            return std::make_unique<PassageCardAdapter>(std::make_unique<TranslationOverlayWindow>(
                *platform->screens, *prefs, *clockPointer, *schedulerPointer, *platform->eventMonitor));
        },
    });

    // The hotkey's events arrive as main-loop tasks already, in the order they happened.
    connect(&delegate, &AppDelegate::hotkeyPressed, m_engine.get(), &LookupEngine::hotkeyPressed);
    connect(&delegate, &AppDelegate::hotkeyReleased, m_engine.get(), &LookupEngine::hotkeyReleased);

    // `tolvane lookup`: a quick tap of the hotkey, press then release.
    QPointer<AppDelegate> target(&delegate);
    delegate.commands().setLookup([target, schedulerPointer] {
        schedulerPointer->post([target] {
            if (target)
                Q_EMIT target->hotkeyPressed();
        });
        schedulerPointer->post([target] {
            if (target)
                Q_EMIT target->hotkeyReleased();
        });
    });

    connect(&preferences, &Preferences::changed, this, [this](const QString& key) {
        if (key == PreferenceKey::targetLanguage)
            preparePair(m_preferences.targetLanguage());
    });
}

LookupWiring::~LookupWiring() = default;

void LookupWiring::start()
{
    m_hover->start();
    // After the launch tasks, the tray icon among them: nothing here delays Tolvane's appearance.
    QPointer<LookupWiring> self(this);
    m_scheduler.singleShot(Duration(200), [self] {
        if (self)
            self->prepareAhead();
    });
}

void LookupWiring::stop()
{
    m_services.speech->stop();
}

void LookupWiring::prepareAhead()
{
    const QString target = m_preferences.targetLanguage();
    qCInfo(lcLookupWiring).noquote() << "Preparing look-ups into" << target;
    m_wordCard->prepare();
    preparePair(target);
    // The installed applications' names, read once for the word log.
    m_services.workspace->frontmostApplicationName();

    // The language models and the tagger load on first use; load them on a worker. Both are safe
    // to call from any thread.
    const LanguageRecognizer* languages = m_services.languageRecognizer.get();
    const LexicalTagger* tagger = m_services.lexicalTagger.get();
    QThreadPool::globalInstance()->start([languages, tagger, target] {
        languages->recognize(warmUpPassage, {englishLanguageCode(), target});
        tagger->lexicalClass(warmUpPassage, 4, 5);
    });

    // The recogniser reads a strip far from anything of interest, once, to load its engine.
    if (m_preferences.ocrFallbackEnabled() && m_services.textRecognizer->isCaptureGranted())
        m_services.textRecognizer->recognizeStrip(QRectF(0, 0, 600, 72), recognitionLanguages(target),
                                                  [](Result<RecognizedText>) {});
}

void LookupWiring::preparePair(const QString& targetCode)
{
    // Through the service, so the engine is touched by its own worker only. The way back starts
    // from the way there's answer, which that pair surely knows.
    LiveTranslationService* translation = m_translation.get();
    for (const QString& text : {warmUpWord, warmUpPassage}) {
        translation->translate(
            text, englishLanguageCode(), targetCode, [translation, targetCode](Result<QString> result) {
                if (result)
                    translation->translate(result.value(), targetCode, englishLanguageCode(), [](Result<QString>) {});
            });
    }
}

} // namespace tolvane
