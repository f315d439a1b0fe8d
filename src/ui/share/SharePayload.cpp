// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/share/SharePayload.h"

#include "ui/components/TextStyle.h"

#include <QFont>
#include <QLinearGradient>
#include <QPainter>
#include <QTextOption>

#include <cmath>
#include <numbers>

namespace tolvane {

namespace {

// Far more than a box can show; longer texts are cut before layout so a pasted essay costs no
// more to draw than a sentence.
constexpr qsizetype longestDrawnText = 600;

QString drawable(const QString& text)
{
    if (text.size() <= longestDrawnText)
        return text;
    QString cut = text.left(longestDrawnText);
    if (cut.back().isHighSurrogate())
        cut.chop(1);
    return cut;
}

// One logical pixel is one point of the picture. Han text takes the glyph forms of its language.
QFont shareFont(int pointSize, QFont::Weight weight, const QString& text)
{
    return withLanguageFamilies(pointSizeFont(pointSize, weight), cjkLanguageOf(text));
}

// Boxes are given with the origin at the bottom left, as the picture's layout is described.
QRectF boxFromBottom(qreal x, qreal y, qreal width, qreal height)
{
    return QRectF(x, sharePictureHeight - y - height, width, height);
}

void drawBox(QPainter& painter, const QRectF& box, const QString& text, const QFont& font, qreal opacity)
{
    painter.save();
    painter.setClipRect(box);
    painter.setFont(font);
    painter.setPen(QColor::fromRgbF(1, 1, 1, opacity));
    QTextOption option(Qt::AlignLeft | Qt::AlignTop);
    // Words stay whole where they fit; a word wider than the box breaks where it must.
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    painter.drawText(box, drawable(text), option);
    painter.restore();
}

QLinearGradient backgroundGradient()
{
    // −18°, measured upward from the x axis: left to right and slightly downward on screen.
    const qreal angle = -18.0 * std::numbers::pi / 180.0;
    const QPointF direction(std::cos(angle), -std::sin(angle));
    const qreal halfLength =
        sharePictureWidth / 2.0 * std::abs(direction.x()) + sharePictureHeight / 2.0 * std::abs(direction.y());
    const QPointF centre(sharePictureWidth / 2.0, sharePictureHeight / 2.0);
    QLinearGradient gradient(centre - direction * halfLength, centre + direction * halfLength);
    gradient.setColorAt(0, QColor::fromRgbF(0.10f, 0.12f, 0.25f));
    gradient.setColorAt(1, QColor::fromRgbF(0.28f, 0.18f, 0.52f));
    return gradient;
}

VantorSharePayload payloadFrom(const ShareContent& content)
{
    return {content.text, renderShareImage(content.picture)};
}

} // namespace

QImage renderShareImage(const QString& eyebrow, const QString& headline, const QString& body, const QString& footer)
{
    QImage image(int(sharePictureWidth * sharePicturePixelRatio), int(sharePictureHeight * sharePicturePixelRatio),
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(sharePicturePixelRatio);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.fillRect(QRectF(0, 0, sharePictureWidth, sharePictureHeight), backgroundGradient());

    drawBox(painter, boxFromBottom(80, 520, 1040, 40), eyebrow, shareFont(22, QFont::DemiBold, eyebrow), 0.72);
    drawBox(painter, boxFromBottom(80, 300, 1040, 190), headline,
            shareFont(shareHeadlinePointSize(headline), QFont::Bold, headline), 1.0);
    drawBox(painter, boxFromBottom(80, 145, 1040, 145), body, shareFont(shareBodyPointSize(body), QFont::Medium, body),
            0.90);
    drawBox(painter, boxFromBottom(80, 52, 1040, 42), footer, shareFont(24, QFont::Normal, footer), 0.72);
    return image;
}

QImage renderShareImage(const SharePictureTexts& texts)
{
    return renderShareImage(texts.eyebrow, texts.headline, texts.body, texts.footer);
}

VantorSharePayload flashcardSharePayload(const ReviewCard& card, const LanguageRecognizer* recognizer)
{
    return payloadFrom(flashcardShareContent(card, recognizer));
}

VantorSharePayload milestoneSharePayload(const LookupMilestone& milestone)
{
    return payloadFrom(milestoneShareContent(milestone));
}

VantorSharePayload appSharePayload()
{
    return payloadFrom(appShareContent());
}

} // namespace tolvane
