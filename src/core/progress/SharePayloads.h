// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/progress/LookupMilestone.h"
#include "core/records/ReviewCard.h"

#include <QLocale>
#include <QString>

#include <optional>

namespace tolvane {

class LanguageRecognizer;

// The product's web address, and its host name as the share pictures print it.
QString productWebAddress();
QString productHostName();

// The four texts of a share picture, from top to bottom.
struct SharePictureTexts
{
    QString eyebrow;
    QString headline;
    QString body;
    QString footer;

    friend bool operator==(const SharePictureTexts&, const SharePictureTexts&) = default;
};

// What a share offers, before the picture is drawn: the message and the picture's texts.
struct ShareContent
{
    QString text;
    SharePictureTexts picture;
};

// Point sizes of the picture's headline and body: short texts are drawn larger. Lengths are
// counted in user-perceived characters.
int shareHeadlinePointSize(const QString& headline);
int shareBodyPointSize(const QString& body);

// The learning language of a card: its own when it carries one, otherwise a guess from the text
// in that language (script first, then the recogniser, which may be null).
std::optional<QString> cardTargetLanguageCode(const ReviewCard& card, const LanguageRecognizer* recognizer);

ShareContent flashcardShareContent(const ReviewCard& card, const LanguageRecognizer* recognizer);
ShareContent milestoneShareContent(const LookupMilestone& milestone, const QLocale& locale = QLocale());
ShareContent appShareContent();

} // namespace tolvane
