// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/capture/AtspiAccessibilityService.h"

#include "core/capture/GraphemeText.h"
#include "core/support/Logging.h"
#include "platform/linux/ScreenCoordinates.h"
#include "platform/linux/X11Window.h"
#include "platform/linux/capture/X11ClientWindow.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QHash>
#include <QProcess>
#include <QStandardPaths>

#include <atspi/atspi.h>
#include <gio/gio.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <deque>

TOLVANE_DEFINE_LOG(lcAccessibility, "AccessibilityService")

namespace tolvane {

namespace {

// libatspi (2.46) polls for the reply in slices of its timeout and checks the elapsed time only
// after each slice, rounded down: a call to a frozen application lasts two timeouts, not one. Half
// of the 350 ms a frozen application may cost us, then.
constexpr int callTimeoutMs = 150;
// A call that took this long was a timeout, or close enough: the application is not answering.
constexpr qint64 slowCallMs = 130;
constexpr int unresponsivePauseMs = 5000;
constexpr int maximumDrillDepth = 32;
constexpr int maximumParentClimb = 3;
constexpr int maximumFocusSearch = 400;

struct GObjectDeleter
{
    void operator()(gpointer p) const
    {
        if (p)
            g_object_unref(p);
    }
};
template <typename T> using GObjectPtr = std::unique_ptr<T, GObjectDeleter>;

struct GFreeDeleter
{
    void operator()(gpointer p) const { g_free(p); }
};
template <typename T> using GFreePtr = std::unique_ptr<T, GFreeDeleter>;

struct GArrayDeleter
{
    void operator()(GArray* a) const
    {
        if (a)
            g_array_free(a, TRUE);
    }
};

QString fromUtf8(const gchar* text)
{
    return text ? QString::fromUtf8(text) : QString();
}

} // namespace

// Processes that recently let a call run into the timeout. Asking them again would block again.
class UnresponsiveApplications
{
public:
    void mark(qint64 pid)
    {
        m_until.insert(pid, QDeadlineTimer(unresponsivePauseMs));
        qCWarning(lcAccessibility) << "Process" << pid << "did not answer in time; leaving it alone for a while";
    }
    bool contains(qint64 pid)
    {
        auto it = m_until.find(pid);
        if (it == m_until.end())
            return false;
        if (it->hasExpired()) {
            m_until.erase(it);
            return false;
        }
        return true;
    }

private:
    QHash<qint64, QDeadlineTimer> m_until;
};

namespace {

// The calls made to one application for one question. The first call that runs into the timeout
// ends the conversation, so a frozen application costs one timeout, not one per call.
class Conversation
{
public:
    Conversation(qint64 pid, std::shared_ptr<UnresponsiveApplications> unresponsive)
        : m_pid(pid)
        , m_unresponsive(std::move(unresponsive))
    {}

    bool broken() const { return m_broken; }
    qint64 pid() const { return m_pid; }
    bool countsInUtf16() const { return m_utf16; }
    void setCountsInUtf16(bool utf16) { m_utf16 = utf16; }
    // Applications that scale themselves answer in their own pixels, not the screen's.
    void setScale(double scale) { m_scale = scale; }
    QPoint toApplication(QPoint device) const
    {
        return QPoint(qRound(device.x() / m_scale), qRound(device.y() / m_scale));
    }

