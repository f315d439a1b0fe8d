// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/progress/SharePayloads.h"

#include "core/support/PlatformWording.h"
#include "core/translation/DirectionDetection.h"
#include "core/translation/LanguageTable.h"
#include "platform/LanguageRecognizer.h"

namespace tolvane {

namespace {

// The second line of every message that invites someone along.
QString learnWithMeLine()
{
    return onThisPlatform(QStringLiteral("Learn with me as you use your Mac with Tolvane."));
}

QString quoted(const QString& text)
{
    return QStringLiteral("\u201C") + text + QStringLiteral("\u201D");
}

QString didYouKnow(const QString& source, const QString& languageName, const QString& translation)
{
    return QStringLiteral("Did you know ") + quoted(source) + QStringLiteral(" in ") + languageName +
           QStringLiteral(" is ") + quoted(translation) + QStringLiteral("?");
}

std::optional<QString> languageByScript(const QString& text)
{
    bool kana = false;
    bool hangul = false;
    const QList<uint> scalars = text.toUcs4();
    for (const uint c : scalars) {
        // Cyrillic is decisive at once; kana outweighs the Han characters Japanese shares with
        // Chinese; Hangul is Korean's alone.
        if (c >= 0x0400 && c <= 0x052F)
            return QStringLiteral("ru");
        kana = kana || (c >= 0x3040 && c <= 0x30FF);
        hangul = hangul || (c >= 0xAC00 && c <= 0xD7AF);
    }
    if (kana)
        return QStringLiteral("ja");
    if (hangul)
        return QStringLiteral("ko");
    return std::nullopt;
}

} // namespace

QString productWebAddress()
{
    return QStringLiteral("https://") + productHostName();
}

QString productHostName()
{
    return QStringLiteral("tolvane.app");
}

int shareHeadlinePointSize(const QString& headline)
{
    return userPerceivedLength(headline) < 19 ? 94 : 68;
}

int shareBodyPointSize(const QString& body)
{
    return userPerceivedLength(body) < 41 ? 42 : 32;
}

std::optional<QString> cardTargetLanguageCode(const ReviewCard& card, const LanguageRecognizer* recognizer)
{
    if (card.targetLanguage) {
        const QString own = card.targetLanguage->trimmed();
        if (!own.isEmpty())
            return own;
    }
    const bool fromTarget = card.direction == DetectedDirection::targetToEnglish;
    const QString text = (fromTarget ? card.sourceText : card.translation).trimmed();
    if (userPerceivedLength(text) < 2)
        return std::nullopt;
    if (auto byScript = languageByScript(text))
        return byScript;
    if (!recognizer)
        return std::nullopt;
    QStringList candidates;
    for (const LanguageOption& option : languageOptions())
        candidates.append(option.code);
    QString dominant = recognizer->recognize(text, candidates).dominant;
    if (dominant == QLatin1String("zh") || dominant == QLatin1String("zh-CN"))
        dominant = QStringLiteral("zh-Hans");
    if (!findLanguageOption(dominant))
        return std::nullopt;
    return dominant;
}

ShareContent flashcardShareContent(const ReviewCard& card, const LanguageRecognizer* recognizer)
{
    const bool fromTarget = card.direction == DetectedDirection::targetToEnglish;
    const std::optional<QString> code = fromTarget ? std::nullopt : cardTargetLanguageCode(card, recognizer);
    QString languageName = QStringLiteral("Translation");
    if (fromTarget)
        languageName = QStringLiteral("English");
    else if (code)
        languageName = languageShortName(*code);

    ShareContent content;
    if (fromTarget || code) {
        content.text = didYouKnow(card.sourceText, languageName, card.translation);
    } else {
        content.text = QStringLiteral("Did you know ") + quoted(card.sourceText) + QStringLiteral(" translates to ") +
                       quoted(card.translation) + QStringLiteral("?");
    }
    content.text += u'\n' + learnWithMeLine() + u'\n' + productWebAddress();
    content.picture.eyebrow = languageName.toUpper() + QStringLiteral(" \u00B7 TOLVANE");
    content.picture.headline = card.sourceText;
    content.picture.body = card.translation;
    content.picture.footer =
        onThisPlatform(QStringLiteral("Learn a language as you use your Mac \u00B7 ")) + productHostName();
    return content;
}

ShareContent milestoneShareContent(const LookupMilestone& milestone, const QLocale& locale)
{
    const QString languageName = milestone.direction == DetectedDirection::targetToEnglish
                                     ? QStringLiteral("English")
                                     : languageShortName(milestone.targetLanguageCode);
    const QString count = locale.toString(milestone.count);
    ShareContent content;
    content.text = QStringLiteral("I just reached ") + count + QStringLiteral(" lookups with Tolvane!\n") +
                   didYouKnow(milestone.source, languageName, milestone.translation) + u'\n' + learnWithMeLine() +
                   u'\n' + productWebAddress();
    content.picture.eyebrow = QStringLiteral("LOOKUP MILESTONE \u00B7 TOLVANE");
    content.picture.headline = count;
    content.picture.body =
        QStringLiteral("LOOKUPS\n") + milestone.source + QStringLiteral(" \u2192 ") + milestone.translation;
    content.picture.footer =
        onThisPlatform(QStringLiteral("Learn with me as you use your Mac \u00B7 ")) + productHostName();
    return content;
}

ShareContent appShareContent()
{
    ShareContent content;
    content.text =
        onThisPlatform(QStringLiteral("Learn a language as you use your Mac with Tolvane. ")) + productWebAddress();
    content.picture.eyebrow = onThisPlatform(QStringLiteral("TOLVANE FOR MAC"));
    content.picture.headline = QStringLiteral("Learn as you go.");
    content.picture.body = onThisPlatform(QStringLiteral("Translate words anywhere on your Mac."));
    content.picture.footer = QStringLiteral("Build fluency in the moments between \u00B7 ") + productHostName();
    return content;
}

} // namespace tolvane
