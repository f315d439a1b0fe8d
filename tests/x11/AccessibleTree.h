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

// The first showing element under node whose name is name (any, when empty; or any name that
// starts with it, when it ends in "…") and whose role is role (any, when invalid).
inline AccessiblePtr findShowing(AtspiAccessible* node, const QString& name, AtspiRole role = ATSPI_ROLE_INVALID,
                                 int depth = 0)
{
    const bool prefix = name.size() > 1 && name.endsWith(u'…');
    if (depth > 30)
        return nullptr;
    const int count = atspi_accessible_get_child_count(node, nullptr);
    for (int i = 0; i < count; ++i) {
        AccessiblePtr child(atspi_accessible_get_child_at_index(node, i, nullptr));
        if (!child || !hasState(child.get(), ATSPI_STATE_SHOWING))
            continue;
        const QString childName = nameOf(child.get());
        const bool named = name.isEmpty() || childName == name || (prefix && childName.startsWith(name.chopped(1)));
        if (named && (role == ATSPI_ROLE_INVALID || atspi_accessible_get_role(child.get(), nullptr) == role))
            return child;
        if (AccessiblePtr found = findShowing(child.get(), name, role, depth + 1))
            return found;
    }
    return nullptr;
}

// A showing control of the running Tolvane, as the accessibility bus shows it now.
inline AccessiblePtr tolvaneControl(AtspiRole role, const QString& name)
{
    AccessiblePtr desktop(atspi_get_desktop(0));
    atspi_accessible_clear_cache(desktop.get());
    const int count = atspi_accessible_get_child_count(desktop.get(), nullptr);
    for (int i = 0; i < count; ++i) {
        AccessiblePtr application(atspi_accessible_get_child_at_index(desktop.get(), i, nullptr));
        if (application && nameOf(application.get()) == QLatin1String("Tolvane")) {
            if (AccessiblePtr found = findShowing(application.get(), name, role))
                return found;
        }
    }
    return nullptr;
}

// The element's first action, as a screen reader's "activate" does it.
inline bool press(AtspiAccessible* node)
{
    std::unique_ptr<AtspiAction, GObjectUnref> action(atspi_accessible_get_action_iface(node));
    return action && atspi_action_do_action(action.get(), 0, nullptr);
}

} // namespace tolvane::testing
