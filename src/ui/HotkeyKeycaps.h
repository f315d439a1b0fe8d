// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QRectF>
#include <QStringList>
#include <QWidget>

namespace tolvane {

// A hotkey drawn as a row of keycaps: one cap per modifier symbol, then one for the key's name
// ("⌥" "Space"). Used by the settings screen and the first-run guide.
class HotkeyKeycaps final : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString displayString READ displayString WRITE setDisplayString)
    Q_PROPERTY(qreal pointSize READ pointSize WRITE setPointSize)
public:
    static constexpr qreal spacing = 3;
    static constexpr qreal cornerRadius = 6;
    static constexpr qreal wordPadding = 8;

    explicit HotkeyKeycaps(QWidget* parent = nullptr);
    HotkeyKeycaps(const QString& displayString, qreal pointSize, QWidget* parent = nullptr);

    QString displayString() const { return m_displayString; }
    void setDisplayString(const QString& displayString);
    qreal pointSize() const { return m_pointSize; }
    void setPointSize(qreal pointSize);

    QStringList keycaps() const;
    // Where each cap sits, in the order of keycaps(), vertically centred in the widget.
    QList<QRectF> keycapRects() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QFont keycapFont() const;
    QList<QSizeF> keycapSizes() const;

    QString m_displayString;
    qreal m_pointSize = 13;
};

} // namespace tolvane
