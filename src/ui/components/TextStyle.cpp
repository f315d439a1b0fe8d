// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/components/TextStyle.h"

#include <QFontInfo>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace tolvane {

namespace {

struct StyleEntry
{
    TextStyle style;
    double size; // on a desktop whose body text is 13 points
    QFont::Weight weight;
};

// The one table of the type scale.
constexpr StyleEntry styleTable[] = {
    {TextStyle::largeTitle, 26, QFont::Normal}, {TextStyle::title1, 22, QFont::Normal},
    {TextStyle::title2, 17, QFont::Normal},     {TextStyle::title3, 15, QFont::Normal},
    {TextStyle::headline, 13, QFont::DemiBold}, {TextStyle::body, 13, QFont::Normal},
    {TextStyle::callout, 12, QFont::Normal},    {TextStyle::subheadline, 11, QFont::Normal},
    {TextStyle::footnote, 10, QFont::Normal},   {TextStyle::caption, 10, QFont::Normal},
    {TextStyle::caption2, 10, QFont::Normal},
};
constexpr double bodyReference = 13;

const StyleEntry& entry(TextStyle style)
{
    for (const StyleEntry& e : styleTable) {
        if (e.style == style)
            return e;
    }
    return styleTable[5];
}

// The desktop's default font size in logical pixels.
double desktopBodySize()
{
    const QFont font = QGuiApplication::font();
    if (font.pixelSize() > 0)
        return font.pixelSize();
    const QScreen* screen = QGuiApplication::primaryScreen();
    const double dpi = screen ? screen->logicalDotsPerInchY() : 96.0;
    const double size = font.pointSizeF() > 0 ? font.pointSizeF() * dpi / 72.0 : bodyReference;
    // A desktop set to a huge or tiny font still gets readable cards.
    return std::clamp(size, 9.0, 32.0);
}

QFont sizedFont(QFont font, double pixels, QFont::Weight weight)
{
    font.setPixelSize(std::max(1, int(std::lround(pixels))));
    font.setWeight(weight);
    return font;
}

bool isKana(char32_t c)
{
    return (c >= 0x3040 && c <= 0x30FF) || (c >= 0x31F0 && c <= 0x31FF) || (c >= 0xFF66 && c <= 0xFF9F);
}
bool isHangul(char32_t c)
{
    return (c >= 0xAC00 && c <= 0xD7AF) || (c >= 0x1100 && c <= 0x11FF) || (c >= 0x3130 && c <= 0x318F);
}
bool isHan(char32_t c)
{
    return (c >= 0x3400 && c <= 0x4DBF) || (c >= 0x4E00 && c <= 0x9FFF) || (c >= 0xF900 && c <= 0xFAFF) ||
           (c >= 0x20000 && c <= 0x2FA1F);
}

} // namespace

double textStyleSize(TextStyle style)
{
    return std::round(desktopBodySize() * entry(style).size / bodyReference);
}

QFont textStyleFont(TextStyle style, std::optional<QFont::Weight> weight)
{
    return sizedFont(QGuiApplication::font(), textStyleSize(style), weight.value_or(entry(style).weight));
}

QFont pointSizeFont(double points, QFont::Weight weight)
{
    return sizedFont(QGuiApplication::font(), points, weight);
}

QFont monospacedFont(double points, QFont::Weight weight)
{
    QFont font = sizedFont(QGuiApplication::font(), points, weight);
    font.setFamilies({QStringLiteral("DejaVu Sans Mono"), QStringLiteral("monospace")});
    font.setStyleHint(QFont::Monospace);
    font.setFixedPitch(true);
    return font;
}

QFont withLanguageFamilies(QFont font, const QString& languageCode)
{
    QString family;
    if (languageCode == QLatin1String("zh-Hans"))
        family = QStringLiteral("Noto Sans CJK SC");
    else if (languageCode == QLatin1String("ja"))
        family = QStringLiteral("Noto Sans CJK JP");
    else if (languageCode == QLatin1String("ko"))
        family = QStringLiteral("Noto Sans CJK KR");
    if (family.isEmpty())
        return font;
    QStringList families = font.families();
    if (families.isEmpty())
        families.append(font.family());
    families.removeAll(family);
    families.prepend(family);
    font.setFamilies(families);
    return font;
}

QString cjkLanguageOf(const QString& text, const QString& hint)
{
    bool han = false;
    // The first few hundred characters tell the script; a long passage need not be walked.
    const QString sample = text.left(512);
    for (const char32_t c : sample.toUcs4()) {
        if (isKana(c))
            return QStringLiteral("ja");
        if (isHangul(c))
            return QStringLiteral("ko");
        han = han || isHan(c);
    }
    if (!han)
        return {};
    if (hint == QLatin1String("ja") || hint == QLatin1String("ko"))
        return hint;
    return QStringLiteral("zh-Hans");
}

} // namespace tolvane
