// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/TranslateCommand.h"

#include "core/setup/Preferences.h"
#include "core/support/AppPaths.h"
#include "platform/linux/JsonFilePreferenceStore.h"
#include "platform/linux/translation/DictionaryTranslationEngine.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

namespace tolvane {

namespace {

const char* usageText = "Usage: tolvane translate [--from CODE] [--to CODE] [--json] TEXT…\n";

// The language a text is written in, judged by its script alone; Latin text is English unless the
// target language's dictionary knows it and the English one does not.
QString guessSource(const QString& text, const QString& target, DictionaryTranslationEngine& engine)
{
    for (const QChar c : text) {
        const ushort u = c.unicode();
        if (u >= 0xAC00 && u <= 0xD7A3)
            return QStringLiteral("ko");
        if (u >= 0x3040 && u <= 0x30FF)
            return QStringLiteral("ja");
        if (u >= 0x4E00 && u <= 0x9FFF)
            return target == QLatin1String("ja") ? QStringLiteral("ja") : QStringLiteral("zh");
        if (u >= 0x0400 && u <= 0x04FF)
            return QStringLiteral("ru");
    }
    const QString english = QStringLiteral("en");
    if (!engine.lookUpWord(text, english, target).ok() && engine.lookUpWord(text, target, english).ok())
        return target;
    return english;
}

} // namespace

int runTranslateCommand(const QStringList& arguments)
{
    QTextStream out(stdout);
    QTextStream err(stderr);
    QString from, to;
    bool json = false;
    QStringList words;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& a = arguments.at(i);
        if ((a == QLatin1String("--from") || a == QLatin1String("--to")) && i + 1 < arguments.size()) {
            (a == QLatin1String("--from") ? from : to) = arguments.at(++i);
        } else if (a == QLatin1String("--json")) {
            json = true;
        } else if (a == QLatin1String("--help")) {
            out << usageText;
            return 0;
        } else if (a.startsWith(QLatin1String("--")) && words.isEmpty()) {
            err << "tolvane translate: unknown option " << a << '\n' << usageText;
            return 2;
        } else {
            words.append(a);
        }
    }
    const QString text = words.join(QLatin1Char(' ')).trimmed();
    if (text.isEmpty()) {
        err << "tolvane translate: nothing to translate\n" << usageText;
        return 2;
    }
    const bool targetGiven = !to.isEmpty();
    if (!targetGiven) {
        JsonFilePreferenceStore store(configDirectory() + QStringLiteral("/preferences.json"));
        to = Preferences(store).targetLanguage();
    }
    DictionaryTranslationEngine engine;
    // Only the language of a code matters to the dictionaries ("zh-Hans" reads zh).
    const QString target = to.section(QLatin1Char('-'), 0, 0).toLower();
    const QString source =
        from.isEmpty() ? guessSource(text, target, engine) : from.section(QLatin1Char('-'), 0, 0).toLower();
    const QString english = QStringLiteral("en");
    const QString destination = (targetGiven && !from.isEmpty()) || source == english ? target : english;

    auto translated = engine.translate(text, source, destination);
    if (!json) {
        if (!translated) {
            err << translated.error().message << '\n';
            return 1;
        }
        out << QString(translated.value()).replace(QLatin1Char('\n'), QLatin1Char(' ')) << '\n';
        return 0;
    }
    QJsonObject answer{
        {QStringLiteral("text"), text}, {QStringLiteral("source"), source}, {QStringLiteral("target"), destination}};
    if (translated)
        answer.insert(QStringLiteral("translation"), translated.value());
    else
        answer.insert(QStringLiteral("error"), translated.error().message);
    if (auto word = engine.lookUpWord(text, source, destination)) {
        answer.insert(QStringLiteral("lemma"), word.value().lemma);
        answer.insert(QStringLiteral("lexicalClass"), word.value().lexicalClass);
        QJsonArray candidates;
        for (const auto& sense : word.value().senses) {
            candidates.append(
                QJsonObject{{QStringLiteral("lexicalClass"), sense.lexicalClass},
                            {QStringLiteral("translations"), QJsonArray::fromStringList(sense.translations)}});
        }
        answer.insert(QStringLiteral("candidates"), candidates);
    }
    out << QJsonDocument(answer).toJson(QJsonDocument::Compact) << '\n';
    return translated ? 0 : 1;
}

} // namespace tolvane
