// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/capture/AtspiAccessibilityService.h"

#include "core/capture/GraphemeText.h"
#include "core/support/Logging.h"
#include "platform/linux/ScreenCoordinates.h"
#include "platform/linux/capture/X11ClientWindow.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QHash>
#include <QProcess>
#include <QScopeGuard>
#include <QStandardPaths>

#include <atspi/atspi.h>
#include <gio/gio.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <deque>
#include <unordered_map>

TOLVANE_DEFINE_LOG(lcAccessibility, "AccessibilityService")

namespace tolvane {

namespace {

// libatspi (2.46) polls for the reply in slices of its timeout and checks the elapsed time only
// after each slice, rounded down: a call to a frozen application lasts two timeouts, not one. Half
// of the 350 ms a frozen application may cost us, then.
constexpr int callTimeoutMs = 150;
// A call this long ran into the timeout. A shorter one answered, however slowly: LibreOffice
// takes up to 150 ms over its first question and is not frozen for it.
constexpr qint64 timedOutCallMs = 250;
// A call that failed after this long ran into the timeout.
constexpr qint64 slowCallMs = 130;
// Time spent waiting on one application for one question, after which no further call is made.
// LibreOffice answers its first few calls from a new client in about 150 ms each.
constexpr qint64 conversationBudgetMs = 400;
constexpr int unresponsivePauseMs = 5000;
constexpr int maximumDrillDepth = 32;
constexpr int maximumParentClimb = 3;
constexpr int maximumFocusSearch = 400;
constexpr int maximumChildrenTried = 64;
constexpr int maximumObjectDescent = 4;
constexpr int maximumBinarySteps = 48;
// Texts longer than this (in the application's offsets) are read around the point only.
constexpr int maximumTextRead = 65536;
constexpr int excerptRadius = 4000;
constexpr int primarySelectionTimeoutMs = 100;
constexpr char16_t objectReplacement = 0xFFFC;

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

GObjectPtr<AtspiAccessible> ref(AtspiAccessible* object)
{
    return GObjectPtr<AtspiAccessible>(static_cast<AtspiAccessible*>(g_object_ref(object)));
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

// What an application's toolkit answers, and how to ask it.
struct Toolkit
{
    QString name;
    int major = 0;

    bool isQt() const { return name.startsWith(QLatin1String("Qt")); }
    bool isGtk() const { return name.compare(QLatin1String("gtk"), Qt::CaseInsensitive) == 0; }
    // Qt counts offsets in UTF-16 units, everyone else in code points.
    bool countsInUtf16() const { return isQt(); }
    // GTK 4 answers screen coordinates with an error or with window ones.
    bool speaksWindowCoordinates() const { return isGtk() && major >= 4; }
    // GTK 4 never answers GetOffsetAtPoint (the call runs into the timeout); its characters'
    // extents are right, so the character is found by them.
    bool findsCharactersByExtents() const { return speaksWindowCoordinates(); }
    // Qt 5 answers -1, and puts every line's characters at the top of the widget.
    bool placesPoints() const { return !(isQt() && major == 5); }
};

} // namespace

// What does not change while an application runs: its toolkit, and which of its accessible
// windows an X window is. Asking again on every look-up would cost a third of its calls.
class ApplicationMemory
{
public:
    std::optional<Toolkit> toolkit(const QByteArray& busName) const
    {
        auto it = m_toolkits.constFind(busName);
        return it == m_toolkits.cend() ? std::nullopt : std::optional<Toolkit>(*it);
    }
    void rememberToolkit(const QByteArray& busName, const Toolkit& toolkit)
    {
        if (m_toolkits.size() > maximumRemembered)
            m_toolkits.clear();
        m_toolkits.insert(busName, toolkit);
    }
    // The accessible window of an X window of the application on busName, and its scale; null
    // when not known. The X server hands a quitting client's window ids to the next client, so
    // the application has to be the same one too (bus names are never given out twice).
    AtspiAccessible* window(quint32 xWindow, const QByteArray& busName, double* scale) const
    {
        auto it = m_windows.find(xWindow);
        if (it == m_windows.end() || it->second.busName != busName || busName.isEmpty())
            return nullptr;
        *scale = it->second.scale;
        return it->second.frame.get();
    }
    void rememberWindow(quint32 xWindow, const QByteArray& busName, AtspiAccessible* frame, double scale)
    {
        if (m_windows.size() > size_t(maximumRemembered))
            m_windows.clear();
        m_windows[xWindow] = {ref(frame), busName, scale};
    }
    void forgetWindow(quint32 xWindow) { m_windows.erase(xWindow); }

private:
    static constexpr int maximumRemembered = 64;
    struct KnownWindow
    {
        GObjectPtr<AtspiAccessible> frame;
        QByteArray busName;
        double scale = 1.0;
    };
    QHash<QByteArray, Toolkit> m_toolkits;
    std::unordered_map<quint32, KnownWindow> m_windows;
};

namespace {

// The calls made to one application for one question. The first call that runs into the timeout
// ends the conversation, so a frozen application costs one timeout, not one per call.
class Conversation
{
public:
    Conversation(qint64 pid, std::shared_ptr<UnresponsiveApplications> unresponsive,
                 std::shared_ptr<AccessibilityNotes> notes)
        : m_pid(pid)
        , m_unresponsive(std::move(unresponsive))
        , m_notes(std::move(notes))
    {}

    bool broken() const { return m_broken; }
    qint64 pid() const { return m_pid; }
    const Toolkit& toolkit() const { return m_toolkit; }
    void setToolkit(Toolkit toolkit) { m_toolkit = std::move(toolkit); }

