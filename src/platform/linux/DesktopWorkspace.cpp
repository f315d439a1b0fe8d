// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/DesktopWorkspace.h"

#include "platform/linux/XcbSupport.h"

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace tolvane {

namespace {

// A desktop has a few hundred entries; more means something odd, and the scan must stay short.
constexpr int mostEntries = 4000;
constexpr qint64 largestEntryBytes = 256 * 1024;

struct WindowFacts
{
    std::optional<qint64> pid;
    QString instance;
    QString windowClass;
};

std::optional<WindowFacts> activeWindowFacts()
{
    xcb_connection_t* c = x11::connection();
    if (!c)
        return std::nullopt;
    const auto active =
        x11::cardinalProperty(c, x11::rootWindow(c), x11::atom(c, "_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW);
    if (!active || *active == XCB_WINDOW_NONE)
        return std::nullopt;
    WindowFacts facts;
    const xcb_atom_t pidAtom = x11::atom(c, "_NET_WM_PID");
    facts.pid = x11::searchTree(c, *active, 2, [&](xcb_window_t w) -> std::optional<qint64> {
        if (auto pid = x11::cardinalProperty(c, w, pidAtom, XCB_ATOM_CARDINAL))
            return qint64(*pid);
        return std::nullopt;
    });
    const auto windowClass = x11::searchTree(c, *active, 2, [&](xcb_window_t w) -> std::optional<QByteArray> {
        x11::Reply<xcb_get_property_reply_t> reply(
            xcb_get_property_reply(c, xcb_get_property(c, 0, w, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, 256), nullptr));
        if (!reply || xcb_get_property_value_length(reply.get()) <= 0)
            return std::nullopt;
        return QByteArray(static_cast<const char*>(xcb_get_property_value(reply.get())),
                          xcb_get_property_value_length(reply.get()));
    });
    if (windowClass) {
        // Two NUL-terminated strings: the instance, then the class.
        const QList<QByteArray> parts = windowClass->split('\0');
        facts.instance = QString::fromUtf8(parts.value(0));
        facts.windowClass = QString::fromUtf8(parts.value(1));
    }
    return facts;
}

QString programName(const QString& command)
{
    // Exec=env VAR=1 program %U, Exec="/usr/bin/program" --flag
    const QStringList words = command.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (QString word : words) {
        word.remove(QLatin1Char('"'));
        if (word == QLatin1String("env") || word.contains(QLatin1Char('=')))
            continue;
        return QFileInfo(word).fileName();
    }
    return {};
}

} // namespace

bool DesktopWorkspace::openUrl(const QUrl& url)
{
    return QDesktopServices::openUrl(url);
}

std::optional<DesktopWorkspace::DesktopEntry> DesktopWorkspace::parseDesktopEntry(const QString& id,
                                                                                  const QByteArray& contents)
{
    DesktopEntry entry;
    entry.id = id;
    bool inMainGroup = false;
    bool hidden = false;
    bool application = true;
    for (const QByteArray& rawLine : contents.split('\n')) {
        const QByteArray line = rawLine.trimmed();
        if (line.startsWith('[')) {
            inMainGroup = line == "[Desktop Entry]";
            continue;
        }
        if (!inMainGroup)
            continue;
        const qsizetype equals = line.indexOf('=');
        if (equals <= 0)
            continue;
        const QByteArray key = line.left(equals).trimmed();
        const QString value = QString::fromUtf8(line.mid(equals + 1)).trimmed();
        if (key == "Name")
            entry.name = value;
        else if (key == "Exec")
            entry.executable = programName(value);
        else if (key == "StartupWMClass")
            entry.startupWMClass = value;
        else if (key == "Hidden")
            hidden = value == QLatin1String("true");
        else if (key == "Type")
            application = value == QLatin1String("Application");
    }
    if (hidden || !application || entry.name.isEmpty())
        return std::nullopt;
    return entry;
}

QString DesktopWorkspace::applicationName(const Application& application, const QList<DesktopEntry>& entries)
{
    const auto same = [](const QString& a, const QString& b) {
        return !a.isEmpty() && a.compare(b, Qt::CaseInsensitive) == 0;
    };
    // The window class the application announced is the surest link to its entry.
    for (const DesktopEntry& entry : entries) {
        if (same(entry.startupWMClass, application.windowClass) ||
            same(entry.startupWMClass, application.windowInstance))
            return entry.name;
    }
    for (const DesktopEntry& entry : entries) {
        if (same(entry.executable, application.executable) || same(entry.executable, application.commandName))
            return entry.name;
    }
    for (const DesktopEntry& entry : entries) {
        if (same(entry.id, application.windowClass) || same(entry.id, application.windowInstance) ||
            same(entry.id.section(QLatin1Char('.'), -1), application.windowInstance))
            return entry.name;
    }
    if (!application.windowClass.isEmpty())
        return application.windowClass;
    return application.commandName;
}

const QList<DesktopWorkspace::DesktopEntry>& DesktopWorkspace::desktopEntries() const
{
    if (m_entries)
        return *m_entries;
    m_entries.emplace();
    QSet<QString> seen;
    int scanned = 0;
    // Earlier directories win, as the desktop's own menus do.
    for (const QString& directory : QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation)) {
        QDir dir(directory);
        const QFileInfoList files = dir.entryInfoList({QStringLiteral("*.desktop")}, QDir::Files);
        for (const QFileInfo& file : files) {
            if (++scanned > mostEntries)
                return *m_entries;
            const QString id = file.completeBaseName();
            if (seen.contains(id) || file.size() > largestEntryBytes)
                continue;
            seen.insert(id);
            QFile f(file.filePath());
            if (!f.open(QIODevice::ReadOnly))
                continue;
            if (auto entry = parseDesktopEntry(id, f.readAll()))
                m_entries->append(*entry);
        }
    }
    return *m_entries;
}

QString DesktopWorkspace::frontmostApplicationName() const
{
    const std::optional<WindowFacts> facts = activeWindowFacts();
    if (!facts)
        return {};
    Application application;
    application.windowInstance = facts->instance;
    application.windowClass = facts->windowClass;
    const QString cacheKey = QString::number(facts->pid.value_or(0)) + QLatin1Char('/') + facts->windowClass;
    if (facts->pid) {
        if (auto known = m_namesByProcess.constFind(cacheKey); known != m_namesByProcess.cend())
            return *known;
        application.executable =
            QFileInfo(QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(*facts->pid))).fileName();
        QFile comm(QStringLiteral("/proc/%1/comm").arg(*facts->pid));
        if (comm.open(QIODevice::ReadOnly))
            application.commandName = QString::fromUtf8(comm.readAll()).trimmed();
    }
    const QString name = applicationName(application, desktopEntries());
    // A process number is reused only by another process, which the window class tells apart.
    if (facts->pid && !name.isEmpty())
        m_namesByProcess.insert(cacheKey, name);
    return name;
}

} // namespace tolvane
