// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>
#include <QString>

#include <optional>

namespace tolvane {

// The desktop's type scale: every window sizes its text by style, relative to the desktop's
// default font (body), so that the whole application follows one scale and the user's font size.
enum class TextStyle {
    largeTitle,
    title1,
    title2,
    title3,
    headline, // body size, semibold unless told otherwise
    body,
    callout,
    subheadline,
    footnote,
    caption,
    caption2,
};

// The font of a text style at a weight (headline defaults to semibold).
QFont textStyleFont(TextStyle style, std::optional<QFont::Weight> weight = std::nullopt);
// The pixel size of a style: body is the desktop's default font; the others keep their ratio to it.
double textStyleSize(TextStyle style);
// A font of an explicit size in layout points (Qt's logical pixels), for the few texts whose size
// is part of their design rather than a style.
QFont pointSizeFont(double points, QFont::Weight weight = QFont::Normal);
// A monospaced font of an explicit size.
QFont monospacedFont(double points, QFont::Weight weight = QFont::Normal);

// Puts the CJK family for a language ("zh-Hans", "ja", "ko") first in the font's family list, so
// that Han characters take that language's glyph forms. Other languages leave the font alone.
QFont withLanguageFamilies(QFont font, const QString& languageCode);
// The CJK language a text is most likely in, by its script: kana → "ja", hangul → "ko", other Han
// → the hint when that is "ja" or "ko", else "zh-Hans". Nothing for text without those scripts.
QString cjkLanguageOf(const QString& text, const QString& hint = {});

} // namespace tolvane