    // Where the application's coordinates start and how many screen pixels make one of its own:
    // the screen's origin for most, the window's for GTK 4; a factor for applications that scale
    // themselves.
    void setFrame(QPoint origin, double scale)
    {
        m_origin = origin;
        m_scale = scale;
    }
    QPoint toApplication(QPoint device) const
    {
        const QPoint local = device - m_origin;
        return QPoint(qRound(local.x() / m_scale), qRound(local.y() / m_scale));
    }
    AtspiCoordType coordinates() const
    {
        return m_toolkit.speaksWindowCoordinates() ? ATSPI_COORD_TYPE_WINDOW : ATSPI_COORD_TYPE_SCREEN;
    }

    // Runs call(GError**) unless the conversation is over; errors come back as a false ok.
    template <typename Call> auto ask(Call&& call, bool* ok = nullptr)
    {
        using Value = decltype(call(static_cast<GError**>(nullptr)));
        if (!m_broken && m_waitedMs >= conversationBudgetMs) {
            m_broken = true;
            note(QStringLiteral("the application answers slowly: no further questions this time"));
        }
        if (m_broken) {
            if (ok)
                *ok = false;
            return Value{};
        }
        GError* error = nullptr;
        QElapsedTimer timer;
        timer.start();
        Value value = call(&error);
        const qint64 elapsed = timer.elapsed();
        m_waitedMs += elapsed;
        ++m_calls;
        if (elapsed >= timedOutCallMs) {
            m_broken = true;
            m_unresponsive->mark(m_pid);
            if (m_notes)
                m_notes->unresponsive = true;
            note(QStringLiteral("no answer within %1 ms: the application counts as not responding for %2 s")
                     .arg(elapsed)
                     .arg(unresponsivePauseMs / 1000));
        }
        // A call that ran into the timeout, however soon libatspi gave up on it, ends the
        // conversation: the answer is still being worked out, and the next look-up will have it.
        if (error && elapsed >= slowCallMs && !m_broken) {
            m_broken = true;
            note(QStringLiteral("no answer within %1 ms: no further questions this time").arg(elapsed));
        }
        if (ok)
            *ok = error == nullptr && !m_broken;
        if (error) {
            if (m_notes)
                note(QStringLiteral("error: %1").arg(QString::fromUtf8(error->message)));
            g_error_free(error);
        }
        return value;
    }

