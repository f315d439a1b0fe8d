// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <memory>

namespace tolvane {

class AppDelegate;
class Clock;
class HoverController;
class HoverOverlayWindow;
class LiveTranslationService;
class LookupEngine;
class OcrFallback;
class Preferences;
class Scheduler;
struct PlatformServices;

// The look-up feature put together: the translation service, the text-recognition fallback, the
// hover controller with its word card, the look-up engine with its passage card; the hotkey's
// press and release delivered to the engine; `tolvane lookup` as a quick tap; and everything the
// first look-up would otherwise load, prepared while Tolvane sits idle after start-up.
class LookupWiring final : public QObject
{
    Q_OBJECT
public:
    // Reaches the records, the milestones, the hotkey manager and the command registry through the
    // delegate, which must have created them.
    LookupWiring(AppDelegate& delegate, PlatformServices& services, Preferences& preferences, const Clock& clock,
                 Scheduler& scheduler);
    ~LookupWiring() override;

    // Starts the hover controller and, once start-up is over, prepares the look-up.
    void start();
    // Stops what would outlive the process (speech).
    void stop();

    LookupEngine& engine() const { return *m_engine; }
    HoverController& hover() const { return *m_hover; }
    LiveTranslationService& translation() const { return *m_translation; }
    HoverOverlayWindow& wordCard() const { return *m_wordCard; }

private:
    void prepareAhead();
    void preparePair(const QString& targetCode);

    AppDelegate& m_delegate;
    PlatformServices& m_services;
    Preferences& m_preferences;
    Scheduler& m_scheduler;
    std::unique_ptr<LiveTranslationService> m_translation;
    std::unique_ptr<OcrFallback> m_ocr;
    std::unique_ptr<HoverOverlayWindow> m_wordCard;
    std::unique_ptr<HoverController> m_hover;
    std::unique_ptr<LookupEngine> m_engine;
};

} // namespace tolvane