    // Runs call(GError**) unless the conversation is over; errors come back as a false ok.
    template <typename Call> auto ask(Call&& call, bool* ok = nullptr)
    {
        using Value = decltype(call(static_cast<GError**>(nullptr)));
        if (m_broken) {
            if (ok)
                *ok = false;
            return Value{};
        }
        GError* error = nullptr;
        QElapsedTimer timer;
        timer.start();
        Value value = call(&error);
        if (timer.elapsed() >= slowCallMs) {
            m_broken = true;
            m_unresponsive->mark(m_pid);
        }
        if (ok)
            *ok = error == nullptr && !m_broken;
        if (error)
            g_error_free(error);
        return value;
    }

private:
    qint64 m_pid;
    std::shared_ptr<UnresponsiveApplications> m_unresponsive;
    bool m_broken = false;
    bool m_utf16 = false;
    double m_scale = 1.0;
};

QPoint toDevicePixels(QPointF point)
{
    const QPointF logical = screen::toQt(point);
    const double scale = screen::scaleAt(logical);
    return QPoint(qRound(logical.x() * scale), qRound(logical.y() * scale));
}

GObjectPtr<AtspiText> textInterface(Conversation& c, AtspiAccessible* object)
{
    return GObjectPtr<AtspiText>(c.ask([&](GError**) { return atspi_accessible_get_text_iface(object); }));
}

GObjectPtr<AtspiComponent> componentInterface(Conversation& c, AtspiAccessible* object)
{
    return GObjectPtr<AtspiComponent>(c.ask([&](GError**) { return atspi_accessible_get_component_iface(object); }));
}

bool hasState(Conversation& c, AtspiAccessible* object, AtspiStateType state)
{
    GObjectPtr<AtspiStateSet> states(c.ask([&](GError**) { return atspi_accessible_get_state_set(object); }));
    return states && atspi_state_set_contains(states.get(), state);
}

class AtspiElement final : public AccessibleElement
{
public:
    AtspiElement(GObjectPtr<AtspiAccessible> object, std::shared_ptr<Conversation> conversation)
        : m_object(std::move(object))
        , m_conversation(std::move(conversation))
    {}

    std::optional<QString> attribute(const QString& name) const override
    {
        Conversation& c = *m_conversation;
        if (name == QLatin1String("AXValue"))
            return wholeText();
        bool ok = false;
        GFreePtr<gchar> value;
        if (name == QLatin1String("AXTitle"))
            value.reset(c.ask([&](GError** e) { return atspi_accessible_get_name(m_object.get(), e); }, &ok));
        else if (name == QLatin1String("AXDescription"))
            value.reset(c.ask([&](GError** e) { return atspi_accessible_get_description(m_object.get(), e); }, &ok));
        if (!ok || !value)
            return std::nullopt;
        return fromUtf8(value.get());
    }

    Result<std::optional<TextRange>> rangeForPosition(QPointF screenPoint) const override
    {
        Conversation& c = *m_conversation;
        AtspiText* text = textIface();
        if (!text)
            return Error{QStringLiteral("The element has no text to place the point in.")};
        const QPoint point = c.toApplication(toDevicePixels(screenPoint));
        bool ok = false;
        const gint offset = c.ask(
            [&](GError** e) {
                return atspi_text_get_offset_at_point(text, point.x(), point.y(), ATSPI_COORD_TYPE_SCREEN, e);
            },
            &ok);
        if (!ok)
            return Error{QStringLiteral("The application did not place the point.")};
        if (offset < 0)
            return std::optional<TextRange>();
        // Toolkits snap to the nearest character, even from the empty space after a line's end;
        // only a point inside the character's own box is on it.
        GFreePtr<AtspiRect> box(c.ask(
            [&](GError** e) { return atspi_text_get_character_extents(text, offset, ATSPI_COORD_TYPE_SCREEN, e); },
            &ok));
        if (ok && box && box->width > 0 && box->height > 0) {
            const QRect character(box->x - 1, box->y - 1, box->width + 2, box->height + 2);
            if (!character.contains(point))
                return std::optional<TextRange>();
        }
        const std::optional<QString> whole = wholeText();
        if (!whole)
            return Error{QStringLiteral("The application did not give its text.")};
        const GraphemeText characters(*whole);
        const qsizetype index =
            c.countsInUtf16() ? characters.indexAtUtf16(offset) : characters.indexAtCodePoint(offset);
        // Past a line's end toolkits answer with the line break, which has no width to be on.
        if (characters.isLineBreak(index))
            return std::optional<TextRange>();
        return std::optional<TextRange>(TextRange{index, 1});
    }

