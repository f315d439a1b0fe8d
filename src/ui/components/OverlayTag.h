// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QLabel>

namespace tolvane {

// A short tag on the floating cards ("EN → FR", "Live"): 9-point bold text with 0.4 points of
// letter spacing in its tint, padded 6 × 2 points on a capsule of the tint at 14 % opacity.
// Qt::PlainText: a language code or a label is never read as markup.
class OverlayTag final : public QLabel
{
    Q_OBJECT
public:
    static constexpr double horizontalPadding = 6;
    static constexpr double verticalPadding = 2;
    static constexpr double fillOpacity = 0.14;

    explicit OverlayTag(QWidget* parent = nullptr);
    OverlayTag(const QString& text, const QColor& tint, QWidget* parent = nullptr);

    QColor tint() const { return m_tint; }
    void setTint(const QColor& tint);
    void setTagText(const QString& text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor m_tint;
};

} // namespace tolvane