    bool keepsNotes() const { return m_notes != nullptr; }
    void note(const QString& line) const
    {
        if (m_notes)
            m_notes->steps.append(QStringLiteral("%1 (%2 ms waited, %3 calls)").arg(line).arg(m_waitedMs).arg(m_calls));
    }
    AccessibilityNotes* notes() const { return m_notes.get(); }

private:
    qint64 m_pid;
    std::shared_ptr<UnresponsiveApplications> m_unresponsive;
    std::shared_ptr<AccessibilityNotes> m_notes;
    Toolkit m_toolkit;
    bool m_broken = false;
    qint64 m_waitedMs = 0;
    int m_calls = 0;
    QPoint m_origin;
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

GObjectPtr<AtspiStateSet> stateSet(Conversation& c, AtspiAccessible* object)
{
    return GObjectPtr<AtspiStateSet>(c.ask([&](GError**) { return atspi_accessible_get_state_set(object); }));
}

bool hasState(Conversation& c, AtspiAccessible* object, AtspiStateType state)
{
    GObjectPtr<AtspiStateSet> states = stateSet(c, object);
    return states && atspi_state_set_contains(states.get(), state);
}

// GTK 4 sets "showing" on windows only; "visible" is what its widgets say.
bool isShown(const Conversation& c, AtspiStateSet* states)
{
    return atspi_state_set_contains(states,
                                    c.toolkit().speaksWindowCoordinates() ? ATSPI_STATE_VISIBLE : ATSPI_STATE_SHOWING);
}

AtspiRole roleOf(Conversation& c, AtspiAccessible* object)
{
    return c.ask([&](GError** e) { return atspi_accessible_get_role(object, e); });
}

QString describe(Conversation& c, AtspiAccessible* object)
{
    if (!c.keepsNotes())
        return {};
    GFreePtr<gchar> role(c.ask([&](GError** e) { return atspi_accessible_get_role_name(object, e); }));
    GFreePtr<gchar> name(c.ask([&](GError** e) { return atspi_accessible_get_name(object, e); }));
    QString text = fromUtf8(role.get());
    if (name && *name.get())
        text += QStringLiteral(" “%1”").arg(fromUtf8(name.get()).left(40));
    return text;
}

std::optional<QRect> extentsOf(Conversation& c, AtspiAccessible* object)
{
    GObjectPtr<AtspiComponent> component = componentInterface(c, object);
    if (!component)
        return std::nullopt;
    bool ok = false;
    GFreePtr<AtspiRect> box(
        c.ask([&](GError** e) { return atspi_component_get_extents(component.get(), c.coordinates(), e); }, &ok));
    if (!ok || !box)
        return std::nullopt;
    return QRect(box->x, box->y, box->width, box->height);
}

// Objects that only hold others: with no text of their own, the point is on no text.
bool isContainer(AtspiRole role)
{
    switch (role) {
    case ATSPI_ROLE_APPLICATION:
    case ATSPI_ROLE_FRAME:
    case ATSPI_ROLE_WINDOW:
    case ATSPI_ROLE_DIALOG:
    case ATSPI_ROLE_FILLER:
    case ATSPI_ROLE_PANEL:
    case ATSPI_ROLE_SCROLL_PANE:
    case ATSPI_ROLE_VIEWPORT:
    case ATSPI_ROLE_PAGE_TAB_LIST:
    case ATSPI_ROLE_PAGE_TAB:
    case ATSPI_ROLE_LAYERED_PANE:
    case ATSPI_ROLE_SPLIT_PANE:
    case ATSPI_ROLE_ROOT_PANE:
    case ATSPI_ROLE_GLASS_PANE:
    case ATSPI_ROLE_INTERNAL_FRAME:
    case ATSPI_ROLE_DOCUMENT_FRAME:
    case ATSPI_ROLE_DOCUMENT_WEB:
    case ATSPI_ROLE_GROUPING:
    case ATSPI_ROLE_SECTION:
    case ATSPI_ROLE_REDUNDANT_OBJECT:
    case ATSPI_ROLE_UNKNOWN:
    case ATSPI_ROLE_INVALID:
        return true;
    default:
        return false;
    }
}

GObjectPtr<AtspiAccessible> childAt(Conversation& c, AtspiAccessible* parent, int index)
{
    return GObjectPtr<AtspiAccessible>(
        c.ask([&](GError** e) { return atspi_accessible_get_child_at_index(parent, index, e); }));
}

int childCount(Conversation& c, AtspiAccessible* parent)
{
    return c.ask([&](GError** e) { return atspi_accessible_get_child_count(parent, e); });
}

GObjectPtr<AtspiAccessible> accessibleAt(Conversation& c, AtspiAccessible* object, QPoint point)
{
    GObjectPtr<AtspiComponent> component = componentInterface(c, object);
    if (!component)
        return nullptr;
    return GObjectPtr<AtspiAccessible>(c.ask([&](GError** e) {
        return atspi_component_get_accessible_at_point(component.get(), point.x(), point.y(), c.coordinates(), e);
    }));
}

// The child the point may be in although the toolkit does not say so: a GTK 3 notebook's page
// tab reports extents of (-1, -1, -1, -1), so asking the tab list for the point never enters the
// tab, while the page under the tab holds the text. The selected tab first.
GObjectPtr<AtspiAccessible> shownChildWithoutPlace(Conversation& c, AtspiAccessible* parent)
{
    GObjectPtr<AtspiAccessible> candidate;
    const int count = std::min(childCount(c, parent), maximumChildrenTried);
    for (int i = 0; i < count && !c.broken(); ++i) {
        GObjectPtr<AtspiAccessible> child = childAt(c, parent, i);
        if (!child)
            continue;
        GObjectPtr<AtspiStateSet> states = stateSet(c, child.get());
        if (!states || !atspi_state_set_contains(states.get(), ATSPI_STATE_SHOWING))
            continue;
        const std::optional<QRect> box = extentsOf(c, child.get());
        if (box && box->width() > 0 && box->height() > 0)
            continue;
        if (atspi_state_set_contains(states.get(), ATSPI_STATE_SELECTED))
            return child;
        if (!candidate)
            candidate = std::move(child);
    }
    return candidate;
}

// The deepest object at an application point, from current down.
GObjectPtr<AtspiAccessible> deepestAt(Conversation& c, GObjectPtr<AtspiAccessible> current, QPoint point)
{
    // GTK answers one level at a time; Qt and GTK 4 answer with the deepest object at once.
    for (int depth = 0; depth < maximumDrillDepth && !c.broken(); ++depth) {
        GObjectPtr<AtspiAccessible> child = accessibleAt(c, current.get(), point);
        if (!child || child.get() == current.get()) {
            if (textInterface(c, current.get()))
                break;
            child = shownChildWithoutPlace(c, current.get());
            if (!child)
                break;
            c.note(QStringLiteral("%1 has no place on the screen; going on inside it").arg(describe(c, child.get())));
        } else {
            c.note(QStringLiteral("at the point: %1").arg(describe(c, child.get())));
        }
        current = std::move(child);
    }
    if (c.broken() || textInterface(c, current.get()))
        return current;
    // Qt stops on a scroll area's viewport, which has no text; the text is a parent or two up.
    GObjectPtr<AtspiAccessible> ancestor = ref(current.get());
    for (int step = 0; step < maximumParentClimb && !c.broken(); ++step) {
        GObjectPtr<AtspiAccessible> parent(
            c.ask([&](GError** e) { return atspi_accessible_get_parent(ancestor.get(), e); }));
        if (!parent)
            break;
        if (textInterface(c, parent.get())) {
            c.note(QStringLiteral("the text is a parent up: %1").arg(describe(c, parent.get())));
            return parent;
        }
        ancestor = std::move(parent);
    }
    return current;
}

// The text an element shows, as much of it as is worth reading, and where that part starts in
// the application's offsets.
struct TextExcerpt
{
    QString text;
    qint64 start = 0;  // application offset of text's first character
    qint64 length = 0; // the application's character count of the whole text
};

std::optional<TextExcerpt> readText(Conversation& c, AtspiText* text, std::optional<qint64> around)
{
    bool ok = false;
    const gint count = c.ask([&](GError** e) { return atspi_text_get_character_count(text, e); }, &ok);
    if (!ok || count < 0)
        return std::nullopt;
    qint64 start = 0;
    qint64 end = std::min<qint64>(count, maximumTextRead);
    if (around && count > maximumTextRead) {
        start = std::max<qint64>(0, *around - excerptRadius);
        end = std::min<qint64>(count, *around + excerptRadius);
    }
    GFreePtr<gchar> value(c.ask([&](GError** e) { return atspi_text_get_text(text, gint(start), gint(end), e); }, &ok));
    if (!ok)
        return std::nullopt;
    return TextExcerpt{fromUtf8(value.get()), start, count};
}

// GTK 4: the character whose box holds the point, by a binary search over the characters'
// extents (lines run top to bottom, characters left to right). -1 when no character holds it.
Result<gint> characterByExtents(Conversation& c, AtspiText* text, QPoint point)
{
    bool ok = false;
    const gint count = c.ask([&](GError** e) { return atspi_text_get_character_count(text, e); }, &ok);
    if (!ok)
        return Error{QStringLiteral("The application did not say how long its text is.")};
    gint low = 0;
    gint high = count - 1;
    for (int step = 0; low <= high && step < maximumBinarySteps; ++step) {
        const gint middle = low + (high - low) / 2;
        GFreePtr<AtspiRect> box(
            c.ask([&](GError** e) { return atspi_text_get_character_extents(text, middle, c.coordinates(), e); }, &ok));
        if (!ok || !box)
            return Error{QStringLiteral("The application did not give its characters' places.")};
        if (box->height <= 0)
            return Error{QStringLiteral("The application gives its characters no height.")};
        if (point.y() < box->y)
            high = middle - 1;
        else if (point.y() >= box->y + box->height)
            low = middle + 1;
        else if (point.x() < box->x)
            high = middle - 1;
        else if (point.x() >= box->x + std::max(box->width, 1))
            low = middle + 1;
        else
            return middle;
    }
    return gint(-1);
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
        if (name == QLatin1String("AXValue")) {
            const TextExcerpt* excerpt = readExcerpt(std::nullopt);
            if (!excerpt)
                return std::nullopt;
            // Object characters stand for text kept elsewhere; they are no part of any word here.
            QString text = excerpt->text;
            text.replace(QChar(objectReplacement), QLatin1Char(' '));
            return text;
        }
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
        return rangeAt(m_conversation->toApplication(toDevicePixels(screenPoint)));
    }

