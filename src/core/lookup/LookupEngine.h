// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/lookup/HoverController.h"
#include "core/lookup/LookupCards.h"

#include <QObject>
#include <QString>

#include <memory>
#include <optional>

namespace tolvane {

class AccessibilityService;
class ConfusionLogStore;
class LanguageRecognizer;
class LiveTranslationService;
class Preferences;
class ReviewDeckStore;
class ScreenService;
class UsageEventStore;
class Workspace;

// The entry of every look-up. On a press of the hotkey: a selection in the focused element is
// translated as a passage and shown in the passage card; otherwise the hover controller looks up
// the word under the pointer. A release goes to whichever of the two the last press started.
// Main thread only.
class LookupEngine final : public QObject
{
    Q_OBJECT
public:
    struct Services
    {
        Preferences& preferences;
        AccessibilityService& accessibility;
        const ScreenService& screens;
        const LanguageRecognizer& languages;
        LiveTranslationService& translation;
        UsageEventStore& usageEvents;
        ConfusionLogStore& confusionLog;
        ReviewDeckStore& reviewDeck;
        const Workspace& workspace;
        HoverController& hover;
        PassageCardFactory makePassageCard;
    };

    explicit LookupEngine(Services services, QObject* parent = nullptr);
    ~LookupEngine() override;

    void hotkeyPressed();
    void hotkeyReleased();

    qint64 passageLookupGeneration() const { return m_passageLookupGeneration; }
    bool lastLookupWasPassage() const { return m_lastLookupWasPassage; }
    PassageCard* passageCard() const { return m_passageOverlayWindow.get(); }

private:
    // The focused element's selection; when nothing is focused, the selection under the pointer,
    // and that element is kept for the word look-up.
    std::optional<QString> selection();
    void translatePassage(const QString& text);
    void showPassage(const TranslationOverlayView& view);

    Services m_services;
    std::unique_ptr<PassageCard> m_passageOverlayWindow;
    qint64 m_passageLookupGeneration = 0;
    bool m_lastLookupWasPassage = false;
    std::optional<HoverController::PointedElement> m_pointed;
};

// The texts the passage card shows for a look-up.
namespace PassageTexts {
inline const QString translating = QStringLiteral("Translating…");
inline const QString noTranslationFound = QStringLiteral("No translation found");
inline const QString liveBadge = QStringLiteral("Live");
} // namespace PassageTexts

} // namespace tolvane
