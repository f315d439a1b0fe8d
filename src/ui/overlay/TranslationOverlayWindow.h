// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/overlay/OverlayGeometry.h"
#include "core/overlay/TranslationOverlayLifetime.h"
#include "core/overlay/TranslationOverlayView.h"

#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QRectF>

#include <memory>
#include <optional>

class QWidget;

namespace tolvane {

class Clock;
class EventMonitor;
class Preferences;
class Scheduler;
class ScreenService;
class TranslationOverlayCard;

// The passage card: the translation of selected text beside the pointer, 420 points wide, that
// never takes the focus or activates Tolvane. It closes by itself after the passage reading time,
// on a click or key delivered to Tolvane's windows (without swallowing it), or when asked.
class TranslationOverlayWindow final : public QObject
{
    Q_OBJECT
public:
    TranslationOverlayWindow(const ScreenService& screens, const Preferences& preferences, const Clock& clock,
                             Scheduler& scheduler, EventMonitor& events, QObject* parent = nullptr);
    ~TranslationOverlayWindow() override;

    // Shows the view beside the pointer, starts the reading time and watches clicks and keys.
    void show(const TranslationOverlayView& view);
    // New content while shown: the height follows it (top edge fixed, growing downward) when it
    // changes by more than two points, and the reading time starts again.
    void update(const TranslationOverlayView& view);
    void scheduleAutoDismiss();
    // On release of the hotkey: closes now if the reading time since the show has passed,
    // otherwise when it passes.
    void requestDismiss();
    // Closes at once.
    void dismiss();

    // Moves the card beside a point (points, origin bottom-left, y upward), keeping its size.
    void position(QPointF point);
    // The height the card needs for a view: 80 to 400 points.
    double fittingHeight(const TranslationOverlayView& view) const;

    bool isVisible() const;
    std::optional<QDateTime> showTime() const { return m_lifetime.showTime(); }
    const TranslationOverlayView& view() const { return m_view; }
    QRectF frame() const { return m_frame.frame(); }
    // The window itself, for tests and pictures; created on first use.
    QWidget* widget();

private:
    TranslationOverlayCard& card();
    void applyGeometry();
    void orderOut();

    const ScreenService& m_screens;
    TranslationOverlayView m_view;
    overlay::CardFrame m_frame;
    QPointer<TranslationOverlayCard> m_card;
    TranslationOverlayLifetime m_lifetime;
};

} // namespace tolvane
