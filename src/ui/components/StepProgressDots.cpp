// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/components/StepProgressDots.h"

#include <QPainter>

#include <algorithm>

namespace tolvane {

StepProgressDots::StepProgressDots(int total, QWidget* parent)
    : QWidget(parent)
    , m_total(std::max(1, total))
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    refreshName();
}

void StepProgressDots::setCurrent(int current)
{
    current = std::clamp(current, 0, m_total - 1);
    if (current == m_current)
        return;
    m_current = current;
    refreshName();
    update();
}

void StepProgressDots::setTotal(int total)
{
    m_total = std::max(1, total);
    m_current = std::min(m_current, m_total - 1);
    refreshName();
    updateGeometry();
    update();
}

void StepProgressDots::refreshName()
{
    setAccessibleName(QStringLiteral("Step %1 of %2").arg(m_current + 1).arg(m_total));
}

QSize StepProgressDots::sizeHint() const
{
    return {currentWidth + (m_total - 1) * (dotWidth + spacing), dotHeight};
}

void StepProgressDots::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QColor accent = palette().color(QPalette::Highlight);
    QColor before = accent;
    before.setAlphaF(0.35f);
    QColor after = palette().color(QPalette::PlaceholderText);
    after.setAlphaF(0.25f);
    const qreal y = (height() - dotHeight) / 2.0;
    qreal x = (width() - sizeHint().width()) / 2.0;
    for (int i = 0; i < m_total; ++i) {
        const int w = i == m_current ? currentWidth : dotWidth;
        painter.setBrush(i == m_current ? accent : i < m_current ? before : after);
        painter.drawRoundedRect(QRectF(x, y, w, dotHeight), dotHeight / 2.0, dotHeight / 2.0);
        x += w + spacing;
    }
}

} // namespace tolvane
