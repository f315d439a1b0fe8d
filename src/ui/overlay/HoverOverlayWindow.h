// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/overlay/HoverOverlayView.h"
#include "core/overlay/OverlayGeometry.h"

#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QRectF>

#include <optional>

class QWidget;

namespace tolvane {

class HoverOverlayCard;
class ScreenService;
class Transliterator;

// The word card: a floating window beside the pointer that never takes the keyboard focus, never
// activates Tolvane (not even when clicked), stays above other windows, full-screen ones included,
// and is on every desktop. Created once and reused: hidden means unmapped, not destroyed, and the
// card keeps its content for the next show.
class HoverOverlayWindow final : public QObject
{
    Q_OBJECT
public:
    // The card shows placeholder("") until the first update.
    HoverOverlayWindow(const ScreenService& screens, const Transliterator& transliterator, QObject* parent = nullptr);
    ~HoverOverlayWindow() override;

    // Creates the window, hidden, so that the first look-up pays no creation cost. Cheap to repeat.
    void prepare();

    // Show: remembers the pointer's location as the last tracked point, places the card beside it
    // and brings it to the front if it is not visible, without activating anything.
    void show();
    // The same for a pointer location already known (points, origin bottom-left, y upward).
    void show(QPointF pointer);
    // New content: the card takes its fitting size when that differs by more than a point, then
    // is placed again beside the last tracked point.
    void update(const HoverOverlayView& view);
    // Unmaps the card at once, keeping its content.
    void hide();

    // Moves the card beside a point, keeping its size.
    void position(QPointF point);
    void setLastTrackedPoint(QPointF point) { m_frame.setLastTrackedPoint(point); }
    std::optional<QPointF> lastTrackedPoint() const { return m_frame.lastTrackedPoint(); }
    // Brings the card to the front without activating Tolvane; nothing when it is visible.
    void orderFront();

    bool isVisible() const;
    const HoverOverlayView& view() const { return m_view; }
    // The card's frame in points (origin bottom-left of the primary screen, y upward).
    QRectF frame() const { return m_frame.frame(); }
    // The size the card's current content asks for: 240 to 420 points wide, at most 360 high.
    QSizeF fittingSize();
    // The window itself, for tests and pictures; created on first use.
    QWidget* widget();

private:
    HoverOverlayCard& card();
    void applyGeometry();

    const ScreenService& m_screens;
    const Transliterator& m_transliterator;
    HoverOverlayView m_view;
    overlay::CardFrame m_frame;
    QPointer<HoverOverlayCard> m_card;
};

} // namespace tolvane
