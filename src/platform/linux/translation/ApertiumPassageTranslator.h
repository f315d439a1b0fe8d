// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace tolvane {

// Whole passages through Apertium's rule-based pairs: English and Spanish directly, French,
// Italian and Portuguese by way of Spanish. Other pairs have no route and get the word-by-word
// gloss instead. Each mode's pipeline is started once and kept running in null-flush mode, one
// passage per NUL-terminated request, so a passage costs milliseconds rather than a start-up of
// every program in the chain; a pipeline that died or hung is started afresh by the next request.
// Safe to call from any thread; requests are served one at a time.
class ApertiumPassageTranslator final
{
public:
    // The Apertium modes to chain for a pair, or an empty list when there is no route.
    static QStringList route(const QString& source, const QString& target);
    // True when the route's modes are installed.
    static bool isAvailable(const QString& source, const QString& target);
    // The translation, or nothing when Apertium is missing, fails or takes unreasonably long.
    static std::optional<QString> translate(const QString& text, const QString& source, const QString& target);

    // The pipeline of a mode file as one shell command with null flushing on every program and
    // unknown words left unmarked; empty when the file cannot be read.
    static QString nullFlushCommand(const QString& modeFileContents);
    // Plain text in Apertium's stream format and back: special characters escaped, line breaks
    // as blocks of format, a closing empty block.
    static QByteArray toStream(const QString& text);
    static QString fromStream(const QByteArray& stream);
    // Stops every running pipeline (they are started again when needed).
    static void stopAll();
    // The process groups of the running pipelines, one per mode.
    static QList<qint64> runningProcessGroups();
};

} // namespace tolvane
