// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/translation/LanguageTable.h"

namespace tolvane {

namespace {

struct LanguageColumns
{
    LanguageOption option;
    const char* shortName;
    const char* speechLocale;
};

const QList<LanguageColumns>& languageColumns()
{
    static const QList<LanguageColumns> table = {
        {{QStringLiteral("Chinese (Simplified)"), QStringLiteral("zh-Hans"), QStringLiteral("\U0001F1E8\U0001F1F3")},
         "Chinese",
         "zh-CN"},
        {{QStringLiteral("French"), QStringLiteral("fr"), QStringLiteral("\U0001F1EB\U0001F1F7")}, "French", "fr-FR"},
        {{QStringLiteral("German"), QStringLiteral("de"), QStringLiteral("\U0001F1E9\U0001F1EA")}, "German", "de-DE"},
        {{QStringLiteral("Italian"), QStringLiteral("it"), QStringLiteral("\U0001F1EE\U0001F1F9")}, "Italian", "it-IT"},
        {{QStringLiteral("Japanese"), QStringLiteral("ja"), QStringLiteral("\U0001F1EF\U0001F1F5")},
         "Japanese",
         "ja-JP"},
        {{QStringLiteral("Korean"), QStringLiteral("ko"), QStringLiteral("\U0001F1F0\U0001F1F7")}, "Korean", "ko-KR"},
        {{QStringLiteral("Portuguese"), QStringLiteral("pt"), QStringLiteral("\U0001F1E7\U0001F1F7")},
         "Portuguese",
         "pt-BR"},
        {{QStringLiteral("Russian"), QStringLiteral("ru"), QStringLiteral("\U0001F1F7\U0001F1FA")}, "Russian", "ru-RU"},
        {{QStringLiteral("Spanish"), QStringLiteral("es"), QStringLiteral("\U0001F1EA\U0001F1F8")}, "Spanish", "es-ES"},
    };
    return table;
}

const LanguageColumns* findColumns(const QString& code)
{
    for (const LanguageColumns& row : languageColumns()) {
        if (row.option.code == code)
            return &row;
    }
    return nullptr;
}

} // namespace

const QList<LanguageOption>& languageOptions()
{
    static const QList<LanguageOption> options = [] {
        QList<LanguageOption> result;
        for (const LanguageColumns& row : languageColumns())
            result.append(row.option);
        return result;
    }();
    return options;
}

const LanguageOption* findLanguageOption(const QString& code)
{
    for (const LanguageOption& option : languageOptions()) {
        if (option.code == code)
            return &option;
    }
    return nullptr;
}

bool isDetectionExcluded(const QString& code)
{
    static const QStringList excluded = {QStringLiteral("zh-Hans"), QStringLiteral("ja"), QStringLiteral("ko")};
    return excluded.contains(code);
}

QString languageShortName(const QString& code)
{
    if (const LanguageColumns* row = findColumns(code))
        return QString::fromLatin1(row->shortName);
    return code.toUpper();
}

QString languageSubtag(const QString& code)
{
    const QString language = code.section(QLatin1Char('-'), 0, 0).section(QLatin1Char('_'), 0, 0).toLower();
    return language.isEmpty() ? QStringLiteral("?") : language;
}

QString pairKey(const QString& sourceCode, const QString& targetCode)
{
    return languageSubtag(sourceCode) + QLatin1Char('-') + languageSubtag(targetCode);
}

bool isLearningLanguage(const QString& subtag)
{
    for (const LanguageColumns& row : languageColumns()) {
        if (languageSubtag(row.option.code) == subtag)
            return true;
    }
    return false;
}

QString languageNameOfSubtag(const QString& subtag)
{
    if (subtag == englishLanguageCode())
        return QStringLiteral("English");
    for (const LanguageColumns& row : languageColumns()) {
        if (languageSubtag(row.option.code) == subtag)
            return QString::fromLatin1(row.shortName);
    }
    return subtag.toUpper();
}

QString labelCode(const QString& code)
{
    if (code == QLatin1String("zh-Hans"))
        return QStringLiteral("ZH");
    return code.toUpper();
}

QString speechLocaleCode(const QString& code)
{
    if (const LanguageColumns* row = findColumns(code))
        return QString::fromLatin1(row->speechLocale);
    return code;
}

QStringList recognitionLanguages(const QString& code)
{
    QStringList languages{QStringLiteral("en-US")};
    if (!isDetectionExcluded(code))
        languages.append(speechLocaleCode(code));
    return languages;
}

} // namespace tolvane