    // point: in the application's coordinates.
    Result<std::optional<TextRange>> rangeAt(QPoint point) const
    {
        Conversation& c = *m_conversation;
        if (!c.toolkit().placesPoints()) {
            c.note(QStringLiteral("%1 cannot say which character is under a point").arg(c.toolkit().name));
            return Error{QStringLiteral("The application cannot say which character lies under a point.")};
        }
        // Firefox keeps a paragraph's text in a child object and shows an object character in
        // its place; the text under the point is the child's.
        for (int descent = 0; descent <= maximumObjectDescent; ++descent) {
            AtspiText* text = textIface();
            if (!text)
                return Error{QStringLiteral("The element has no text to place the point in.")};
            const Result<gint> offset = offsetAt(text, point);
            if (!offset)
                return offset.error();
            if (offset.value() < 0) {
                c.note(QStringLiteral("no character under the point"));
                return std::optional<TextRange>();
            }
            const TextExcerpt* excerpt = readExcerpt(offset.value());
            if (!excerpt)
                return Error{QStringLiteral("The application did not give its text.")};
            const GraphemeText characters(excerpt->text);
            const qint64 local = offset.value() - excerpt->start;
            const qsizetype index =
                c.toolkit().countsInUtf16() ? characters.indexAtUtf16(local) : characters.indexAtCodePoint(local);
            if (index >= characters.size()) {
                c.note(QStringLiteral("offset %1 lies past the text's end").arg(offset.value()));
                return std::optional<TextRange>();
            }
            const QString character = characters.mid(index, index + 1);
            if (character == QString(QChar(objectReplacement))) {
                c.note(QStringLiteral("offset %1 holds an object character; reading the object").arg(offset.value()));
                // An object whose text cannot be reached: the toolkit has text here but cannot
                // say which, and the screen may.
                if (!enterObjectAt(offset.value(), point))
                    return Error{QStringLiteral("The text under the point is kept in an object that cannot be read.")};
                continue;
            }
            c.note(QStringLiteral("offset %1: «%2»").arg(offset.value()).arg(character));
            // Past a line's end toolkits answer with the line break, which has no width to be on.
            if (characters.isLineBreak(index))
                return std::optional<TextRange>();
            return std::optional<TextRange>(TextRange{index, 1});
        }
        return std::optional<TextRange>();
    }

    std::optional<QString> selectedText() const override
    {
        std::optional<QString> selected = selectionOf(*m_conversation, m_object.get());
        // Browsers select across paragraphs held in child objects: the document's own selection is
        // object characters, the text is in the children's selections.
        if (selected && selected->contains(QChar(objectReplacement))) {
            QStringList parts;
            collectChildSelections(m_object.get(), 0, parts);
            if (!parts.isEmpty())
                return parts.join(QLatin1Char('\n'));
            QString cleaned = *selected;
            cleaned.remove(QChar(objectReplacement));
            return cleaned;
        }
        return selected;
    }

    AtspiAccessible* object() const { return m_object.get(); }

