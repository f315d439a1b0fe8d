// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

namespace tolvane {

// How often one word (case ignored) has been looked up, and where it was seen last.
struct ConfusionLogEntry
{
    QString word; // as spelled at its first look-up
    QString translation;
    qint64 seenCount = 1;
    QDateTime lastSeen;
    std::optional<QString> appContext;

    friend bool operator==(const ConfusionLogEntry&, const ConfusionLogEntry&) = default;
};

} // namespace tolvane
