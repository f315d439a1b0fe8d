// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/components/TextStyle.h"

#include <QLabel>
#include <QWidget>

namespace tolvane {

// A number in a rounded semibold face, each digit in a cell of the same width so that figures
// do not shift sideways as they change, whatever the font's own digits do. Qt::PlainText.
class TabularNumberLabel final : public QLabel
{
    Q_OBJECT
public:
    explicit TabularNumberLabel(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    // The rounded face of numbers, at the size of a text style.
    static QFont numberFont(TextStyle style, QFont::Weight weight = QFont::DemiBold);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    qreal digitCell() const;
    qreal textWidth() const;
};

// A labelled number: the figure above its caption.
class NumberTile final : public QWidget
{
    Q_OBJECT
public:
    explicit NumberTile(const QString& caption, QWidget* parent = nullptr);

    void setValue(qint64 value);
    QString caption() const { return m_caption->text(); }
    QString valueText() const { return m_value->text(); }

private:
    TabularNumberLabel* m_value;
    QLabel* m_caption; // Qt::PlainText
};

} // namespace tolvane
