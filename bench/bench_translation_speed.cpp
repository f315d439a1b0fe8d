// SPDX-License-Identifier: GPL-3.0-or-later
// Pair load time, warm word look-up time, resident memory per loaded pair and the installed size.
//   bench_translation_speed [WORDLIST_DIR]
#include "platform/linux/translation/DictionaryTranslationEngine.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>
#include <unistd.h>
#include <vector>

using namespace tolvane;

namespace {

double residentMegabytes()
{
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        return 0.0;
    const QList<QByteArray> fields = statm.readAll().split(' ');
    return fields.size() > 1 ? fields.at(1).toDouble() * double(sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0) : 0.0;
}

QStringList wordsFor(const QString& dir, const QString& language)
{
    QFile file(QDir(dir).filePath(language + QStringLiteral(".txt")));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {QStringLiteral("house"), QStringLiteral("water")};
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QString lists =
        argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral(TOLVANE_SOURCE_DIR "/../../shared/eval/wordlists");
    const QStringList languages = {QStringLiteral("ru"), QStringLiteral("fr"), QStringLiteral("de"),
                                   QStringLiteral("it"), QStringLiteral("ja"), QStringLiteral("ko"),
                                   QStringLiteral("pt"), QStringLiteral("es"), QStringLiteral("zh")};
    qint64 totalBytes = 0;
    QString directory;
    double worstP50 = 0, worstLoad = 0, worstResident = 0;
    for (const QString& language : languages) {
        for (const bool fromEnglish : {true, false}) {
            const QString source = fromEnglish ? QStringLiteral("en") : language;
            const QString target = fromEnglish ? language : QStringLiteral("en");
            // A fresh engine per pair, so each load and its memory are measured alone.
            DictionaryTranslationEngine engine;
            const QString path = engine.dictionaryPath(source, target);
            if (path.isEmpty()) {
                std::printf("%s-%s not installed\n", qPrintable(source), qPrintable(target));
                continue;
            }
            directory = QFileInfo(path).absolutePath();
            const double residentBefore = residentMegabytes();
            QElapsedTimer timer;
            timer.start();
            const auto prepared = engine.prepare(source, target);
            const double loadMs = double(timer.nsecsElapsed()) / 1e6;
            if (!prepared) {
                std::printf("%s-%s load failed: %s\n", qPrintable(source), qPrintable(target),
                            qPrintable(prepared.error().message));
                continue;
            }
            const QStringList words = wordsFor(lists, source);
            for (const QString& word : words) // warm the pages and the caches
                (void)engine.lookUpWord(word, source, target);
            std::vector<double> samples;
            for (int round = 0; round < 20; ++round) {
                for (const QString& word : words) {
                    timer.restart();
                    (void)engine.lookUpWord(word, source, target);
                    samples.push_back(double(timer.nsecsElapsed()) / 1e3);
                }
            }
            std::sort(samples.begin(), samples.end());
            const double p50 = samples[samples.size() / 2];
            const double p90 = samples[samples.size() * 9 / 10];
            const double resident = residentMegabytes() - residentBefore;
            std::printf("%s-%s load_ms=%.1f lookup_p50_us=%.1f lookup_p90_us=%.1f resident_mb=%.1f file_mb=%.1f\n",
                        qPrintable(source), qPrintable(target), loadMs, p50, p90, resident,
                        double(QFileInfo(path).size()) / (1024.0 * 1024.0));
            worstP50 = std::max(worstP50, p50);
            worstLoad = std::max(worstLoad, loadMs);
            worstResident = std::max(worstResident, resident);
        }
    }
    if (!directory.isEmpty()) {
        for (const QFileInfo& file : QDir(directory).entryInfoList({QStringLiteral("*.tdict")}, QDir::Files))
            totalBytes += file.size();
    }
    std::printf("speed worst_lookup_p50_us=%.1f worst_load_ms=%.1f worst_resident_mb=%.1f installed_mb=%.1f\n",
                worstP50, worstLoad, worstResident, double(totalBytes) / (1024.0 * 1024.0));
    return 0;
}
