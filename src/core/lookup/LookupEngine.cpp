// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/lookup/LookupEngine.h"

#include "core/capture/AXHoverInspector.h"
#include "core/lookup/HoverController.h"
#include "core/records/ConfusionLogStore.h"
#include "core/records/ReviewDeckStore.h"
#include "core/records/UsageEventStore.h"
#include "core/setup/Preferences.h"
#include "core/support/Logging.h"
#include "core/translation/DirectionDetection.h"
#include "core/translation/LiveTranslationService.h"
#include "platform/ScreenService.h"
#include "platform/Workspace.h"

#include <QPointer>

TOLVANE_DEFINE_LOG(lcLookupEngine, "LookupEngine")

namespace tolvane {

LookupEngine::LookupEngine(Services services, QObject* parent)
    : QObject(parent)
    , m_services(std::move(services))
{}

LookupEngine::~LookupEngine() = default;

void LookupEngine::hotkeyPressed()
{
    if (!m_services.preferences.translationHelperEnabled())
        return;
    const QString selection = this->selection().value_or(QString()).trimmed();
    if (!selection.isEmpty()) {
        m_services.usageEvents.record(UsageEventType::lookup);
        m_lastLookupWasPassage = true;
        translatePassage(selection);
        return;
    }
    if (!m_services.preferences.axWordLookupEnabled())
        return;
    m_lastLookupWasPassage = false;
    m_services.hover.beginWordLookup(std::exchange(m_pointed, std::nullopt));
}

std::optional<QString> LookupEngine::selection()
{
    m_pointed.reset();
    if (const AccessibleElementPtr focused = m_services.accessibility.focusedElement())
        return focused->selectedText();
    // The hotkey's key grab takes the focus from some toolkits (GTK among them) for as long as the
    // key is down, so that no element is focused just now; the selection is then usually where
    // the pointer rests.
    const QPointF pointer = m_services.screens.pointerLocation();
    const AccessibleElementPtr underPointer = AXHoverInspector::elementAtPointer(m_services.accessibility, pointer);
    m_pointed = HoverController::PointedElement{pointer, underPointer};
    return underPointer ? underPointer->selectedText() : std::nullopt;
}

void LookupEngine::translatePassage(const QString& text)
{
    const qint64 generation = ++m_passageLookupGeneration;
    const QString target = m_services.preferences.targetLanguage();
    const QString application = m_services.workspace.frontmostApplicationName();
    const std::optional<QString> appContext = application.isEmpty() ? std::nullopt : std::optional(application);
    const DetectedDirection direction = detectDirection(text, target, m_services.languages);
    const QString label = makeDirectionLabel(direction, target);
    showPassage({text, PassageTexts::translating, std::nullopt, std::nullopt, true, label});

    const LanguagePair pair = languagePair(direction, target);
    QPointer<LookupEngine> self(this);
    m_services.translation.translate(
        text, pair.source, pair.target,
        [self, text, generation, target, appContext, direction, label](Result<QString> result) {
            if (!self)
                return;
            if (!result) {
                self->m_services.confusionLog.recordLookup(text, QString(), appContext);
                if (self->m_passageLookupGeneration == generation)
                    self->showPassage(
                        {text, PassageTexts::noTranslationFound, std::nullopt, std::nullopt, true, label});
                return;
            }
            const QString translation = result.value();
            // The record and the deck keep every passage; only the card belongs to the newest.
            self->m_services.confusionLog.recordLookup(text, translation, appContext);
            if (self->m_passageLookupGeneration == generation)
                self->showPassage({text, translation, std::nullopt, PassageTexts::liveBadge, true, label});
            if (self->m_services.preferences.passageAutoSaveEnabled())
                self->m_services.reviewDeck.addCard(text, translation, false, target, direction);
        });
}

void LookupEngine::showPassage(const TranslationOverlayView& view)
{
    if (m_passageOverlayWindow && m_passageOverlayWindow->isVisible()) {
        m_passageOverlayWindow->update(view);
        return;
    }
    // A closed card is not shown again; the earlier one goes as the new one takes its place.
    m_passageOverlayWindow = m_services.makePassageCard();
    m_passageOverlayWindow->show(view);
}

void LookupEngine::hotkeyReleased()
{
    if (m_lastLookupWasPassage) {
        if (m_passageOverlayWindow)
            m_passageOverlayWindow->requestDismiss();
        return;
    }
    m_services.hover.hotkeyReleased();
}

} // namespace tolvane
