// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/progress/SharePayloads.h"

#include <QImage>
#include <QString>

namespace tolvane {

class LanguageRecognizer;

// What a share button hands to the share presenter: a message and a picture, offered unchanged.
struct VantorSharePayload
{
    QString text;
    QImage image;
};

// The share picture: 1200 × 630 logical pixels, drawn at twice that many device pixels.
inline constexpr int sharePictureWidth = 1200;
inline constexpr int sharePictureHeight = 630;
inline constexpr qreal sharePicturePixelRatio = 2.0;

QImage renderShareImage(const QString& eyebrow, const QString& headline, const QString& body, const QString& footer);
QImage renderShareImage(const SharePictureTexts& texts);

// recognizer may be null: a card without a language is then guessed by its script alone.
VantorSharePayload flashcardSharePayload(const ReviewCard& card, const LanguageRecognizer* recognizer);
VantorSharePayload milestoneSharePayload(const LookupMilestone& milestone);
VantorSharePayload appSharePayload();

} // namespace tolvane
