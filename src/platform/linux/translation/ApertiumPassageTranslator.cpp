// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/translation/ApertiumPassageTranslator.h"

#include "core/support/Logging.h"

#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

TOLVANE_DEFINE_LOG(lcApertium, "ApertiumPassageTranslator")

namespace tolvane {

namespace {

const QString modesDirectory = QStringLiteral("/usr/share/apertium/modes/");
// A passage that takes longer than this is abandoned for the word-by-word gloss; a frozen
// pipeline must not hold the translation queue.
constexpr int longestRunMs = 15000;

QStringList toSpanish(const QString& source)
{
    if (source == QLatin1String("en"))
        return {QStringLiteral("eng-spa")};
    if (source == QLatin1String("fr"))
        return {QStringLiteral("fr-es")};
    if (source == QLatin1String("it"))
        return {QStringLiteral("ita-spa")};
    if (source == QLatin1String("pt"))
        return {QStringLiteral("pt-es")};
    return {};
}

QStringList fromSpanish(const QString& target)
{
    if (target == QLatin1String("en"))
        return {QStringLiteral("spa-eng")};
    if (target == QLatin1String("fr"))
        return {QStringLiteral("es-fr")};
    if (target == QLatin1String("it"))
        return {QStringLiteral("spa-ita")};
    if (target == QLatin1String("pt"))
        return {QStringLiteral("es-pt_BR")};
    return {};
}

} // namespace

QStringList ApertiumPassageTranslator::route(const QString& source, const QString& target)
{
    if (source == target || (source != QLatin1String("en") && target != QLatin1String("en")))
        return {};
    if (source == QLatin1String("es"))
        return fromSpanish(target);
    if (target == QLatin1String("es"))
        return toSpanish(source);
    const QStringList first = toSpanish(source), second = fromSpanish(target);
    if (first.isEmpty() || second.isEmpty())
        return {};
    return first + second;
}

bool ApertiumPassageTranslator::isAvailable(const QString& source, const QString& target)
{
    const QStringList modes = route(source, target);
    if (modes.isEmpty() || QStandardPaths::findExecutable(QStringLiteral("apertium")).isEmpty())
        return false;
    for (const QString& mode : modes) {
        if (!QFileInfo::exists(modesDirectory + mode + QStringLiteral(".mode")))
            return false;
    }
    return true;
}

std::optional<QString> ApertiumPassageTranslator::translate(const QString& text, const QString& source,
                                                            const QString& target)
{
    if (!isAvailable(source, target))
        return std::nullopt;
    QString current = text;
    for (const QString& mode : route(source, target)) {
        QProcess process;
        // -u: unknown words come out as they are, without Apertium's asterisks.
        process.start(QStringLiteral("apertium"), {QStringLiteral("-u"), mode});
        if (!process.waitForStarted(longestRunMs)) {
            qCWarning(lcApertium) << "cannot start apertium:" << process.errorString();
            return std::nullopt;
        }
        process.write(current.toUtf8());
        process.closeWriteChannel();
        if (!process.waitForFinished(longestRunMs)) {
            qCWarning(lcApertium) << "apertium" << mode << "did not finish; using the word gloss";
            process.kill();
            process.waitForFinished(1000);
            return std::nullopt;
        }
        if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
            qCWarning(lcApertium) << "apertium" << mode << "failed:" << process.readAllStandardError().trimmed();
            return std::nullopt;
        }
        current = QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    }
    if (current.isEmpty())
        return std::nullopt;
    return current;
}

} // namespace tolvane
