// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/setup/WelcomeTranslationDemo.h"

#include "core/setup/OnboardingTexts.h"
#include "ui/components/TextStyle.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace tolvane {

namespace {

constexpr int demoWidth = 380;
constexpr int demoHeight = 132;
constexpr qreal sentencePixelSize = 15;
constexpr qreal cardPixelSize = 13;

qreal clamp01(qreal v)
{
    return std::clamp(v, 0.0, 1.0);
}

QColor withAlpha(QColor c, qreal alpha)
{
    c.setAlphaF(float(clamp01(alpha) * c.alphaF()));
    return c;
}

// The arrow pointer with its tip at (0, 0), 18 pixels tall.
QPainterPath pointerPath()
{
    QPainterPath p;
    p.moveTo(0, 0);
    p.lineTo(0, 17);
    p.lineTo(4.2, 13.2);
    p.lineTo(7.2, 19.6);
    p.lineTo(10, 18.4);
    p.lineTo(7.1, 12.1);
    p.lineTo(12.6, 12.1);
    p.closeSubpath();
    return p;
}

// A speaker with up to two waves, in a box of 16 × 14 with its top left at (0, 0).
void drawSpeaker(QPainter& painter, const QColor& color, qreal waves)
{
    QPainterPath body;
    body.moveTo(0, 4.5);
    body.lineTo(3.5, 4.5);
    body.lineTo(7.5, 1);
    body.lineTo(7.5, 13);
    body.lineTo(3.5, 9.5);
    body.lineTo(0, 9.5);
    body.closeSubpath();
    painter.fillPath(body, color);
    QPen pen(color, 1.4, Qt::SolidLine, Qt::RoundCap);
    for (int i = 0; i < 2; ++i) {
        // The inner wave is always there; the outer one comes with the sound.
        const qreal alpha = i == 0 ? 0.6 + 0.4 * waves : waves;
        pen.setColor(withAlpha(color, alpha));
        painter.setPen(pen);
        const qreal r = 3.5 + 3.2 * i;
        painter.drawArc(QRectF(7.5 - r + 2, 7 - r, 2 * r, 2 * r), -50 * 16, 100 * 16);
    }
}

} // namespace

WelcomeTranslationDemo::WelcomeTranslationDemo(Scheduler& scheduler, QWidget* parent)
    : QWidget(parent)
    , m_timeline(scheduler)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleName(OnboardingTexts::demoSentenceBefore + OnboardingTexts::demoWord +
                      OnboardingTexts::demoSentenceAfter + QLatin1Char(' ') + OnboardingTexts::demoTranslation);
    m_animation.setStartValue(0.0);
    m_animation.setEndValue(1.0);
    connect(&m_animation, &QVariantAnimation::valueChanged, this, [this] {
        const double t = m_curve.progress(m_animation.currentTime() / 1000.0);
        m_frame = DemoFrame::mix(m_from, m_to, t);
        update();
    });
    connect(&m_timeline, &OnboardingDemoTimeline::phaseChanged, this, &WelcomeTranslationDemo::phaseChanged);
}

WelcomeTranslationDemo::~WelcomeTranslationDemo() = default;

QSize WelcomeTranslationDemo::sizeHint() const
{
    return {demoWidth, demoHeight};
}

void WelcomeTranslationDemo::showFrame(const DemoFrame& frame)
{
    m_timeline.stop();
    m_animation.stop();
    m_frame = frame;
    update();
}

void WelcomeTranslationDemo::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    m_timeline.start();
}

void WelcomeTranslationDemo::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    // Nothing may tick while nobody can see it.
    m_timeline.stop();
    m_animation.stop();
}

void WelcomeTranslationDemo::phaseChanged(int phase, const DemoAnimation& animation)
{
    m_animation.stop();
    m_from = m_frame;
    m_to = DemoFrame::forPhase(phase);
    m_curve = animation;
    const double seconds = animation.totalSeconds();
    if (seconds <= 0) {
        m_frame = m_to;
        update();
        return;
    }
    m_animation.setDuration(int(std::lround(seconds * 1000)));
    m_animation.start();
}