    std::optional<QString> selectedText() const override
    {
        Conversation& c = *m_conversation;
        AtspiText* text = textIface();
        if (!text)
            return std::nullopt;
        bool ok = false;
        const gint count = c.ask([&](GError** e) { return atspi_text_get_n_selections(text, e); }, &ok);
        if (!ok)
            return std::nullopt;
        if (count <= 0)
            return QString();
        GFreePtr<AtspiRange> range(c.ask([&](GError** e) { return atspi_text_get_selection(text, 0, e); }, &ok));
        if (!ok || !range)
            return std::nullopt;
        if (range->end_offset <= range->start_offset)
            return QString();
        GFreePtr<gchar> selected(c.ask(
            [&](GError** e) { return atspi_text_get_text(text, range->start_offset, range->end_offset, e); }, &ok));
        if (!ok)
            return std::nullopt;
        return fromUtf8(selected.get());
    }

private:
    AtspiText* textIface() const
    {
        if (!m_textLooked) {
            m_textLooked = true;
            m_text = textInterface(*m_conversation, m_object.get());
        }
        return m_text.get();
    }

    std::optional<QString> wholeText() const
    {
        if (m_wholeText)
            return *m_wholeText;
        AtspiText* text = textIface();
        if (!text)
            return std::nullopt;
        Conversation& c = *m_conversation;
        bool ok = false;
        const gint count = c.ask([&](GError** e) { return atspi_text_get_character_count(text, e); }, &ok);
        if (!ok || count < 0)
            return std::nullopt;
        GFreePtr<gchar> value(c.ask([&](GError** e) { return atspi_text_get_text(text, 0, count, e); }, &ok));
        if (!ok)
            return std::nullopt;
        m_wholeText = fromUtf8(value.get());
        return m_wholeText;
    }

