// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/support/PlatformWording.h"

#include <QLatin1String>
#include <QStringList>

#include <optional>

namespace tolvane {

namespace {

struct Wording
{
    QLatin1String original;
    QLatin1String here;
};

// Longest phrases first, so that "your Mac" is not read as "your" + "Mac".
constexpr Wording wordings[] = {
    {QLatin1String("TOLVANE FOR MAC"), QLatin1String("TOLVANE FOR LINUX")},
    {QLatin1String("System Settings"), QLatin1String("Settings")},
    {QLatin1String("your Mac"), QLatin1String("your computer")},
    {QLatin1String("menu bar"), QLatin1String("tray")},
    {QLatin1String("this Mac"), QLatin1String("this computer")},
    {QLatin1String("macOS"), QLatin1String("the desktop")},
    {QLatin1String("Mac"), QLatin1String("computer")},
};

bool startsSentence(const QString& text, qsizetype at)
{
    qsizetype i = at - 1;
    while (i >= 0 && text.at(i).isSpace())
        --i;
    return i < 0 || text.at(i) == u'.' || text.at(i) == u'!' || text.at(i) == u'?' || text.at(i) == u'\n';
}

bool isWordCharacter(const QString& text, qsizetype at)
{
    return at >= 0 && at < text.size() && text.at(at).isLetterOrNumber();
}

struct KeyWording
{
    char16_t symbol;
    QLatin1String here;
};

constexpr KeyWording keyWordings[] = {
    {u'⌃', QLatin1String("Ctrl")},
    {u'⌥', QLatin1String("Alt")},
    {u'⇧', QLatin1String("Shift")},
    {u'⌘', QLatin1String("Super")},
};

std::optional<QLatin1String> keyWord(QChar c)
{
    for (const KeyWording& k : keyWordings) {
        if (c == QChar(k.symbol))
            return k.here;
    }
    return std::nullopt;
}

// After the symbols, the key they go with: a letter, digit or key symbol, not the punctuation
// of the sentence around them.
bool startsKeyName(const QString& text, qsizetype at)
{
    if (at >= text.size())
        return false;
    const QChar c = text.at(at);
    return !c.isSpace() && c != u'/' && c != u')' && c != u',' && c != u'.' && c != u';';
}

} // namespace

QString keysOnThisPlatform(const QString& text)
{
    QString result;
    result.reserve(text.size() + 16);
    qsizetype i = 0;
    while (i < text.size()) {
        if (!keyWord(text.at(i))) {
            result.append(text.at(i++));
            continue;
        }
        QStringList words;
        while (i < text.size()) {
            const auto word = keyWord(text.at(i));
            if (!word)
                break;
            words.append(*word);
            ++i;
        }
        result.append(words.join(u'+'));
        if (startsKeyName(text, i))
            result.append(u'+');
    }
    return result;
}

QString onThisPlatform(const QString& text)
{
    QString result = text;
    for (const Wording& w : wordings) {
        qsizetype from = 0;
        while ((from = result.indexOf(w.original, from)) >= 0) {
            const qsizetype end = from + w.original.size();
            // Whole words only: "Machine" and "iMac" are not the platform.
            if (isWordCharacter(result, from - 1) || isWordCharacter(result, end)) {
                from = end;
                continue;
            }
            QString replacement = w.here;
            if (startsSentence(result, from))
                replacement[0] = replacement.at(0).toUpper();
            result.replace(from, w.original.size(), replacement);
            from += replacement.size();
        }
    }
    return result;
}

} // namespace tolvane
