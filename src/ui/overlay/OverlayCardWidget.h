// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/overlay/HoverOverlayView.h"
#include "platform/Geometry.h"

#include <QColor>
#include <QMargins>
#include <QWidget>

namespace tolvane {

// The colours of the cards, light or dark after the application's palette.
struct OverlayPalette
{
    bool dark = false;
    QColor material; // the card's background
    QColor primary;
    QColor secondary;
    QColor tertiary;
    QColor blue;
    QColor accent;
    QColor purple;
    QColor green;

    static OverlayPalette current(bool translucent);
    QColor tint(HoverOverlayView::Tint tint) const;
};

// The frame every floating card shares: a window that never takes the focus, above other windows
// on every desktop, drawn as a rounded card with a tinted border. With a compositing manager the
// card floats on a soft shadow over a transparent window; without one the window is opaque and cut
// to the card's rounded shape, so no dark corners show.
class OverlayCardWidget : public QWidget
{
    Q_OBJECT
public:
    explicit OverlayCardWidget(QWidget* parent = nullptr);

    // Creates the native window (hidden) with the right translucency and marks.
    void prepareWindow();
    // Places the card (not the shadow around it) at this geometry in Qt's logical pixels.
    void setCardGeometry(const QRect& card);
    QRect cardGeometry() const;
    // Places the card at a frame in core's bottom-left point coordinates over these screens; with
    // no screen to place it on, only its size follows.
    void placeAt(const QRectF& frame, const QList<ScreenInfo>& screens);
    // Maps the window if needed and raises it above other windows, without activating anything.
    void orderFront();
    // Raises a visible card above windows raised since it was shown.
    void keepOnTop();

    bool isTranslucent() const { return m_translucent; }
    QColor borderTint() const { return m_borderTint; }
    void setBorderTint(const QColor& tint);
    const OverlayPalette& overlayPalette() const { return m_palette; }
    // The card's rectangle inside the window, in widget coordinates.
    QRect cardRect() const;
    // The content area: the card less its padding.
    QRect contentRect() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    // The palette changed (light or dark): the subclass recolours its texts.
    virtual void paletteChanged() {}

private:
    QMargins shadowMargins() const;
    void chooseTranslucency();
    void updateShape();

    bool m_translucent = false;
    QColor m_borderTint;
    OverlayPalette m_palette;
};

} // namespace tolvane
