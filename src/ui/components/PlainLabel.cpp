// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/components/PlainLabel.h"

#include <QLabel>

namespace tolvane {

QLabel* plainLabel(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

QLabel* secondaryLabel(const QString& text, QWidget* parent)
{
    QLabel* label = plainLabel(text, parent);
    label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}

QLabel* pictureLabel(QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    return label;
}

QLabel* captionLabel(const QString& text, QWidget* parent)
{
    QLabel* label = secondaryLabel(text, parent);
    QFont small = label->font();
    small.setPointSizeF(small.pointSizeF() * 0.9);
    label->setFont(small);
    return label;
}

} // namespace tolvane
