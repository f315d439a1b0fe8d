// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What several benchmarks share: reading an evaluation table and measuring resident memory.

#include <QByteArray>
#include <QCoreApplication>
#include <QFile>
#include <QList>
#include <QString>
#include <QStringList>

#include <cstdio>
#include <optional>

namespace tolvane::bench {

struct EvaluationArguments
{
    QString path;
    bool verbose = false;
};

// "[--verbose] EVALUATION.tsv", or nothing after the usage line on standard error.
inline std::optional<EvaluationArguments> evaluationArguments(const char* program)
{
    QStringList arguments = QCoreApplication::arguments().mid(1);
    const bool verbose = arguments.removeAll(QStringLiteral("--verbose")) > 0;
    if (arguments.size() != 1) {
        std::fprintf(stderr, "usage: %s [--verbose] EVALUATION.tsv\n", program);
        return std::nullopt;
    }
    return EvaluationArguments{arguments.first(), verbose};
}

// The tab-separated fields of every line after the header line; nothing when the file cannot be
// read.
inline std::optional<QList<QStringList>> readEvaluationTable(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return std::nullopt;
    QList<QStringList> rows;
    bool header = true;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).chopped(1);
        if (header) {
            header = false;
            continue;
        }
        rows.append(line.split(QLatin1Char('\t')));
    }
    return rows;
}

// This process's resident set in kilobytes, or -1 where /proc does not say.
inline long residentKilobytes()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly | QIODevice::Text))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').value(0).toLong();
    }
    return -1;
}

} // namespace tolvane::bench
