// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>
#include <QColor>
#include <QLabel>
#include <QWidget>

class QTimer;

namespace tolvane {

// A label of the cards: Qt::PlainText only (a word or sentence is never markup), not selectable, no
// focus, wrapping at the card's width.
class CardLabel final : public QLabel
{
    Q_OBJECT
public:
    explicit CardLabel(QWidget* parent, bool wraps = true);
    void setColor(const QColor& color);
    // Sets the font only when it changed: a font change re-lays the label out.
    void setCardFont(const QFont& font);
    // Sets the text (and the accessible name) only when it changed.
    void setCardText(const QString& text);
    // The label's width on one line, for the card's ideal width.
    double naturalWidth() const;
    int heightAt(int width) const;

private:
    bool m_wraps;
    QColor m_color;
};

// The word card's speaker button: a borderless speaker symbol that never takes the focus.
class SpeakerButton final : public QAbstractButton
{
    Q_OBJECT
public:
    explicit SpeakerButton(QWidget* parent);
    void setColor(const QColor& color);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor m_color;
};

// A small spinning progress indicator; it turns only while shown.
class CardSpinner final : public QWidget
{
    Q_OBJECT
public:
    explicit CardSpinner(QWidget* parent);
    void setColor(const QColor& color);
    QSize sizeHint() const override { return {16, 16}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QTimer* m_timer;
    int m_step = 0;
    QColor m_color;
};

} // namespace tolvane
