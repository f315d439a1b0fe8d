// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/setup/OnboardingDemoTimeline.h"

#include <QVariantAnimation>
#include <QWidget>

namespace tolvane {

class Scheduler;

// The welcome step's miniature look-up: a sentence, the pointer coming to rest on "wonderful",
// the word set apart, the hotkey going down, and a small card with the translation and a speaker.
// It plays only while shown: hiding it stops the loop and any running animation.
class WelcomeTranslationDemo final : public QWidget
{
    Q_OBJECT
public:
    explicit WelcomeTranslationDemo(Scheduler& scheduler, QWidget* parent = nullptr);
    ~WelcomeTranslationDemo() override;

    int phase() const { return m_timeline.phase(); }
    bool isPlaying() const { return m_timeline.isRunning(); }
    bool isAnimating() const { return m_animation.state() == QAbstractAnimation::Running; }
    // What is drawn now.
    const DemoFrame& frame() const { return m_frame; }
    // Draws a given moment, for pictures of the demonstration.
    void showFrame(const DemoFrame& frame);

    QSize sizeHint() const override;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void phaseChanged(int phase, const DemoAnimation& animation);

    OnboardingDemoTimeline m_timeline;
    QVariantAnimation m_animation;
    DemoAnimation m_curve;
    DemoFrame m_from;
    DemoFrame m_to;
    DemoFrame m_frame;
};

} // namespace tolvane
