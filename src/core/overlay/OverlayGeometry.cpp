// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/overlay/OverlayGeometry.h"

#include <algorithm>
#include <cmath>

namespace tolvane::overlay {

namespace {

// A frame "contains" a point on its left and bottom edges but not on its right and top ones, so
// that a point on the seam between two screens belongs to exactly one of them.
bool frameContains(const QRectF& frame, QPointF point)
{
    return point.x() >= frame.left() && point.x() < frame.left() + frame.width() && point.y() >= frame.top() &&
           point.y() < frame.top() + frame.height();
}

double finiteOr(double value, double fallback)
{
    return std::isfinite(value) ? value : fallback;
}

} // namespace

QPointF cardOrigin(QPointF pointer, QSizeF cardSize, double pointerOffset, const QList<ScreenInfo>& screens)
{
    const double w = cardSize.width();
    const double h = cardSize.height();
    const double x0 = pointer.x() + pointerOffset;
    const double y0 = pointer.y() - h - pointerOffset;
    if (screens.isEmpty())
        return {x0, y0};
    const ScreenInfo* screen = &screens.first();
    for (const ScreenInfo& candidate : screens) {
        if (frameContains(candidate.frame, pointer)) {
            screen = &candidate;
            break;
        }
    }
    // Rects here have y upward: top() is the lowest edge (minY), bottom() the highest (maxY).
    const QRectF& v = screen->visibleFrame;
    const double minX = v.x(), maxX = v.x() + v.width();
    const double minY = v.y(), maxY = v.y() + v.height();
    return {std::min(std::max(x0, minX), maxX - w), std::min(std::max(y0, minY), maxY - h)};
}

QSizeF wordCardFittingSize(double idealWidth, const std::function<double(double)>& heightForWidth)
{
    const double width =
        std::clamp(finiteOr(idealWidth, wordCardMaximumWidth), wordCardMinimumWidth, wordCardMaximumWidth);
    const double height =
        std::clamp(finiteOr(heightForWidth(width), wordCardMaximumHeight), 0.0, wordCardMaximumHeight);
    return {width, height};
}

double passageCardFittingHeight(double measuredHeight)
{
    return std::clamp(finiteOr(measuredHeight, passageCardMaximumHeight), passageCardMinimumHeight,
                      passageCardMaximumHeight);
}

std::optional<QRect> toTopLeft(const QRectF& frame, const QList<ScreenInfo>& screens)
{
    if (screens.isEmpty())
        return std::nullopt;
    const double primaryHeight = screens.first().frame.height();
    const QRectF flipped(frame.x(), primaryHeight - frame.y() - frame.height(), frame.width(), frame.height());
    return QRect(int(std::lround(flipped.x())), int(std::lround(flipped.y())), int(std::lround(flipped.width())),
                 int(std::lround(flipped.height())));
}

std::optional<QRectF> fromTopLeft(const QRectF& geometry, const QList<ScreenInfo>& screens)
{
    if (screens.isEmpty())
        return std::nullopt;
    const double primaryHeight = screens.first().frame.height();
    return QRectF(geometry.x(), primaryHeight - geometry.y() - geometry.height(), geometry.width(), geometry.height());
}

CardFrame::CardFrame(double pointerOffset, QSizeF initialSize)
    : m_pointerOffset(pointerOffset)
    , m_frame(QPointF(0, 0), initialSize)
{}

void CardFrame::position(QPointF point, const QList<ScreenInfo>& screens)
{
    m_frame.moveTo(cardOrigin(point, m_frame.size(), m_pointerOffset, screens));
}

bool CardFrame::resizeToFit(QSizeF fitting, double tolerance, const QList<ScreenInfo>& screens)
{
    if (std::abs(m_frame.width() - fitting.width()) <= tolerance &&
        std::abs(m_frame.height() - fitting.height()) <= tolerance)
        return false;
    m_frame.setSize(fitting);
    if (m_lastTrackedPoint)
        position(*m_lastTrackedPoint, screens);
    return true;
}

bool CardFrame::resizeKeepingTop(double height, double tolerance)
{
    const double current = m_frame.height();
    if (std::abs(current - height) <= tolerance)
        return false;
    // y upward: the top edge is y + height, so moving y down by the growth keeps it fixed.
    m_frame = QRectF(m_frame.x(), m_frame.y() - (height - current), m_frame.width(), height);
    return true;
}

} // namespace tolvane::overlay
