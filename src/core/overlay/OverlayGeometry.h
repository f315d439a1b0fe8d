// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Geometry.h"

#include <QList>
#include <QRect>
#include <QSizeF>

#include <functional>
#include <optional>

// Where the floating cards go and how big they get. All geometry here is in points with the
// origin at the bottom-left of the primary screen and y upward, like the rest of Tolvane's logic.
namespace tolvane::overlay {

// Gap between the pointer and the card's top-left corner, to the right and below.
inline constexpr double wordCardPointerOffset = 16;
inline constexpr double passageCardPointerOffset = 12;

inline constexpr double cardPadding = 12;
inline constexpr double cardCornerRadius = 12;
inline constexpr double cardBorderWidth = 1.5;
inline constexpr double cardBorderOpacity = 0.45;
inline constexpr double cardShadowOpacity = 0.22;
inline constexpr double cardShadowRadius = 9;
inline constexpr double cardShadowOffset = 3; // downward

inline constexpr QSizeF wordCardInitialSize{240, 110};
inline constexpr double wordCardMinimumWidth = 240;
inline constexpr double wordCardMaximumWidth = 420;
inline constexpr double wordCardMaximumHeight = 360;
// The card is only re-laid when its fitting size moves by more than this.
inline constexpr double wordCardResizeTolerance = 1;
// The example lines are fitted at this width, in the 11-point font.
inline constexpr double exampleLineWidth = 392;
inline constexpr int exampleMaximumLines = 3;

inline constexpr double passageCardWidth = 420;
inline constexpr double passageCardMinimumHeight = 80;
inline constexpr double passageCardMaximumHeight = 400;
inline constexpr double passageCardResizeTolerance = 2;
// The fixed frame of a single word shown in the passage card.
inline constexpr QSizeF passageCardWordFrame{240, 88};

// The origin (bottom-left corner) for a card of this size beside the pointer: below and to the
// right of it, pushed inside the visible frame of the first screen containing the point (else of
// the main screen, the first in the list; with no screen at all, not clamped). Never flipped above
// the pointer; when the card is larger than the visible frame, its right and top limits win.
QPointF cardOrigin(QPointF pointer, QSizeF cardSize, double pointerOffset, const QList<ScreenInfo>& screens);

// The word card's size for content whose ideal one-line width is idealWidth and which needs
// heightForWidth(w) at width w: 240 to 420 wide, at most 360 high (taller content is clipped).
QSizeF wordCardFittingSize(double idealWidth, const std::function<double(double width)>& heightForWidth);
// The passage card's height for content needing measuredHeight: 80 to 400 points.
double passageCardFittingHeight(double measuredHeight);

// Between Tolvane's points and Qt's logical pixels (origin top-left of the primary screen, y
// downward). The primary screen is the first in the list; with none there is no conversion.
std::optional<QRect> toTopLeft(const QRectF& frame, const QList<ScreenInfo>& screens);
std::optional<QRectF> fromTopLeft(const QRectF& geometry, const QList<ScreenInfo>& screens);

// A card's frame and the pointer position it was last placed for. The windows keep one each and
// turn it into a window geometry; the rules live here so that they are tested without windows.
class CardFrame final
{
public:
    CardFrame(double pointerOffset, QSizeF initialSize);

    QRectF frame() const { return m_frame; }
    void setFrame(const QRectF& frame) { m_frame = frame; }
    std::optional<QPointF> lastTrackedPoint() const { return m_lastTrackedPoint; }
    void setLastTrackedPoint(QPointF point) { m_lastTrackedPoint = point; }

    // Moves the card beside the point, keeping its size.
    void position(QPointF point, const QList<ScreenInfo>& screens);

    // The word card's resize: when the fitting size differs from the current size by more than
    // the tolerance in either direction, take it (keeping the origin), then place the card again
    // beside the last tracked point if there is one. Returns whether the frame changed size.
    bool resizeToFit(QSizeF fitting, double tolerance, const QList<ScreenInfo>& screens);

    // The passage card's resize: when the height differs by more than the tolerance, take it with
    // the top edge fixed, so the card grows or shrinks downward. Returns whether it changed.
    bool resizeKeepingTop(double height, double tolerance);

private:
    double m_pointerOffset;
    QRectF m_frame;
    std::optional<QPointF> m_lastTrackedPoint;
};

} // namespace tolvane::overlay
