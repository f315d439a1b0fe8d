// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/TranslateCommand.h"

#include "core/setup/Preferences.h"
#include "core/translation/DirectionDetection.h"
#include "platform/linux/PlatformFactory.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

namespace tolvane {

namespace {

const char* usageText = "Usage: tolvane translate [--from CODE] [--to CODE] [--json] TEXT…\n";

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
        to = Preferences(*createPreferenceStore()).targetLanguage();
    }
    const std::unique_ptr<TranslationEngine> engine = createTranslationEngine();
    // Only the language of a code matters to the dictionaries ("zh-Hans" reads zh).
    const QString target = to.section(QLatin1Char('-'), 0, 0).toLower();
    const QString english = QStringLiteral("en");
    QString source;
    QString destination;
    if (from.isEmpty()) {
        // The same decision the card makes, so the line printed is the card's.
        const LanguagePair pair = languagePair(detectDirection(text, to, *createLanguageRecognizer()), to);
        source = pair.source.section(QLatin1Char('-'), 0, 0).toLower();
        destination = pair.target.section(QLatin1Char('-'), 0, 0).toLower();
    } else {
        source = from.section(QLatin1Char('-'), 0, 0).toLower();
        destination = (targetGiven || source == english) ? target : english;
    }

    auto translated = engine->translate(text, source, destination);
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
    if (auto word = engine->lookUpWord(text, source, destination)) {
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
