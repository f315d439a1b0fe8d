// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/review/FlashcardView.h"

#include "core/records/ReviewCard.h"
#include "ui/components/TextStyle.h"

#include <QEasingCurve>
#include <QFrame>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QStackedLayout>
#include <QVBoxLayout>
#include <QVariantAnimation>

#include <cmath>
#include <numbers>

namespace tolvane {

namespace {

constexpr int padding = 16;
constexpr qreal translationPointSize = 22;
constexpr qreal smallestTranslationScale = 0.6;

QString shown(const QString& text)
{
    if (text.size() <= FlashcardView::longestShownText)
        return text;
    QString cut = text.left(FlashcardView::longestShownText);
    if (cut.back().isHighSurrogate())
        cut.chop(1);
    return cut + QStringLiteral("\u2026");
}

QLabel* plainLabel(QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignCenter);
    // Long texts are clipped by the card rather than pushing the window's layout apart.
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    return label;
}

// A face's texts on a transparent ground, so the turning card keeps its own panel behind them.
QPixmap faceImage(QWidget* face, const QSize& size)
{
    face->resize(size);
    const qreal ratio = face->devicePixelRatioF();
    QPixmap image(size * ratio);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    face->render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

} // namespace

// Draws the turning card: the old face narrowing to an edge, then the new face widening from it.
class FlashcardTurnOverlay final : public QWidget
{
public:
    explicit FlashcardTurnOverlay(FlashcardView* card)
        : QWidget(card)
        , m_card(card)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        hide();
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        const qreal t = m_card->m_turnProgress;
        const bool firstHalf = t < 0.5;
        const QPixmap& face = firstHalf ? m_card->m_turnFrom : m_card->m_turnTo;
        // The spring runs a little past the end and back, so the new face settles into its width.
        const qreal scale = std::abs(std::cos(t * std::numbers::pi));
        QPainter painter(this);
        painter.setRenderHints(QPainter::SmoothPixmapTransform | QPainter::Antialiasing);
        painter.fillRect(rect(), palette().color(QPalette::Window));
        const qreal faceWidth = width() * scale;
        const QRectF target((width() - faceWidth) / 2.0, 0, faceWidth, height());
        QColor edge = palette().color(QPalette::WindowText);
        edge.setAlphaF(0.14f);
        painter.setPen(QPen(edge, 1));
        painter.setBrush(palette().color(QPalette::Base));
        painter.drawRoundedRect(target.adjusted(0.5, 0.5, -0.5, -0.5), 14 * scale, 14);
        painter.drawPixmap(target, face, QRectF(face.rect()));
    }

private:
    FlashcardView* m_card;
};

