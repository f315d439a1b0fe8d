// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace tolvane {

// Where the user is in a sequence of steps: one dot per step, the current one drawn as a wider
// bar, earlier ones in the accent colour and later ones in the secondary colour, both faint.
// Read aloud as "Step N of M".
class StepProgressDots final : public QWidget
{
    Q_OBJECT
public:
    static constexpr int dotHeight = 6;
    static constexpr int currentWidth = 20;
    static constexpr int dotWidth = 6;
    static constexpr int spacing = 6;

    explicit StepProgressDots(int total = 1, QWidget* parent = nullptr);

    int current() const { return m_current; }
    int total() const { return m_total; }
    // current is zero-based and kept within 0 … total − 1.
    void setCurrent(int current);
    void setTotal(int total);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void refreshName();

    int m_current = 0;
    int m_total = 1;
};

} // namespace tolvane
