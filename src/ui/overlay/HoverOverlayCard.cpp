// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/overlay/HoverOverlayCard.h"

#include "core/overlay/LineFitting.h"
#include "core/overlay/OverlayGeometry.h"
#include "core/overlay/OverlayText.h"
#include "ui/components/OverlayTag.h"
#include "ui/components/TextStyle.h"
#include "ui/overlay/OverlayWidgets.h"

#include <QFontMetricsF>

#include <cmath>

namespace tolvane {

using namespace overlay;
using Kind = HoverOverlayView::State::Kind;

namespace {

// Between the direction tag and the content, between the content's lines, and within a block
// (a translation and its reading, an example and its translation).
constexpr int tagSpacing = 6;
constexpr int lineSpacing = 4;
constexpr int blockSpacing = 2;
constexpr int rowSpacing = 6;
constexpr int spinnerSide = 14;

QString shown(const QString& text)
{
    return displayText(text, wordCardTextLimit);
}

void showIf(QWidget* widget, bool visible)
{
    widget->setHidden(!visible);
}

} // namespace

HoverOverlayCard::HoverOverlayCard(const Transliterator& transliterator, QWidget* parent)
    : OverlayCardWidget(parent)
    , m_transliterator(transliterator)
    , m_tag(new OverlayTag(this))
    , m_placeholderCaption(new CardLabel(this))
    , m_placeholderText(new CardLabel(this))
    , m_source(new CardLabel(this))
    , m_partOfSpeech(new CardLabel(this, false))
    , m_speak(new SpeakerButton(this))
    , m_word(new CardLabel(this))
    , m_translation(new CardLabel(this))
    , m_reading(new CardLabel(this))
    , m_context(new CardLabel(this))
    , m_exampleSentence(new CardLabel(this))
    , m_exampleTranslation(new CardLabel(this))
    , m_spinner(new CardSpinner(this))
    , m_status(new CardLabel(this))
{
    setAccessibleName(QStringLiteral("Word card"));
    m_placeholderCaption->setCardText(HoverOverlayTexts::hoverTracking);
    m_speak->setAccessibleName(HoverOverlayTexts::speak);
    m_spinner->setAccessibleName(HoverOverlayTexts::translating);
    connect(m_speak, &QAbstractButton::clicked, this, [this] {
        if (m_view.onSpeak)
            m_view.onSpeak();
    });
    m_language = QStringLiteral("-"); // no language yet: the first view chooses the fonts
    paletteChanged();
    setView(m_view);
}

void HoverOverlayCard::applyFonts()
{
    const QString& language = m_language;
    // CJK text takes its language's glyph forms; the family goes first in the list.
    const auto font = [&](QFont base, const QString& text) {
        return withLanguageFamilies(std::move(base), cjkLanguageOf(text, language));
    };
    m_placeholderCaption->setCardFont(textStyleFont(TextStyle::caption));
    m_placeholderText->setCardFont(font(monospacedFont(16, QFont::DemiBold), m_placeholderText->text()));
    m_source->setCardFont(font(textStyleFont(TextStyle::footnote, QFont::DemiBold), m_source->text()));
    m_partOfSpeech->setCardFont(textStyleFont(TextStyle::footnote));
    if (const QFont speakFont = textStyleFont(TextStyle::footnote); m_speak->font() != speakFont)
        m_speak->setFont(speakFont);
    m_word->setCardFont(font(textStyleFont(TextStyle::footnote, QFont::Medium), m_word->text()));
    m_translation->setCardFont(font(pointSizeFont(18, QFont::Bold), m_translation->text()));
    m_reading->setCardFont(pointSizeFont(12, QFont::Medium));
    m_context->setCardFont(font(textStyleFont(TextStyle::footnote), m_context->text()));
    m_status->setCardFont(textStyleFont(TextStyle::callout));
}

void HoverOverlayCard::paletteChanged()
{
    const OverlayPalette& p = overlayPalette();
    m_tag->setTint(p.secondary);
    m_placeholderCaption->setColor(p.secondary);
    m_placeholderText->setColor(p.primary);
    m_source->setColor(p.primary);
    m_partOfSpeech->setColor(p.secondary);
    m_speak->setColor(p.secondary);
    m_word->setColor(p.primary);
    m_translation->setColor(p.primary);
    m_reading->setColor(p.secondary);
    m_context->setColor(p.secondary);
    m_exampleSentence->setColor(p.secondary);
    m_exampleTranslation->setColor(p.primary);
    m_spinner->setColor(p.secondary);
    m_status->setColor(p.secondary);
    setBorderTint(p.tint(m_view.tint()));
}

void HoverOverlayCard::setView(const HoverOverlayView& view)
{
    m_view = view;
    const auto& state = view.state;
    const Kind kind = state.kind;
    const bool looked = state.hasTranslation();
    const bool oneWord = kind == Kind::unmatched || kind == Kind::ocrUnmatched || kind == Kind::translating;

    showIf(m_tag, view.directionLabel.has_value());
    if (view.directionLabel)
        m_tag->setTagText(shown(*view.directionLabel));

    showIf(m_placeholderCaption, kind == Kind::placeholder);
    showIf(m_placeholderText, kind == Kind::placeholder);
    if (kind == Kind::placeholder)
        m_placeholderText->setCardText(shown(state.text));

    showIf(m_source, looked);
    showIf(m_partOfSpeech, looked && view.partOfSpeech.has_value());
    showIf(m_speak, looked && bool(view.onSpeak));
    showIf(m_translation, looked);
    std::optional<QString> reading;
    if (looked) {
        m_source->setCardText(shown(state.source()));
        m_partOfSpeech->setCardText(shown(view.partOfSpeech.value_or(QString())));
        m_translation->setCardText(shown(state.translation));
        reading = view.reading(m_transliterator);
    }
    showIf(m_reading, reading.has_value());
    if (reading)
        m_reading->setCardText(shown(*reading));

    const bool context =
        (kind == Kind::lookup || kind == Kind::liveLookup) && state.context && !state.context->isEmpty();
    showIf(m_context, context);
    if (context)
        m_context->setCardText(shown(*state.context));

    showIf(m_word, oneWord);
    if (oneWord)
        m_word->setCardText(shown(state.text));

    showIf(m_spinner, kind == Kind::translating);
    showIf(m_status, oneWord || kind == Kind::noLabel);
    if (kind == Kind::translating)
        m_status->setCardText(HoverOverlayTexts::translating);
    else if (kind == Kind::noLabel)
        m_status->setCardText(HoverOverlayTexts::noAccessibleText);
    else if (oneWord)
        m_status->setCardText(HoverOverlayTexts::noTranslationFound);

    const QString language = view.targetLanguageCode.value_or(QString());
    const bool example = looked && view.exampleSentence.has_value();
    // A held hotkey repeats the same example: fit it once.
    const QString exampleKey = example ? language + QChar(0x1F) + *view.exampleSentence : QString();
    if (example && exampleKey != m_fittedExampleKey) {
        // The lines are fitted in the fonts they are shown in (a Chinese translation measures
        // with its own family). Only what a card can hold is measured.
        const QString limited = shown(*view.exampleSentence);
        const qsizetype feed = limited.indexOf(QLatin1Char('\n'));
        const QString sentence = feed < 0 ? limited : limited.left(feed);
        const QString translationPart = feed < 0 ? QString() : limited.mid(feed + 1);
        m_exampleSentence->setCardFont(withLanguageFamilies(pointSizeFont(11), cjkLanguageOf(sentence, language)));
        m_exampleTranslation->setCardFont(
            withLanguageFamilies(pointSizeFont(11, QFont::Medium), cjkLanguageOf(translationPart, language)));
        const QFontMetricsF sentenceMetrics(m_exampleSentence->font());
        const QFontMetricsF translationMetrics(m_exampleTranslation->font());
        m_exampleSentence->setCardText(fitToLines(
            sentence, [&](const QString& t) { return sentenceMetrics.horizontalAdvance(t); }, exampleMaximumLines,
            exampleLineWidth));
        m_fittedExampleTranslation.reset();
        if (feed >= 0) {
            const QString translated = fitToLines(
                translationPart, [&](const QString& t) { return translationMetrics.horizontalAdvance(t); },
                exampleMaximumLines, exampleLineWidth);
            if (!translated.isEmpty())
                m_fittedExampleTranslation = translated;
        }
        m_fittedExampleKey = exampleKey;
    }
    const std::optional<QString> exampleTranslation = example ? m_fittedExampleTranslation : std::nullopt;
    showIf(m_exampleSentence, example);
    showIf(m_exampleTranslation, exampleTranslation.has_value());
    if (exampleTranslation)
        m_exampleTranslation->setCardText(*exampleTranslation);

    m_language = language;
    applyFonts();
    setBorderTint(overlayPalette().tint(view.tint()));
    layoutContent(contentRect().width(), true);
    update();
}

double HoverOverlayCard::idealContentWidth() const
{
    double widest = 0;
    const auto consider = [&](const CardLabel* label) {
        if (!label->isHidden())
            widest = std::max(widest, label->naturalWidth());
    };
    consider(m_placeholderCaption);
    consider(m_placeholderText);
    consider(m_word);
    consider(m_translation);
    consider(m_reading);
    consider(m_context);
    consider(m_exampleSentence);
    consider(m_exampleTranslation);
    if (!m_tag->isHidden())
        widest = std::max(widest, double(m_tag->sizeHint().width()));
    if (!m_source->isHidden()) {
        double header = m_source->naturalWidth();
        if (!m_partOfSpeech->isHidden())
            header += rowSpacing + m_partOfSpeech->naturalWidth();
        if (!m_speak->isHidden())
            header += rowSpacing + m_speak->sizeHint().width();
        widest = std::max(widest, header);
    }
    if (!m_status->isHidden()) {
        double status = m_status->naturalWidth();
        if (!m_spinner->isHidden())
            status += spinnerSide + rowSpacing;
        widest = std::max(widest, status);
    }
    return widest;
}

QSizeF HoverOverlayCard::fittingSize() const
{
    const double padding = 2 * cardPadding;
    return wordCardFittingSize(idealContentWidth() + padding, [&](double width) {
        return layoutContent(int(std::floor(width - padding)), false) + padding;
    });
}

int HoverOverlayCard::layoutContent(int width, bool apply) const
{
    const QRect area = contentRect();
    const int left = area.left();
    int y = area.top();
    bool first = true;
    const auto place = [&](QWidget* widget, int spacing, int height, int x = 0, int w = -1) {
        if (!first)
            y += spacing;
        first = false;
        if (apply)
            widget->setGeometry(left + x, y, w < 0 ? width - x : w, height);
        y += height;
    };

    if (!m_tag->isHidden()) {
        const QSize tag = m_tag->sizeHint();
        place(m_tag, 0, tag.height(), 0, std::min(tag.width(), width));
    }
    const int afterTag = tagSpacing;
    int spacing = afterTag;

    const auto line = [&](CardLabel* label, int gap) {
        if (label->isHidden())
            return;
        place(label, spacing, label->heightAt(width));
        spacing = gap;
    };

    line(m_placeholderCaption, lineSpacing);
    line(m_placeholderText, lineSpacing);

    if (!m_source->isHidden()) {
        // Header row: the source word (wrapping if it must), its part of speech, the speaker.
        int rest = 0;
        const QSize speak = m_speak->sizeHint();
        // The part of speech is an abbreviation; whatever it holds, the word keeps most of the row.
        const int pos =
            m_partOfSpeech->isHidden() ? 0 : std::min(int(std::ceil(m_partOfSpeech->naturalWidth())), width / 3);
        if (!m_partOfSpeech->isHidden())
            rest += rowSpacing + pos;
        if (!m_speak->isHidden())
            rest += rowSpacing + speak.width();
        const int sourceWidth = std::max(0, std::min(int(std::ceil(m_source->naturalWidth())), width - rest));
        const int sourceHeight = m_source->heightAt(std::max(1, sourceWidth));
        const int rowHeight =
            std::max({sourceHeight, m_partOfSpeech->isHidden() ? 0 : m_partOfSpeech->sizeHint().height(),
                      m_speak->isHidden() ? 0 : speak.height()});
        if (!first)
            y += spacing;
        first = false;
        if (apply) {
            int x = left;
            m_source->setGeometry(x, y + (rowHeight - sourceHeight) / 2, sourceWidth, sourceHeight);
            x += sourceWidth;
            if (!m_partOfSpeech->isHidden()) {
                const int h = m_partOfSpeech->sizeHint().height();
                m_partOfSpeech->setGeometry(x + rowSpacing, y + (rowHeight - h) / 2, pos, h);
                x += rowSpacing + pos;
            }
            if (!m_speak->isHidden())
                m_speak->setGeometry(x + rowSpacing, y + (rowHeight - speak.height()) / 2, speak.width(),
                                     speak.height());
        }
        y += rowHeight;
        spacing = lineSpacing;
    }

    line(m_word, lineSpacing);
    line(m_translation, blockSpacing);
    if (!m_reading->isHidden())
        line(m_reading, lineSpacing);
    spacing = std::max(spacing, lineSpacing);
    line(m_context, lineSpacing);
    line(m_exampleSentence, blockSpacing);
    line(m_exampleTranslation, lineSpacing);

    if (!m_status->isHidden()) {
        const int indent = m_spinner->isHidden() ? 0 : spinnerSide + rowSpacing;
        const int statusHeight = m_status->heightAt(std::max(1, width - indent));
        const int rowHeight = std::max(statusHeight, m_spinner->isHidden() ? 0 : spinnerSide);
        if (!first)
            y += spacing;
        first = false;
        if (apply) {
            if (!m_spinner->isHidden())
                m_spinner->setGeometry(left, y + (rowHeight - spinnerSide) / 2, spinnerSide, spinnerSide);
            m_status->setGeometry(left + indent, y + (rowHeight - statusHeight) / 2, width - indent, statusHeight);
        }
        y += rowHeight;
    }
    return y - area.top();
}

void HoverOverlayCard::resizeEvent(QResizeEvent* event)
{
    OverlayCardWidget::resizeEvent(event);
    layoutContent(contentRect().width(), true);
}

} // namespace tolvane
