// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/progress/ProgressSnapshot.h"

#include <QJsonObject>
#include <QStringList>

namespace tolvane {

// What the statistics window would show for the record files in recordsDirectory and the
// look-up count in the preference file, read without changing either. A file that cannot be
// read adds a line to problems and counts as empty.
ProgressSnapshot readStats(const QString& recordsDirectory, const QString& preferencesPath, const QDateTime& now,
                           const StatsCalendar& calendar, QStringList* problems);

// The window's sections as lines of text, and as one JSON object with stable keys.
QString statsText(const ProgressSnapshot& snapshot);
QJsonObject statsJson(const ProgressSnapshot& snapshot);

// `tolvane stats [--json]`.
int runStatsCommand(const QStringList& arguments);

} // namespace tolvane