void WelcomeTranslationDemo::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPalette& pal = palette();
    const QColor text = pal.color(QPalette::WindowText);
    const QColor accent = pal.color(QPalette::Highlight);
    const QColor secondary = pal.color(QPalette::PlaceholderText);

    // The page the sentence sits on.
    const QRectF page = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(QPen(withAlpha(secondary, 0.35), 1));
    painter.setBrush(pal.color(QPalette::Base));
    painter.drawRoundedRect(page, 10, 10);

    // The miniature has its own sizes: it is a picture of a look-up, not text to read.
    QFont sentenceFont = pointSizeFont(sentencePixelSize);
    const QFontMetricsF sm(sentenceFont);
    const QString before = OnboardingTexts::demoSentenceBefore;
    const QString word = OnboardingTexts::demoWord;
    const QString after = OnboardingTexts::demoSentenceAfter;
    const qreal sentenceWidth = sm.horizontalAdvance(before + word + after);
    const qreal x0 = (width() - sentenceWidth) / 2;
    const qreal baseline = 32;
    const QRectF wordRect(x0 + sm.horizontalAdvance(before), baseline - sm.ascent(), sm.horizontalAdvance(word),
                          sm.height());

    // The word set apart: a pill that grows in behind it.
    const qreal h = m_frame.highlight;
    if (h > 0.001) {
        const qreal grow = 3 + 2 * h;
        QRectF pill = wordRect.adjusted(-grow, -1, grow, 1);
        const QPointF c = pill.center();
        const qreal scale = 0.85 + 0.15 * h;
        pill = QRectF(c.x() - pill.width() * scale / 2, c.y() - pill.height() * scale / 2, pill.width() * scale,
                      pill.height() * scale);
        painter.setPen(Qt::NoPen);
        painter.setBrush(withAlpha(accent, 0.22 * clamp01(h)));
        painter.drawRoundedRect(pill, pill.height() / 2, pill.height() / 2);
    }
    painter.setFont(sentenceFont);
    painter.setPen(text);
    painter.drawText(QPointF(x0, baseline), before);
    QFont wordFont = sentenceFont;
    wordFont.setWeight(h > 0.5 ? QFont::DemiBold : QFont::Normal);
    painter.setFont(wordFont);
    const qreal mixAccent = clamp01(h);
    painter.setPen(QColor::fromRgbF(float(text.redF() + (accent.redF() - text.redF()) * mixAccent),
                                    float(text.greenF() + (accent.greenF() - text.greenF()) * mixAccent),
                                    float(text.blueF() + (accent.blueF() - text.blueF()) * mixAccent)));
    painter.drawText(QPointF(wordRect.left(), baseline), word);
    painter.setFont(sentenceFont);
    painter.setPen(text);
    painter.drawText(QPointF(wordRect.right(), baseline), after);

    // The card with the translation, rising into place under the word.
    const qreal card = m_frame.card;
    if (card > 0.001) {
        const QFont cardFont = pointSizeFont(cardPixelSize);
        const QFontMetricsF cm(cardFont);
        const QString translation = OnboardingTexts::demoTranslation;
        const qreal cardWidth = cm.horizontalAdvance(translation) + 24 + 22;
        const qreal cardHeight = 34;
        const qreal cx = std::clamp(wordRect.center().x() - cardWidth / 2, 10.0, width() - 10 - cardWidth);
        const qreal cy = baseline + 22 + (1 - card) * 10;
        painter.save();
        painter.setOpacity(clamp01(card));
        const QRectF cardRect(cx, cy, cardWidth, cardHeight);
        painter.setPen(QPen(withAlpha(secondary, 0.4), 1));
        painter.setBrush(pal.color(QPalette::Window));
        painter.drawRoundedRect(cardRect, 9, 9);
        painter.setFont(cardFont);
        painter.setPen(text);
        painter.drawText(QPointF(cx + 12, cy + (cardHeight + cm.ascent() - cm.descent()) / 2), translation);
        painter.translate(cardRect.right() - 12 - 16, cy + (cardHeight - 14) / 2);
        drawSpeaker(painter, m_frame.speaker > 0.001 ? accent : secondary, clamp01(m_frame.speaker));
        painter.restore();
    }

    // The pointer: from its rest below the sentence to the word, dipping as the hotkey goes down.
    const QPointF rest(width() * 0.78, height() - 26);
    const QPointF onWord(wordRect.center().x() + 6, wordRect.bottom() - 4);
    const qreal p = m_frame.pointer;
    const QPointF tip = rest + (onWord - rest) * p;
    const qreal press = clamp01(m_frame.press);
    if (press > 0.001) {
        painter.setPen(QPen(withAlpha(accent, 0.6 * press), 2));
        painter.setBrush(Qt::NoBrush);
        const qreal r = 5 + 7 * press;
        painter.drawEllipse(tip, r, r);
    }
    painter.save();
    painter.translate(tip);
    painter.scale(1 - 0.12 * press, 1 - 0.12 * press);
    const QPainterPath arrow = pointerPath();
    painter.setPen(QPen(Qt::white, 1.2));
    painter.setBrush(QColor(0x1D, 0x1D, 0x1F));
    painter.drawPath(arrow);
    painter.restore();
}

} // namespace tolvane