    static std::optional<QString> selectionOf(Conversation& c, AtspiAccessible* object)
    {
        GObjectPtr<AtspiText> text = textInterface(c, object);
        if (!text)
            return std::nullopt;
        bool ok = false;
        const gint count = c.ask([&](GError** e) { return atspi_text_get_n_selections(text.get(), e); }, &ok);
        if (!ok)
            return std::nullopt;
        if (count <= 0)
            return QString();
        GFreePtr<AtspiRange> range(c.ask([&](GError** e) { return atspi_text_get_selection(text.get(), 0, e); }, &ok));
        if (!ok || !range)
            return std::nullopt;
        if (range->end_offset <= range->start_offset)
            return QString();
        GFreePtr<gchar> selected(c.ask(
            [&](GError** e) { return atspi_text_get_text(text.get(), range->start_offset, range->end_offset, e); },
            &ok));
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

    // The text, or the part of a very long one around an offset; read once per element.
    const TextExcerpt* readExcerpt(std::optional<qint64> around) const
    {
        if (m_excerpt)
            return &*m_excerpt;
        AtspiText* text = textIface();
        if (!text)
            return nullptr;
        m_excerpt = readText(*m_conversation, text, around);
        return m_excerpt ? &*m_excerpt : nullptr;
    }

    Result<gint> offsetAt(AtspiText* text, QPoint point) const
    {
        Conversation& c = *m_conversation;
        if (c.toolkit().findsCharactersByExtents())
            return characterByExtents(c, text, point);
        bool ok = false;
        const gint offset = c.ask(
            [&](GError** e) { return atspi_text_get_offset_at_point(text, point.x(), point.y(), c.coordinates(), e); },
            &ok);
        if (!ok)
            return Error{QStringLiteral("The application did not place the point.")};
        if (offset < 0)
            return offset;
        // Toolkits snap to the nearest character, even from the empty space after a line's end;
        // only a point inside the character's own box is on it.
        GFreePtr<AtspiRect> box(
            c.ask([&](GError** e) { return atspi_text_get_character_extents(text, offset, c.coordinates(), e); }, &ok));
        if (ok && box && box->width > 0 && box->height > 0) {
            const QRect character(box->x - 1, box->y - 1, box->width + 2, box->height + 2);
            if (!character.contains(point))
                return gint(-1);
        }
        return offset;
    }

    // Moves this element onto the object an object character stands for: through the hypertext
    // link at the offset, else by asking again at the point. False when neither leads anywhere.
    bool enterObjectAt(qint64 offset, QPoint point) const
    {
        Conversation& c = *m_conversation;
        GObjectPtr<AtspiAccessible> next;
        if (GObjectPtr<AtspiHypertext> hypertext(
                c.ask([&](GError**) { return atspi_accessible_get_hypertext_iface(m_object.get()); }));
            hypertext) {
            const gint index =
                c.ask([&](GError** e) { return atspi_hypertext_get_link_index(hypertext.get(), gint(offset), e); });
            if (index >= 0) {
                GObjectPtr<AtspiHyperlink> link(
                    c.ask([&](GError** e) { return atspi_hypertext_get_link(hypertext.get(), index, e); }));
                if (link)
                    next.reset(c.ask([&](GError** e) { return atspi_hyperlink_get_object(link.get(), 0, e); }));
            }
        }
        if (!next) {
            next = accessibleAt(c, m_object.get(), point);
            if (next && next.get() == m_object.get())
                next.reset();
        }
        // The object may hold the text further down (a browser window's document inside it).
        if (next)
            next = deepestAt(c, std::move(next), point);
        if (!next || next.get() == m_object.get() || !textInterface(c, next.get()))
            return false;
        c.note(QStringLiteral("inside the object: %1").arg(describe(c, next.get())));
        m_object = std::move(next);
        m_textLooked = false;
        m_text.reset();
        m_excerpt.reset();
        return true;
    }

    void collectChildSelections(AtspiAccessible* parent, int depth, QStringList& parts) const
    {
        Conversation& c = *m_conversation;
        const int count = std::min(childCount(c, parent), maximumFocusSearch);
        for (int i = 0; i < count && !c.broken() && parts.size() < maximumFocusSearch; ++i) {
            GObjectPtr<AtspiAccessible> child = childAt(c, parent, i);
            if (!child)
                continue;
            const std::optional<QString> selected = selectionOf(c, child.get());
            if (selected && !selected->isEmpty() && !selected->contains(QChar(objectReplacement)))
                parts.append(*selected);
            else if (selected && depth < maximumObjectDescent)
                collectChildSelections(child.get(), depth + 1, parts);
        }
    }

    mutable GObjectPtr<AtspiAccessible> m_object;
    std::shared_ptr<Conversation> m_conversation;
    mutable bool m_textLooked = false;
    mutable GObjectPtr<AtspiText> m_text;
    mutable std::optional<TextExcerpt> m_excerpt;
};

// The primary selection, when the focused application owns it and nothing better was found.
class PrimarySelectionElement final : public AccessibleElement
{
public:
    explicit PrimarySelectionElement(QString text)
        : m_text(std::move(text))
    {}
    std::optional<QString> attribute(const QString&) const override { return std::nullopt; }
    Result<std::optional<TextRange>> rangeForPosition(QPointF) const override
    {
        return Error{QStringLiteral("A selection has no place on the screen.")};
    }
    std::optional<QString> selectedText() const override { return m_text; }

private:
    QString m_text;
};

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

// The application's unique name on the accessibility bus; known locally.
QByteArray busNameOf(AtspiAccessible* application)
{
    return QByteArray(application->parent.app ? application->parent.app->bus_name : nullptr);
}

Toolkit toolkitOf(Conversation& c, AtspiAccessible* application)
{
    Toolkit toolkit;
    GFreePtr<gchar> name(c.ask([&](GError** e) { return atspi_accessible_get_toolkit_name(application, e); }));
    GFreePtr<gchar> version(c.ask([&](GError** e) { return atspi_accessible_get_toolkit_version(application, e); }));
    toolkit.name = fromUtf8(name.get());
    toolkit.major = fromUtf8(version.get()).section(QLatin1Char('.'), 0, 0).toInt();
    if (AccessibilityNotes* notes = c.notes())
        notes->toolkit = QStringLiteral("%1 %2").arg(toolkit.name, fromUtf8(version.get()));
    return toolkit;
}

struct WindowAtPoint
{
    GObjectPtr<AtspiAccessible> window;
    double scale = 1.0;
};

// The application's top-level window holding the point, the active one first, and how many
// screen pixels make one of the application's own. client: the X11 window there.
WindowAtPoint windowAt(Conversation& c, AtspiAccessible* application, QPoint device,
                       const std::optional<x11::ClientWindow>& client)
{
    WindowAtPoint found;
    const bool windowCoordinates = c.toolkit().speaksWindowCoordinates();
    const int count = childCount(c, application);
    for (int i = 0; i < count && !c.broken(); ++i) {
        GObjectPtr<AtspiAccessible> window = childAt(c, application, i);
        if (!window)
            continue;
        const std::optional<QRect> reported = extentsOf(c, window.get());
        if (!reported || reported->width() <= 0 || reported->height() <= 0)
            continue;
        double scale = 1.0;
        if (windowCoordinates) {
            // Every window starts at (0, 0) in its own coordinates: only its size and name tell
            // which X window it is.
            if (client &&
                (reported->width() > client->rect.width() + 2 || reported->height() > client->rect.height() + 2))
                continue;
        } else {
            if (client) {
                // Quarter steps: a window manager's frame makes the sizes differ by a few pixels.
                scale = std::clamp(std::round(4.0 * client->rect.width() / reported->width()) / 4.0, 1.0, 4.0);
                const QRect onScreen(QPoint(qRound(reported->x() * scale), qRound(reported->y() * scale)),
                                     reported->size() * scale);
                if (!onScreen.intersects(client->rect))
                    continue;
            }
            const QPoint point(qRound(device.x() / scale), qRound(device.y() / scale));
            if (!reported->contains(point))
                continue;
        }
        const bool active = hasState(c, window.get(), ATSPI_STATE_ACTIVE);
        bool named = false;
        if (windowCoordinates && client && !client->title.isEmpty()) {
            GFreePtr<gchar> name(c.ask([&](GError** e) { return atspi_accessible_get_name(window.get(), e); }));
            named = fromUtf8(name.get()) == client->title;
        }
        if (active || named) {
            found = {std::move(window), scale};
            break;
        }
        if (!found.window)
            found = {std::move(window), scale};
    }
    if (found.window && windowCoordinates && client) {
        // GTK 4 counts from its window widget, which sits inside the X window's margin (the
        // resize border of a window that draws its own decorations).
        const std::optional<QRect> reported = extentsOf(c, found.window.get());
        const QPoint margin = reported ? QPoint((client->rect.width() - reported->width()) / 2,
                                                (client->rect.height() - reported->height()) / 2)
                                       : QPoint();
        c.setFrame(client->rect.topLeft() + margin, 1.0);
    } else {
        c.setFrame(QPoint(), found.scale);
    }
    if (found.window)
        c.note(QStringLiteral("window: %1").arg(describe(c, found.window.get())));
    return found;
}

GObjectPtr<AtspiAccessible> focusedWithin(Conversation& c, AtspiAccessible* window)
{
    // GTK 3 answers one collection query; Qt and GTK 4 have no working collections (Qt 5 offers
    // one and takes a fifth of a second to refuse), so walk the shown part of the tree, breadth
    // first and bounded.
    if (GObjectPtr<AtspiCollection> collection(
            c.ask([&](GError**) { return atspi_accessible_get_collection_iface(window); }));
        collection && !c.toolkit().speaksWindowCoordinates() && !c.toolkit().isQt()) {
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
        // The array owns a reference to every match, even when the answer came too late to use.
        GObjectPtr<AtspiAccessible> first;
        for (guint i = 0; matches && i < matches->len; ++i) {
            GObjectPtr<AtspiAccessible> match(g_array_index(matches.get(), AtspiAccessible*, i));
            if (ok && !first)
                first = std::move(match);
        }
        if (first)
            return first;
    }
    if (c.broken())
        return nullptr;

    std::deque<GObjectPtr<AtspiAccessible>> queue;
    queue.push_back(ref(window));
    for (int visited = 0; !queue.empty() && visited < maximumFocusSearch && !c.broken(); ++visited) {
        GObjectPtr<AtspiAccessible> node = std::move(queue.front());
        queue.pop_front();
        GObjectPtr<AtspiStateSet> states = stateSet(c, node.get());
        if (!states)
            continue;
        if (atspi_state_set_contains(states.get(), ATSPI_STATE_FOCUSED))
            return node;
        if (node.get() != window &&
            (!isShown(c, states.get()) || atspi_state_set_contains(states.get(), ATSPI_STATE_MANAGES_DESCENDANTS)))
            continue;
        const int count = childCount(c, node.get());
        for (int i = 0; i < count && i < maximumFocusSearch; ++i) {
            if (GObjectPtr<AtspiAccessible> child = childAt(c, node.get(), i))
                queue.push_back(std::move(child));
        }
    }
    return nullptr;
}

// The first shown text object at or below root that holds a selection, breadth first, bounded.
GObjectPtr<AtspiAccessible> textWithSelectionBelow(Conversation& c, AtspiAccessible* root)
{
    std::deque<GObjectPtr<AtspiAccessible>> queue;
    queue.push_back(ref(root));
    for (int visited = 0; !queue.empty() && visited < maximumFocusSearch && !c.broken(); ++visited) {
        GObjectPtr<AtspiAccessible> node = std::move(queue.front());
        queue.pop_front();
        GObjectPtr<AtspiStateSet> states = stateSet(c, node.get());
        if (!states || (node.get() != root && !isShown(c, states.get())))
            continue;
        if (const std::optional<QString> selected = AtspiElement::selectionOf(c, node.get());
            selected && !selected->isEmpty())
            return node;
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
// that knows the application's toolkit.
std::optional<ApplicationConversation> talkTo(const std::optional<x11::ClientWindow>& client,
                                              const std::shared_ptr<UnresponsiveApplications>& unresponsive,
                                              const std::shared_ptr<AccessibilityNotes>& notes,
                                              ApplicationMemory& memory)
{
    auto note = [&](const QString& line) {
        if (notes)
            notes->steps.append(line);
    };
    if (!client) {
        note(QStringLiteral("no window there"));
        return std::nullopt;
    }
    if (notes) {
        notes->pid = client->pid;
        notes->windowClass = client->windowClass;
    }
    note(QStringLiteral("X window 0x%1 “%2” (%3), process %4")
             .arg(client->window, 0, 16)
             .arg(client->title.left(60), client->windowClass,
                  client->pid ? QString::number(*client->pid) : QStringLiteral("not named")));
    // Asking ourselves would wait on our own, busy, main thread.
    if (!client->pid || *client->pid == qint64(::getpid()))
        return std::nullopt;
    if (unresponsive->contains(*client->pid)) {
        if (notes)
            notes->unresponsive = true;
        note(QStringLiteral("the application did not answer recently and is left alone for now"));
        return std::nullopt;
    }
    GObjectPtr<AtspiAccessible> application = applicationOf(*client->pid);
    if (!application) {
        note(QStringLiteral("the process is not on the accessibility bus"));
        return std::nullopt;
    }
    auto conversation = std::make_shared<Conversation>(*client->pid, unresponsive, notes);
    const QByteArray busName = busNameOf(application.get());
    if (const std::optional<Toolkit> known = memory.toolkit(busName); known && !busName.isEmpty()) {
        conversation->setToolkit(*known);
        if (notes)
            notes->toolkit = QStringLiteral("%1 %2").arg(known->name).arg(known->major);
    } else {
        const Toolkit toolkit = toolkitOf(*conversation, application.get());
        conversation->setToolkit(toolkit);
        if (!conversation->broken() && !toolkit.name.isEmpty())
            memory.rememberToolkit(busName, toolkit);
    }
    if (notes) {
        notes->onBus = true;
        notes->placesPoints = conversation->toolkit().placesPoints();
        notes->application = describe(*conversation, application.get());
        note(QStringLiteral("application on the bus: %1, toolkit %2").arg(notes->application, notes->toolkit));
    }
    return ApplicationConversation{std::move(application), std::move(conversation)};
}

} // namespace

AtspiAccessibilityService::AtspiAccessibilityService()
    : m_unresponsive(std::make_shared<UnresponsiveApplications>())
    , m_memory(std::make_unique<ApplicationMemory>())
{
    // The default timeout is 25 s; a frozen application must not freeze Tolvane with it.
    atspi_set_timeout(callTimeoutMs, 0);
    const int status = atspi_init();
    m_connected = status == 0 || status == 1;
    if (!m_connected)
        qCWarning(lcAccessibility) << "Could not reach the accessibility bus; text under the pointer cannot be read";
}

AtspiAccessibilityService::~AtspiAccessibilityService() = default;

AccessibilityNotes AtspiAccessibilityService::lastNotes() const
{
    return m_notes ? *m_notes : AccessibilityNotes{};
}

AccessibleElementPtr AtspiAccessibilityService::elementAtPoint(QPointF screenPoint)
{
    if (m_keepNotes)
        m_notes = std::make_shared<AccessibilityNotes>();
    if (!m_connected)
        return nullptr;
    return elementAtDevice(toDevicePixels(screenPoint));
}

AccessibleElementPtr AtspiAccessibilityService::elementAtDevice(QPoint device)
{
    const std::optional<x11::ClientWindow> client = x11::clientWindowAt(device.x(), device.y());
    std::optional<ApplicationConversation> talk =
        talkTo(client, m_unresponsive, m_keepNotes ? m_notes : nullptr, *m_memory);
    if (!talk)
        return nullptr;
    std::shared_ptr<Conversation>& conversation = talk->conversation;
    Conversation& c = *conversation;
    // GTK 4 windows are found afresh every time: where its coordinates start moves with the
    // window's decorations (they go when it is maximised).
    double knownScale = 1.0;
    const QByteArray busName = busNameOf(talk->application.get());
    AtspiAccessible* known =
        c.toolkit().speaksWindowCoordinates() ? nullptr : m_memory->window(client->window, busName, &knownScale);
    GObjectPtr<AtspiAccessible> start;
    if (known) {
        c.setFrame(QPoint(), knownScale);
        start = ref(known);
        c.note(QStringLiteral("window, known from before: %1").arg(describe(c, known)));
    } else {
        WindowAtPoint window = windowAt(c, talk->application.get(), device, client);
        if (!window.window || c.broken()) {
            c.note(QStringLiteral("none of the application's windows is at the point"));
            return nullptr;
        }
        m_memory->rememberWindow(client->window, busName, window.window.get(), window.scale);
        start = std::move(window.window);
    }
    GObjectPtr<AtspiAccessible> element = deepestAt(c, std::move(start), c.toApplication(device));
    if (!element || c.broken()) {
        // A window that has gone (or never answered) is looked for again next time.
        m_memory->forgetWindow(client->window);
        return nullptr;
    }
    const AtspiRole role = roleOf(c, element.get());
    if (!textInterface(c, element.get()) && isContainer(role)) {
        c.note(QStringLiteral("%1 holds no text").arg(describe(c, element.get())));
        if (known)
            m_memory->forgetWindow(client->window);
        return nullptr;
    }
    auto found = std::make_shared<AtspiElement>(std::move(element), std::move(conversation));
    // A window's own text is its title, or object characters for what it holds: unless they lead
    // to a character under the point (Firefox before it has built its tree), the point is on no
    // text the window can give (Chromium without its accessibility switched on).
    if (role == ATSPI_ROLE_FRAME || role == ATSPI_ROLE_WINDOW) {
        const Result<std::optional<TextRange>> range = found->rangeAt(c.toApplication(device));
        if (!range || !range.value()) {
            c.note(QStringLiteral("the window itself has no text at the point"));
            return nullptr;
        }
    }
    return found;
}

AccessibleElementPtr AtspiAccessibilityService::focusedElement()
{
    if (m_keepNotes)
        m_notes = std::make_shared<AccessibilityNotes>();
    if (!m_connected)
        return nullptr;
    const std::optional<x11::ClientWindow> client = x11::activeClientWindow();
    // An application that did not answer in time here is asked nothing more for this selection:
    // one wait is all a frozen (or still waking) application may cost.
    bool focusedApplicationSilent = false;
    if (std::optional<ApplicationConversation> talk =
            talkTo(client, m_unresponsive, m_keepNotes ? m_notes : nullptr, *m_memory)) {
        std::shared_ptr<Conversation>& conversation = talk->conversation;
        Conversation& c = *conversation;
        const auto silence = qScopeGuard([&] { focusedApplicationSilent = c.broken(); });
        AtspiAccessible* application = talk->application.get();
        GObjectPtr<AtspiAccessible> active;
        const int count = childCount(c, application);
        for (int i = 0; i < count && !c.broken() && !active; ++i) {
            GObjectPtr<AtspiAccessible> window = childAt(c, application, i);
            if (window && hasState(c, window.get(), ATSPI_STATE_ACTIVE))
                active = std::move(window);
        }
        if (active) {
            GObjectPtr<AtspiAccessible> focused = focusedWithin(c, active.get());
            if (focused && textInterface(c, focused.get())) {
                c.note(QStringLiteral("focused text: %1").arg(describe(c, focused.get())));
                // A browser's focused document selects nothing itself; the paragraph inside it
                // holds the selection. Only what is inside the focused object counts.
                if (const std::optional<QString> own = AtspiElement::selectionOf(c, focused.get());
                    own && own->isEmpty() && childCount(c, focused.get()) > 0) {
                    if (GObjectPtr<AtspiAccessible> inside = textWithSelectionBelow(c, focused.get())) {
                        c.note(
                            QStringLiteral("inside it, text holding a selection: %1").arg(describe(c, inside.get())));
                        return std::make_shared<AtspiElement>(std::move(inside), conversation);
                    }
                }
                return std::make_shared<AtspiElement>(std::move(focused), conversation);
            }
            if (focused)
                c.note(QStringLiteral("focused, without text: %1").arg(describe(c, focused.get())));
            else
                c.note(QStringLiteral("no focused object in the active window"));
            // Qt focuses a tab, LibreOffice a panel: the selected text is below them, or
            // elsewhere in the window.
            GObjectPtr<AtspiAccessible> selected;
            if (focused)
                selected = textWithSelectionBelow(c, focused.get());
            if (!selected)
                selected = textWithSelectionBelow(c, active.get());
            if (selected) {
                c.note(QStringLiteral("text holding a selection: %1").arg(describe(c, selected.get())));
                return std::make_shared<AtspiElement>(std::move(selected), conversation);
            }
        }
    }
    std::shared_ptr<AccessibilityNotes> notes = m_notes;
    if (focusedApplicationSilent) {
        if (notes)
            notes->steps.append(QStringLiteral("the focused application did not answer: no selection"));
        return nullptr;
    }
    if (const std::optional<QPoint> pointer = x11::pointerPosition()) {
        if (AccessibleElementPtr under = elementAtDevice(*pointer)) {
            if (const std::optional<QString> selected = under->selectedText(); selected && !selected->isEmpty()) {
                if (notes)
                    notes->steps.append(QStringLiteral("the text under the pointer holds a selection"));
                return under;
            }
        }
    }
    // A frozen application cannot hand its selection over either; asking would only add its wait.
    if (client && !(client->pid && m_unresponsive->contains(*client->pid))) {
        if (std::optional<QString> primary = x11::primarySelectionOwnedBy(client->window, primarySelectionTimeoutMs);
            primary && !primary->isEmpty()) {
            if (notes)
                notes->steps.append(QStringLiteral("the focused application owns the primary selection"));
            return std::make_shared<PrimarySelectionElement>(std::move(*primary));
        }
    }
    if (notes)
        notes->steps.append(QStringLiteral("no selection found"));
    return nullptr;
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
