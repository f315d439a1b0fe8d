// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>
#include <QString>

namespace tolvane {

// A small state badge: a 6 × 6 dot and a text, green with onText while on, orange with offText
// while off, on a capsule of that colour at 13% opacity. A label, so screen readers and the
// accessibility bus read its text. Qt::PlainText, like every label that shows our texts.
class StatusBadge final : public QLabel
{
    Q_OBJECT
    Q_PROPERTY(bool isOn READ isOn WRITE setOn)
public:
    StatusBadge(QString onText, QString offText, QWidget* parent = nullptr);

    bool isOn() const { return m_isOn; }
    void setOn(bool on);
    QString currentText() const { return m_isOn ? m_onText : m_offText; }

    static QColor onColor();
    static QColor offColor();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QFont badgeFont() const;

    QString m_onText;
    QString m_offText;
    bool m_isOn = false;
};

} // namespace tolvane
