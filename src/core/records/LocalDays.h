// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QTimeZone>

#include <optional>

namespace tolvane {

// The local calendar day of a moment, as a Julian day number, so that days are counted with the
// calendar (a day may last 23 or 25 hours) and not as 24-hour slices. The zone's offset is kept
// for the stretch between two of its transitions, so a long list of moments costs one lookup
// per daylight-saving change instead of one per moment.
class LocalDays final
{
public:
    // Without a zone, the system's zone as it is now.
    explicit LocalDays(std::optional<QTimeZone> zone = std::nullopt);

    qint64 dayOf(const QDateTime& moment);

private:
    void learnOffsetAround(qint64 msecsSinceEpoch);

    QTimeZone m_zone;
    qint64 m_spanStart = 1; // [start, end) in ms since the epoch, empty to begin with
    qint64 m_spanEnd = 0;
    qint64 m_offsetMSecs = 0;
};

} // namespace tolvane
