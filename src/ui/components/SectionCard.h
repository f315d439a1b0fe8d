// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QFrame>
#include <QIcon>

class QLabel;
class QVBoxLayout;

namespace tolvane {

// A titled group of controls: a header with a white symbol on a small rounded square filled with
// a gradient of the tint, and the title; the content below, on a softly rounded panel.
class SectionCard final : public QFrame
{
    Q_OBJECT
public:
    SectionCard(const QString& title, const QIcon& symbol, const QColor& tint, QWidget* parent = nullptr);

    // Where the section's controls go.
    QVBoxLayout* contentLayout() const { return m_content; }
    QString title() const;

    // The symbol's square: 21 × 21 with a corner radius of 6.
    static constexpr int badgeSide = 21;
    static constexpr qreal badgeRadius = 6;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QLabel* m_title; // Qt::PlainText
    QVBoxLayout* m_content;
};

// The 21 × 21 square with its white symbol, at the given device pixel ratio.
QPixmap sectionBadge(const QIcon& symbol, const QColor& tint, qreal devicePixelRatio);

} // namespace tolvane
