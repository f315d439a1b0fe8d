// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/progress/MilestoneCelebrationView.h"

#include "core/progress/ProgressTexts.h"
#include "ui/components/TextStyle.h"
#include "ui/progress/NumberTile.h"
#include "ui/progress/ProgressSymbols.h"
#include "ui/share/SharePayload.h"
#include "ui/share/SharePresenter.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace tolvane {

namespace t = progress_texts;

namespace {

const QColor sparkleTint(0xF2, 0xA9, 0x00);

// The word and its translation on a softly rounded panel.
class WordCard final : public QWidget
{
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        QColor fill = palette().color(QPalette::Text);
        fill.setAlphaF(0.06f);
        painter.setPen(Qt::NoPen);
        painter.setBrush(fill);
        painter.drawRoundedRect(QRectF(rect()), 12, 12);
    }
};

QLabel* wordLabel(const QString& text, QFont::Weight weight, const QString& languageCode)
{
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignHCenter);
    label->setWordWrap(true);
    label->setFont(withLanguageFamilies(textStyleFont(TextStyle::title2, weight), languageCode));
    return label;
}

} // namespace

MilestoneCelebrationView::MilestoneCelebrationView(const LookupMilestone& milestone, SharePresenter& presenter,
                                                   QWidget* parent)
    : QWidget(parent)
    , m_milestone(milestone)
    , m_presenter(presenter)
    , m_notNow(new QPushButton(t::notNow))
    , m_share(new QPushButton(t::shareMilestone))
{
    setAccessibleName(t::celebrationWindowTitle);

    auto* icon = new QLabel;
    icon->setPixmap(progressSymbol(ProgressSymbol::sparkles, sparkleTint).pixmap(QSize(32, 32), devicePixelRatioF()));
    icon->setAlignment(Qt::AlignHCenter);

    auto* headline = new QLabel(t::milestoneHeadline(milestone.count));
    headline->setTextFormat(Qt::PlainText);
    headline->setAlignment(Qt::AlignHCenter);
    headline->setFont(TabularNumberLabel::numberFont(TextStyle::largeTitle, QFont::Bold));

    auto* sentence = new QLabel(t::celebrationSentence());
    sentence->setTextFormat(Qt::PlainText);
    sentence->setAlignment(Qt::AlignHCenter);
    sentence->setWordWrap(true);
    sentence->setForegroundRole(QPalette::PlaceholderText);
    sentence->setFont(textStyleFont(TextStyle::callout));

    auto* card = new WordCard;
    card->setAccessibleName(milestone.source + QStringLiteral(" → ") + milestone.translation);
    // The side in the learning language takes its glyph forms (Han in Japanese, say).
    const QString english = QStringLiteral("en");
    const bool fromEnglish = milestone.direction == DetectedDirection::englishToTarget;
    auto* source = wordLabel(milestone.source, QFont::Bold, fromEnglish ? english : milestone.targetLanguageCode);
    auto* arrow = new QLabel;
    arrow->setPixmap(progressSymbol(ProgressSymbol::arrowDown, palette().color(QPalette::PlaceholderText))
                         .pixmap(QSize(16, 16), devicePixelRatioF()));
    arrow->setAlignment(Qt::AlignHCenter);
    auto* translation =
        wordLabel(milestone.translation, QFont::DemiBold, fromEnglish ? milestone.targetLanguageCode : english);
    auto* cardLayout = new QVBoxLayout(card);
    cardLayout->setContentsMargins(16, 12, 16, 12);
    cardLayout->setSpacing(4);
    cardLayout->addWidget(source);
    cardLayout->addWidget(arrow);
    cardLayout->addWidget(translation);

    m_notNow->setAccessibleName(t::notNow);
    m_share->setAccessibleName(t::shareMilestone);
    m_share->setDefault(true);
    for (QPushButton* button : {m_notNow, m_share})
        button->setMinimumSize(110, 30);
    // The prominent button: filled with the accent colour.
    QPalette prominent = m_share->palette();
    prominent.setColor(QPalette::Button, palette().color(QPalette::Highlight));
    prominent.setColor(QPalette::ButtonText, palette().color(QPalette::HighlightedText));
    m_share->setPalette(prominent);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(10);
    buttons->addStretch(1);
    buttons->addWidget(m_notNow);
    buttons->addWidget(m_share);
    buttons->addStretch(1);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->setSpacing(10);
    layout->addStretch(1);
    layout->addWidget(icon);
    layout->addWidget(headline);
    layout->addWidget(sentence);
    layout->addWidget(card);
    layout->addSpacing(8);
    layout->addLayout(buttons);
    layout->addStretch(1);

    connect(m_notNow, &QPushButton::clicked, this, [this] { window()->close(); });
    connect(m_share, &QPushButton::clicked, this, [this] { m_presenter.present(milestoneSharePayload(m_milestone)); });
}

} // namespace tolvane
