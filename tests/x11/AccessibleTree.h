// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Reading Tolvane's windows through the accessibility bus, as a screen reader (or a user's test)
// does: owned AT-SPI objects and their texts.

#include <QString>

#include <atspi/atspi.h>

#include <memory>

namespace tolvane::testing {

struct GObjectUnref
{
    void operator()(gpointer object) const
    {
        if (object)
            g_object_unref(object);
    }
};
using AccessiblePtr = std::unique_ptr<AtspiAccessible, GObjectUnref>;

// A text AT-SPI handed over, as a QString; the C string is freed.
inline QString takeText(gchar* text)
{
    const QString result = QString::fromUtf8(text ? text : "");
    g_free(text);
    return result;
}

inline QString nameOf(AtspiAccessible* accessible)
{
    return takeText(atspi_accessible_get_name(accessible, nullptr));
}

inline bool hasState(AtspiAccessible* accessible, AtspiStateType state)
{
    const std::unique_ptr<AtspiStateSet, GObjectUnref> states(atspi_accessible_get_state_set(accessible));
    return states && atspi_state_set_contains(states.get(), state);
}

} // namespace tolvane::testing
