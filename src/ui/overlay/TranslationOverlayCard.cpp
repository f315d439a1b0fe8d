// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/overlay/TranslationOverlayCard.h"

#include "core/overlay/OverlayGeometry.h"
#include "core/overlay/OverlayText.h"
#include "ui/components/OverlayTag.h"
#include "ui/components/TextStyle.h"
#include "ui/overlay/OverlayWidgets.h"

#include <QFontMetricsF>
#include <QScrollArea>
#include <QScrollBar>

#include <cmath>

namespace tolvane {

using namespace overlay;

namespace {
constexpr int lineSpacing = 4;
constexpr int tagSpacing = 5;
constexpr int scrollIndicatorWidth = 6;

// The learning language a direction label names ("EN → JA" → "ja"), to choose CJK glyph forms.
QString languageOfLabel(const std::optional<QString>& label)
{
    if (!label)
        return {};
    if (label->contains(QLatin1String("JA")))
        return QStringLiteral("ja");
    if (label->contains(QLatin1String("KO")))
        return QStringLiteral("ko");
    return {};
}

// One line cut to the width with "…"; the text is limited before it is measured.
QString elidedLine(const QString& text, const QFont& font, int width)
{
    QString line = text.left(1000);
    line.replace(QLatin1Char('\n'), QLatin1Char(' '));
    return QFontMetricsF(font).elidedText(line, Qt::ElideRight, width);
}
} // namespace

TranslationOverlayCard::TranslationOverlayCard(QWidget* parent)
    : OverlayCardWidget(parent)
    , m_scroll(new QScrollArea(this))
    , m_content(new QWidget)
    , m_direction(new OverlayTag(m_content))
    , m_badge(new OverlayTag(m_content))
    , m_source(new CardLabel(m_content))
    , m_translation(new CardLabel(m_content))
    , m_context(new CardLabel(m_content))
{
    setAccessibleName(QStringLiteral("Translation card"));
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_scroll->setWidgetResizable(false);
    m_scroll->setAutoFillBackground(false);
    m_scroll->viewport()->setAutoFillBackground(false);
    m_scroll->setWidget(m_content);
    // The scroll area paints its widget's background by default; the card's own shows through.
    m_content->setAutoFillBackground(false);
    m_scroll->verticalScrollBar()->setAccessibleName(QStringLiteral("Scroll"));
    paletteChanged();
    setView(m_view);
}

void TranslationOverlayCard::paletteChanged()
{
    const OverlayPalette& p = overlayPalette();
    m_direction->setTint(p.secondary);
    m_badge->setTint(p.green);
    m_source->setColor(p.secondary);
    m_translation->setColor(p.primary);
    m_context->setColor(p.tertiary);
    setBorderTint(p.accent);
    // A thin indicator like the desktop's overlay scroll bars, in the secondary colour.
    QColor handle = p.primary;
    handle.setAlphaF(0.35f);
    m_scroll->verticalScrollBar()->setStyleSheet(
        QStringLiteral("QScrollBar:vertical { background: transparent; width: %1px; margin: 0; }"
                       "QScrollBar::handle:vertical { background: %2; border-radius: %3px; min-height: 24px; }"
                       "QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0; }"
                       "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical { background: transparent; }")
            .arg(scrollIndicatorWidth)
            .arg(handle.name(QColor::HexArgb))
            .arg(scrollIndicatorWidth / 2));
}

void TranslationOverlayCard::setView(const TranslationOverlayView& view)
{
    m_view = view;
    const QString language = languageOfLabel(view.directionLabel);
    m_direction->setHidden(!view.directionLabel);
    m_badge->setHidden(!view.badge);
    if (view.directionLabel)
        m_direction->setTagText(displayText(*view.directionLabel, 200));
    if (view.badge)
        m_badge->setTagText(displayText(*view.badge, 200));

    const QString source = displayText(view.source, passageCardTextLimit);
    const QString translation = displayText(view.translation, passageCardTextLimit);
    m_source->setCardFont(withLanguageFamilies(textStyleFont(TextStyle::caption), cjkLanguageOf(source, language)));
    m_translation->setCardFont(withLanguageFamilies(pointSizeFont(view.isPassage ? 15 : 18, QFont::Bold),
                                                    cjkLanguageOf(translation, language)));
    if (view.isPassage) {
        m_source->setWordWrap(true);
        m_source->setCardText(source);
        m_translation->setCardText(translation);
    } else {
        // A word: the source on one line, the translation on two at most (clipped by the frame).
        m_source->setWordWrap(false);
        m_source->setCardText(elidedLine(source, m_source->font(), int(passageCardWordFrame.width())));
        m_source->setAccessibleName(source);
        m_translation->setCardText(translation);
    }
    const bool context = view.context && !view.context->isEmpty();
    m_context->setHidden(!context);
    if (context) {
        const QString text = displayText(*view.context, passageCardTextLimit);
        m_context->setCardFont(withLanguageFamilies(textStyleFont(TextStyle::caption2), cjkLanguageOf(text, language)));
        m_context->setCardText(text);
    }
    m_scroll->setVerticalScrollBarPolicy(view.isPassage ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
    placeContent();
    update();
}

int TranslationOverlayCard::layoutContent(int width, bool apply) const
{
    int y = 0;
    int rowHeight = 0;
    // The tags share the row; a tag longer than the card is cut (and drawn with "…").
    QSize direction = m_direction->isHidden() ? QSize() : m_direction->sizeHint();
    QSize badge = m_badge->isHidden() ? QSize() : m_badge->sizeHint();
    direction.setWidth(std::min(direction.width(), width));
    badge.setWidth(
        std::max(0, std::min(badge.width(), width - (direction.width() > 0 ? direction.width() + tagSpacing : 0))));
    rowHeight = std::max(direction.height(), badge.height());
    if (rowHeight > 0) {
        int x = 0;
        if (!m_direction->isHidden()) {
            if (apply)
                m_direction->setGeometry(x, (rowHeight - direction.height()) / 2, direction.width(),
                                         direction.height());
            x += direction.width() + tagSpacing;
        }
        if (!m_badge->isHidden() && apply)
            m_badge->setGeometry(x, (rowHeight - badge.height()) / 2, badge.width(), badge.height());
        y = rowHeight + lineSpacing;
    }
    const auto line = [&](CardLabel* label, int height) {
        if (apply)
            label->setGeometry(0, y, width, height);
        y += height + lineSpacing;
    };
    line(m_source, m_view.isPassage ? m_source->heightForWidth(width) : m_source->sizeHint().height());
    int translationHeight = m_translation->heightForWidth(width);
    if (!m_view.isPassage) {
        const int twoLines = int(std::ceil(2 * QFontMetricsF(m_translation->font()).lineSpacing()));
        translationHeight = std::min(translationHeight, twoLines);
    }
    line(m_translation, translationHeight);
    if (!m_context->isHidden())
        line(m_context, m_context->heightForWidth(width));
    return y - lineSpacing;
}

double TranslationOverlayCard::fittingHeight() const
{
    const double padding = 2 * cardPadding;
    if (!m_view.isPassage)
        return passageCardFittingHeight(passageCardWordFrame.height() + padding);
    return passageCardFittingHeight(layoutContent(int(passageCardWidth - padding), false) + padding);
}

void TranslationOverlayCard::placeContent()
{
    const QRect area = contentRect();
    m_scroll->setGeometry(area);
    if (!m_view.isPassage) {
        // The word's fixed frame, top-leading; what does not fit is clipped.
        const int width = std::min(area.width(), int(passageCardWordFrame.width()));
        layoutContent(width, true);
        m_content->resize(width, std::min(area.height(), int(passageCardWordFrame.height())));
        return;
    }
    // Room for the indicator only when the passage needs it.
    int width = area.width();
    int height = layoutContent(width, false);
    if (height > area.height()) {
        width -= scrollIndicatorWidth + 2;
        height = layoutContent(width, false);
    }
    layoutContent(width, true);
    m_content->resize(width, height);
}

void TranslationOverlayCard::resizeEvent(QResizeEvent* event)
{
    OverlayCardWidget::resizeEvent(event);
    placeContent();
}

} // namespace tolvane
