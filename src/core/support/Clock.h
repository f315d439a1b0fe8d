// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>

namespace tolvane {

// The wall clock, passed in so that logic which depends on dates can be tested at any moment.
class Clock
{
public:
    virtual ~Clock() = default;
    virtual QDateTime now() const = 0;
};

class SystemClock final : public Clock
{
public:
    QDateTime now() const override { return QDateTime::currentDateTimeUtc(); }
};

} // namespace tolvane
