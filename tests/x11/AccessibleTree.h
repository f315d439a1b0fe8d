// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Reading Tolvane's windows through the accessibility bus, as a screen reader (or a user's test)
// does: owned AT-SPI objects and their texts.

#include <QList>
#include <QProcess>
#include <QRect>
#include <QString>
#include <QTest>

#include <atspi/atspi.h>

#include <memory>
#include <optional>

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

// An element as the bus describes it at one moment.
struct Element
{
    QString name;
    QString description;
    AtspiRole role = ATSPI_ROLE_INVALID;
    QRect extents; // on the screen; empty when not drawn
    bool enabled = false;
};

inline QRect extentsOf(AtspiAccessible* accessible)
{
    std::unique_ptr<AtspiComponent, GObjectUnref> component(atspi_accessible_get_component_iface(accessible));
    if (!component)
        return {};
    std::unique_ptr<AtspiRect, decltype(&g_free)> rect(
        atspi_component_get_extents(component.get(), ATSPI_COORD_TYPE_SCREEN, nullptr), &g_free);
    return rect ? QRect(rect->x, rect->y, rect->width, rect->height) : QRect();
}

// Every element under node, depth first.
inline void collect(AtspiAccessible* node, QList<Element>& into, int depth = 0)
{
    if (depth > 20)
        return;
    const int count = atspi_accessible_get_child_count(node, nullptr);
    for (int i = 0; i < count; ++i) {
        AccessiblePtr child(atspi_accessible_get_child_at_index(node, i, nullptr));
        if (!child)
            continue;
        into.append({nameOf(child.get()), takeText(atspi_accessible_get_description(child.get(), nullptr)),
                     atspi_accessible_get_role(child.get(), nullptr), extentsOf(child.get()),
                     hasState(child.get(), ATSPI_STATE_SENSITIVE)});
        collect(child.get(), into, depth + 1);
    }
}

// Calls visit with every application on the bus, as the bus shows them now.
template <typename Visit> void forEachApplication(Visit visit)
{
    AccessiblePtr desktop(atspi_get_desktop(0));
    atspi_accessible_clear_cache(desktop.get());
    const int count = atspi_accessible_get_child_count(desktop.get(), nullptr);
    for (int i = 0; i < count; ++i) {
        AccessiblePtr application(atspi_accessible_get_child_at_index(desktop.get(), i, nullptr));
        if (application)
            visit(application.get());
    }
}

// Everything inside the top-level windows titled title, of any application.
inline QList<Element> windowContents(const QString& title)
{
    QList<Element> found;
    forEachApplication([&](AtspiAccessible* application) {
        const int windows = atspi_accessible_get_child_count(application, nullptr);
        for (int w = 0; w < windows; ++w) {
            AccessiblePtr window(atspi_accessible_get_child_at_index(application, w, nullptr));
            if (window && nameOf(window.get()) == title)
                collect(window.get(), found);
        }
    });
    return found;
}

// The drawn element of that role whose name starts with prefix.
inline std::optional<Element> drawn(const QList<Element>& contents, AtspiRole role, const QString& prefix)
{
    for (const Element& e : contents) {
        if (e.role == role && e.name.startsWith(prefix) && !e.extents.isEmpty())
            return e;
    }
    return std::nullopt;
}

// A real click of the first mouse button at a point of the screen.
inline void clickAt(QPoint at)
{
    QCOMPARE(QProcess::execute(QStringLiteral("xdotool"),
                               {QStringLiteral("mousemove"), QString::number(at.x()), QString::number(at.y()),
                                QStringLiteral("click"), QStringLiteral("1")}),
             0);
}

// A real click in the middle of an element, where the bus says it is on the screen.
inline void click(AtspiAccessible* node)
{
    const QRect extents = extentsOf(node);
    QVERIFY(!extents.isEmpty());
    clickAt(extents.center());
}

// The element's first action, as a screen reader's "activate" does it.
inline bool press(AtspiAccessible* node)
{
    std::unique_ptr<AtspiAction, GObjectUnref> action(atspi_accessible_get_action_iface(node));
    return action && atspi_action_do_action(action.get(), 0, nullptr);
}

} // namespace tolvane::testing
