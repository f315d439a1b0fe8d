// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/LanguageCommands.h"

#include "core/translation/DirectionDetection.h"
#include "core/translation/LanguageTable.h"
#include "core/translation/PartOfSpeech.h"
#include "platform/linux/PlatformFactory.h"

#include <QTextStream>

namespace tolvane {

namespace {

struct TargetAndText
{
    QString target = defaultTargetLanguageCode();
    QString text;
    bool valid = true;
};

TargetAndText parseTargetAndText(QStringList arguments)
{
    TargetAndText parsed;
    for (qsizetype i = 0; i < arguments.size();) {
        const QString& argument = arguments[i];
        if (argument == QLatin1String("--target") && i + 1 < arguments.size()) {
            parsed.target = arguments[i + 1].trimmed();
            arguments.remove(i, 2);
        } else if (argument.startsWith(QLatin1String("--target="))) {
            parsed.target = argument.mid(9).trimmed();
            arguments.remove(i);
        } else if (argument == QLatin1String("--target")) {
            parsed.valid = false;
            arguments.remove(i);
        } else {
            ++i;
        }
    }
    parsed.text = arguments.join(QLatin1Char(' '));
    parsed.valid = parsed.valid && !parsed.target.isEmpty() && !parsed.text.isEmpty();
    return parsed;
}

int usage(const char* text)
{
    QTextStream(stderr) << "usage: tolvane " << text << '\n';
    return 2;
}

} // namespace

int runDetectCommand(const QStringList& arguments)
{
    const TargetAndText parsed = parseTargetAndText(arguments);
    if (!parsed.valid)
        return usage("detect --target CODE TEXT…");
    const std::unique_ptr<LanguageRecognizer> recognizerOwner = createLanguageRecognizer();
    const LanguageRecognizer& recognizer = *recognizerOwner;
    const DetectedDirection direction = detectDirection(parsed.text, parsed.target, recognizer);
    const QString english = englishLanguageCode();
    const LanguageHypotheses hypotheses = recognizer.recognize(parsed.text.trimmed(), {english, parsed.target});
    QTextStream out(stdout);
    out << rawValue(direction) << ' ' << english << '='
        << QString::number(hypotheses.probability.value(english), 'f', 2) << ' ' << parsed.target << '='
        << QString::number(hypotheses.probability.value(parsed.target), 'f', 2) << '\n';
    return 0;
}

int runReadingCommand(const QStringList& arguments)
{
    const TargetAndText parsed = parseTargetAndText(arguments);
    if (!parsed.valid)
        return usage("reading --target CODE TEXT…");
    if (const auto reading = pronunciationReading(parsed.text, parsed.target, *createTransliterator()))
        QTextStream(stdout) << *reading << '\n';
    return 0;
}

int runPosCommand(const QStringList& arguments)
{
    if (arguments.size() != 2 || arguments[1].trimmed().isEmpty())
        return usage("pos SENTENCE WORD");
    if (const auto abbreviation = partOfSpeechOf(arguments[1].trimmed(), arguments[0], *createLexicalTagger()))
        QTextStream(stdout) << *abbreviation << '\n';
    return 0;
}

} // namespace tolvane