    GObjectPtr<AtspiAccessible> m_object;
    std::shared_ptr<Conversation> m_conversation;
    mutable bool m_textLooked = false;
    mutable GObjectPtr<AtspiText> m_text;
    mutable std::optional<QString> m_wholeText;
};

GObjectPtr<AtspiAccessible> childAt(Conversation& c, AtspiAccessible* parent, int index)
{
    return GObjectPtr<AtspiAccessible>(
        c.ask([&](GError** e) { return atspi_accessible_get_child_at_index(parent, index, e); }));
}

int childCount(Conversation& c, AtspiAccessible* parent)
{
    return c.ask([&](GError** e) { return atspi_accessible_get_child_count(parent, e); });
}

// The registered application with this process id. Only the registry is asked, never the
// application itself.
GObjectPtr<AtspiAccessible> applicationOf(qint64 pid)
{
    GObjectPtr<AtspiAccessible> desktop(atspi_get_desktop(0));
    if (!desktop)
        return nullptr;
    GError* error = nullptr;
    const gint count = atspi_accessible_get_child_count(desktop.get(), &error);
    g_clear_error(&error);
    for (gint i = 0; i < count; ++i) {
        GObjectPtr<AtspiAccessible> application(atspi_accessible_get_child_at_index(desktop.get(), i, &error));
        g_clear_error(&error);
        if (!application)
            continue;
        const guint applicationPid = atspi_accessible_get_process_id(application.get(), &error);
        g_clear_error(&error);
        if (qint64(applicationPid) == pid)
            return application;
    }
    return nullptr;
}

bool isQtApplication(Conversation& c, AtspiAccessible* application)
{
    GFreePtr<gchar> toolkit(c.ask([&](GError** e) { return atspi_accessible_get_toolkit_name(application, e); }));
    return toolkit && QByteArray(toolkit.get()).startsWith("Qt");
}

struct WindowAtPoint
{
    GObjectPtr<AtspiAccessible> window;
    double scale = 1.0;
};

// The application's top-level window holding the point, the active one first, and how many
// screen pixels make one of the application's own. client: the X11 window there, when known.
WindowAtPoint windowAt(Conversation& c, AtspiAccessible* application, QPoint device, std::optional<QRect> client)
{
    WindowAtPoint found;
    const int count = childCount(c, application);
    for (int i = 0; i < count && !c.broken(); ++i) {
        GObjectPtr<AtspiAccessible> window = childAt(c, application, i);
        if (!window)
            continue;
        GObjectPtr<AtspiComponent> component = componentInterface(c, window.get());
        if (!component)
            continue;
        bool ok = false;
        GFreePtr<AtspiRect> extents(c.ask(
            [&](GError** e) { return atspi_component_get_extents(component.get(), ATSPI_COORD_TYPE_SCREEN, e); }, &ok));
        if (!ok || !extents || extents->width <= 0 || extents->height <= 0)
            continue;
        const QRect reported(extents->x, extents->y, extents->width, extents->height);
        double scale = 1.0;
        if (client) {
            // Quarter steps: a window manager's frame makes the sizes differ by a few pixels.
            scale = std::clamp(std::round(4.0 * client->width() / reported.width()) / 4.0, 1.0, 4.0);
            const QRect onScreen(QPoint(qRound(reported.x() * scale), qRound(reported.y() * scale)),
                                 reported.size() * scale);
            if (!onScreen.intersects(*client))
                continue;
        }
        const QPoint point(qRound(device.x() / scale), qRound(device.y() / scale));
        if (!reported.contains(point))
            continue;
        if (hasState(c, window.get(), ATSPI_STATE_ACTIVE))
            return {std::move(window), scale};
        if (!found.window)
            found = {std::move(window), scale};
    }
    return found;
}

GObjectPtr<AtspiAccessible> deepestAt(Conversation& c, GObjectPtr<AtspiAccessible> current, QPoint device)
{
    // GTK answers one level at a time; Qt answers with the deepest object at once.
    for (int depth = 0; depth < maximumDrillDepth && !c.broken(); ++depth) {
        GObjectPtr<AtspiComponent> component = componentInterface(c, current.get());
        if (!component)
            break;
        GObjectPtr<AtspiAccessible> child(c.ask([&](GError** e) {
            return atspi_component_get_accessible_at_point(component.get(), device.x(), device.y(),
                                                           ATSPI_COORD_TYPE_SCREEN, e);
        }));
        if (!child || child.get() == current.get())
            break;
        current = std::move(child);
    }
    if (c.broken() || textInterface(c, current.get()))
        return current;
    // Qt stops on a scroll area's viewport, which has no text; the text is a parent or two up.
    GObjectPtr<AtspiAccessible> ancestor(static_cast<AtspiAccessible*>(g_object_ref(current.get())));
    for (int step = 0; step < maximumParentClimb && !c.broken(); ++step) {
        GObjectPtr<AtspiAccessible> parent(
            c.ask([&](GError** e) { return atspi_accessible_get_parent(ancestor.get(), e); }));
        if (!parent)
            break;
        if (textInterface(c, parent.get()))
            return parent;
        ancestor = std::move(parent);
    }
    return current;
}

GObjectPtr<AtspiAccessible> focusedWithin(Conversation& c, AtspiAccessible* window)
{
    // GTK answers one collection query; Qt has no collections, so walk the showing part of the
    // tree, breadth first and bounded.
    if (GObjectPtr<AtspiCollection> collection(
            c.ask([&](GError**) { return atspi_accessible_get_collection_iface(window); }));
        collection) {
        GObjectPtr<AtspiStateSet> focused(atspi_state_set_new(nullptr));
        atspi_state_set_add(focused.get(), ATSPI_STATE_FOCUSED);
        GObjectPtr<AtspiMatchRule> rule(
            atspi_match_rule_new(focused.get(), ATSPI_Collection_MATCH_ALL, nullptr, ATSPI_Collection_MATCH_NONE,
                                 nullptr, ATSPI_Collection_MATCH_NONE, nullptr, ATSPI_Collection_MATCH_NONE, FALSE));
        bool ok = false;
        std::unique_ptr<GArray, GArrayDeleter> matches(c.ask(
            [&](GError** e) {
                return atspi_collection_get_matches(collection.get(), rule.get(), ATSPI_Collection_SORT_ORDER_CANONICAL,
                                                    1, TRUE, e);
            },
            &ok));
        if (ok && matches) {
            GObjectPtr<AtspiAccessible> first;
            for (guint i = 0; i < matches->len; ++i) {
                AtspiAccessible* match = g_array_index(matches.get(), AtspiAccessible*, i);
                if (!first)
                    first.reset(match);
                else
                    g_object_unref(match);
            }
            if (first)
                return first;
        }
    }
    if (c.broken())
        return nullptr;

    std::deque<GObjectPtr<AtspiAccessible>> queue;
    queue.emplace_back(static_cast<AtspiAccessible*>(g_object_ref(window)));
    for (int visited = 0; !queue.empty() && visited < maximumFocusSearch && !c.broken(); ++visited) {
        GObjectPtr<AtspiAccessible> node = std::move(queue.front());
        queue.pop_front();
        GObjectPtr<AtspiStateSet> states(c.ask([&](GError**) { return atspi_accessible_get_state_set(node.get()); }));
        if (!states)
            continue;
        if (atspi_state_set_contains(states.get(), ATSPI_STATE_FOCUSED))
            return node;
        if (node.get() != window && (!atspi_state_set_contains(states.get(), ATSPI_STATE_SHOWING) ||
                                     atspi_state_set_contains(states.get(), ATSPI_STATE_MANAGES_DESCENDANTS)))
            continue;
        const int count = childCount(c, node.get());
        for (int i = 0; i < count && i < maximumFocusSearch; ++i) {
            if (GObjectPtr<AtspiAccessible> child = childAt(c, node.get(), i))
                queue.push_back(std::move(child));
        }
    }
    return nullptr;
}

QDBusMessage busStatusCall(const QString& method)
{
    return QDBusMessage::createMethodCall(QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
                                          QStringLiteral("org.freedesktop.DBus.Properties"), method);
}

struct ApplicationConversation
{
    GObjectPtr<AtspiAccessible> application;
    std::shared_ptr<Conversation> conversation;
};

// The application of another process that has not stopped answering, and a conversation with it
// that counts text offsets the way the application does.
std::optional<ApplicationConversation> talkTo(std::optional<qint64> pid,
                                              const std::shared_ptr<UnresponsiveApplications>& unresponsive)
{
    // Asking ourselves would wait on our own, busy, main thread.
    if (!pid || *pid == qint64(::getpid()) || unresponsive->contains(*pid))
        return std::nullopt;
    GObjectPtr<AtspiAccessible> application = applicationOf(*pid);
    if (!application)
        return std::nullopt;
    auto conversation = std::make_shared<Conversation>(*pid, unresponsive);
    conversation->setCountsInUtf16(isQtApplication(*conversation, application.get()));
    return ApplicationConversation{std::move(application), std::move(conversation)};
}

} // namespace

AtspiAccessibilityService::AtspiAccessibilityService()
    : m_unresponsive(std::make_shared<UnresponsiveApplications>())
{
    // The default timeout is 25 s; a frozen application must not freeze Tolvane with it.
    atspi_set_timeout(callTimeoutMs, 0);
    const int status = atspi_init();
    m_connected = status == 0 || status == 1;
    if (!m_connected)
        qCWarning(lcAccessibility) << "Could not reach the accessibility bus; text under the pointer cannot be read";
}

AtspiAccessibilityService::~AtspiAccessibilityService() = default;

AccessibleElementPtr AtspiAccessibilityService::elementAtPoint(QPointF screenPoint)
{
    if (!m_connected)
        return nullptr;
    const QPoint device = toDevicePixels(screenPoint);
    std::optional<ApplicationConversation> talk = talkTo(x11::processIdAt(device.x(), device.y()), m_unresponsive);
    if (!talk)
        return nullptr;
    std::shared_ptr<Conversation>& conversation = talk->conversation;
    WindowAtPoint window =
        windowAt(*conversation, talk->application.get(), device, x11::clientWindowRectAt(device.x(), device.y()));
    if (!window.window || conversation->broken())
        return nullptr;
    conversation->setScale(window.scale);
    GObjectPtr<AtspiAccessible> element =
        deepestAt(*conversation, std::move(window.window), conversation->toApplication(device));
    if (!element || conversation->broken())
        return nullptr;
    return std::make_shared<AtspiElement>(std::move(element), std::move(conversation));
}

AccessibleElementPtr AtspiAccessibilityService::focusedElement()
{
    if (!m_connected)
        return nullptr;
    std::optional<ApplicationConversation> talk = talkTo(x11::activeWindowProcessId(), m_unresponsive);
    if (!talk)
        return nullptr;
    std::shared_ptr<Conversation>& conversation = talk->conversation;
    AtspiAccessible* application = talk->application.get();
    Conversation& c = *conversation;
    GObjectPtr<AtspiAccessible> active;
    const int count = childCount(c, application);
    for (int i = 0; i < count && !c.broken() && !active; ++i) {
        GObjectPtr<AtspiAccessible> window = childAt(c, application, i);
        if (window && hasState(c, window.get(), ATSPI_STATE_ACTIVE))
            active = std::move(window);
    }
    if (!active)
        return nullptr;
    GObjectPtr<AtspiAccessible> focused = focusedWithin(c, active.get());
    if (!focused || c.broken())
        return nullptr;
    return std::make_shared<AtspiElement>(std::move(focused), std::move(conversation));
}

bool AtspiAccessibilityService::isTrusted() const
{
    QDBusMessage call = busStatusCall(QStringLiteral("Get"));
    call << QStringLiteral("org.a11y.Status") << QStringLiteral("IsEnabled");
    const QDBusMessage reply = QDBusConnection::sessionBus().call(call, QDBus::Block, callTimeoutMs);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return false;
    return reply.arguments().constFirst().value<QDBusVariant>().variant().toBool();
}

bool AtspiAccessibilityService::requestTrust()
{
    QDBusMessage call = busStatusCall(QStringLiteral("Set"));
    call << QStringLiteral("org.a11y.Status") << QStringLiteral("IsEnabled") << QVariant::fromValue(QDBusVariant(true));
    const QDBusMessage reply = QDBusConnection::sessionBus().call(call, QDBus::Block, callTimeoutMs);
    if (reply.type() == QDBusMessage::ErrorMessage)
        qCWarning(lcAccessibility) << "Could not switch the accessibility bus on:" << reply.errorMessage();

    // The desktop setting, so the next session starts with it on too.
    if (GSettingsSchemaSource* source = g_settings_schema_source_get_default()) {
        const std::unique_ptr<GSettingsSchema, decltype(&g_settings_schema_unref)> schema(
            g_settings_schema_source_lookup(source, "org.gnome.desktop.interface", TRUE), &g_settings_schema_unref);
        if (schema && g_settings_schema_has_key(schema.get(), "toolkit-accessibility")) {
            GObjectPtr<GSettings> settings(g_settings_new_full(schema.get(), nullptr, nullptr));
            g_settings_set_boolean(settings.get(), "toolkit-accessibility", TRUE);
            g_settings_sync();
        }
    }
    const bool trusted = isTrusted();
    if (trusted)
        qCInfo(lcAccessibility) << "Accessibility is on; applications that were already running (Qt, Chromium) "
                                   "show their text only after a restart";
    return trusted;
}

Result<void> AtspiAccessibilityService::openSystemSettings()
{
    const QString settings = QStandardPaths::findExecutable(QStringLiteral("gnome-control-center"));
    if (!settings.isEmpty() && QProcess::startDetached(settings, {QStringLiteral("universal-access")}))
        return {};
    return Error{QStringLiteral("This desktop has no accessibility settings window. Turn accessibility on with "
                                "“gsettings set org.gnome.desktop.interface toolkit-accessibility true”, then "
                                "restart the applications you want to read from.")};
}

} // namespace tolvane