FlashcardView::FlashcardView(QWidget* parent)
    : QAbstractButton(parent)
    , m_faces(new QStackedLayout)
    , m_front(plainLabel(this))
    , m_backSource(plainLabel(this))
    , m_translation(plainLabel(this))
    , m_reading(plainLabel(this))
    , m_context(plainLabel(this))
{
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
    setAccessibleDescription(QStringLiteral("Click to flip"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);

    m_front->setFont(textStyleFont(TextStyle::largeTitle, QFont::DemiBold));
    auto* front = new QWidget;
    auto* frontLayout = new QVBoxLayout(front);
    frontLayout->setContentsMargins(padding, padding, padding, padding);
    frontLayout->addWidget(m_front);

    m_backSource->setFont(textStyleFont(TextStyle::subheadline, QFont::Medium));
    m_reading->setFont(textStyleFont(TextStyle::subheadline));
    // The palette's quieter text colour, which follows a switch between light and dark.
    m_backSource->setForegroundRole(QPalette::PlaceholderText);
    m_reading->setForegroundRole(QPalette::PlaceholderText);
    m_context->setFont(textStyleFont(TextStyle::caption));
    m_context->setForegroundRole(QPalette::PlaceholderText);

    auto* divider = new QFrame;
    divider->setFrameShape(QFrame::HLine);
    divider->setFixedWidth(100);
    divider->setForegroundRole(QPalette::PlaceholderText);

    auto* back = new QWidget;
    auto* backLayout = new QVBoxLayout(back);
    backLayout->setContentsMargins(padding, padding, padding, padding);
    backLayout->setSpacing(6);
    backLayout->addStretch(1);
    backLayout->addWidget(m_backSource);
    backLayout->addWidget(divider, 0, Qt::AlignHCenter);
    backLayout->addWidget(m_translation);
    backLayout->addWidget(m_reading);
    backLayout->addWidget(m_context);
    backLayout->addStretch(1);

    // The faces are not separate stops on the bus: the card itself speaks for them.
    for (QLabel* label : {m_front, m_backSource, m_translation, m_reading, m_context})
        label->setAttribute(Qt::WA_TransparentForMouseEvents);
    front->setAttribute(Qt::WA_TransparentForMouseEvents);
    back->setAttribute(Qt::WA_TransparentForMouseEvents);

    m_faces->addWidget(front);
    m_faces->addWidget(back);
    setLayout(m_faces);

    m_turnOverlay = new FlashcardTurnOverlay(this);
}

FlashcardView::~FlashcardView()
{
    // A turn still running stops when QWidget deletes it, after this view's own part is gone;
    // its handlers must not run on what is left.
    if (m_turn)
        m_turn->disconnect(this);
}

bool FlashcardView::isTurning() const
{
    return m_turn && m_turn->state() == QAbstractAnimation::Running;
}

void FlashcardView::showCard(const ReviewCard& card, const std::optional<QString>& reading, bool flipped, bool animate)
{
    const QString key = card.id.toString() + card.sourceText + card.translation;
    const bool turning = animate && isVisible() && key == m_cardKey && flipped != m_flipped;
    QPixmap before;
    if (turning)
        before = faceImage(m_faces->currentWidget(), size());
    m_cardKey = key;
    m_flipped = flipped;

    // Han characters take the glyph forms of the card's language.
    const QString language = card.targetLanguage.value_or(QString());
    m_front->setFont(withLanguageFamilies(textStyleFont(TextStyle::largeTitle, QFont::DemiBold),
                                          cjkLanguageOf(card.sourceText, language)));
    m_translationLanguage = cjkLanguageOf(card.translation, language);
    m_front->setText(shown(card.sourceText));
    m_backSource->setText(shown(card.sourceText));
    m_translation->setText(shown(card.translation));
    m_reading->setText(reading.value_or(QString()));
    m_reading->setVisible(reading.has_value());
    m_context->setText(shown(card.context.value_or(QString())));
    m_context->setVisible(card.context.has_value() && !card.context->trimmed().isEmpty());
    fitTranslation();
    m_faces->setCurrentIndex(flipped ? 1 : 0);
    setAccessibleName(flipped ? QStringLiteral("Card back: ") + shown(card.translation)
                              : QStringLiteral("Card front: ") + shown(card.sourceText));

    if (turning)
        startTurn(before);
    else if (m_turn)
        m_turn->stop();
}

void FlashcardView::startTurn(const QPixmap& from)
{
    if (m_turn)
        m_turn->stop();
    m_turnFrom = from;
    m_turnTo = faceImage(m_faces->currentWidget(), size());
    auto* turn = new QVariantAnimation(this);
    turn->setStartValue(0.0);
    turn->setEndValue(1.0);
    turn->setDuration(flipMilliseconds);
    // A spring with a damping fraction of about 0.8: quick, with a slight settle at the end.
    QEasingCurve spring(QEasingCurve::OutBack);
    spring.setOvershoot(0.6);
    turn->setEasingCurve(spring);
    connect(turn, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        m_turnProgress = value.toReal();
        m_turnOverlay->update();
    });
    // Finished or stopped by the next change alike: the faces underneath are current again.
    connect(turn, &QVariantAnimation::stateChanged, this, [this](QAbstractAnimation::State state) {
        if (state != QAbstractAnimation::Stopped)
            return;
        m_turnProgress = 1.0;
        m_turnOverlay->hide();
        m_turnFrom = {};
        m_turnTo = {};
    });
    m_turn = turn;
    m_turnProgress = 0.0;
    m_turnOverlay->setGeometry(rect());
    m_turnOverlay->show();
    m_turnOverlay->raise();
    turn->start(QAbstractAnimation::DeleteWhenStopped);
}

void FlashcardView::fitTranslation()
{
    QFont font = withLanguageFamilies(pointSizeFont(translationPointSize, QFont::DemiBold), m_translationLanguage);
    const int available = qMax(1, width() - 2 * padding - 8);
    const int natural = QFontMetrics(font).horizontalAdvance(m_translation->text().section(u'\n', 0, 0));
    if (natural > available) {
        const qreal scale = qMax(smallestTranslationScale, qreal(available) / natural);
        font =
            withLanguageFamilies(pointSizeFont(translationPointSize * scale, QFont::DemiBold), m_translationLanguage);
    }
    m_translation->setFont(font);
}

void FlashcardView::resizeEvent(QResizeEvent* event)
{
    QAbstractButton::resizeEvent(event);
    fitTranslation();
    m_turnOverlay->setGeometry(rect());
}

void FlashcardView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor edge = palette().color(QPalette::WindowText);
    edge.setAlphaF(hasFocus() ? 0.35f : 0.14f);
    painter.setPen(QPen(edge, 1));
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 14, 14);
}

} // namespace tolvane
