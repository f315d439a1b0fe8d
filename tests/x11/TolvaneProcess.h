// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The real tolvane binary on a profile of its own, as the walk-throughs start it: its own
// configuration and data folders, its own single-instance name, the desktop services and the
// accessibility bus switched on (x11/x11.cmake defines TOLVANE_EXECUTABLE for the tests that start
// it). And the desktop tools the x11 tests ask about windows and focus.

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

namespace tolvane::testing {

class TolvaneProcess final
{
public:
    explicit TolvaneProcess(const QString& testName)
    {
        m_environment.insert(QStringLiteral("XDG_CONFIG_HOME"), configHome());
        m_environment.insert(QStringLiteral("XDG_DATA_HOME"), m_profile.filePath(QStringLiteral("data")));
        m_environment.insert(
            QStringLiteral("TOLVANE_INSTANCE_NAME"),
            QStringLiteral("tolvane-%1-test-%2").arg(testName).arg(QCoreApplication::applicationPid()));
        m_environment.insert(QStringLiteral("QT_ACCESSIBILITY"), QStringLiteral("1"));
        m_environment.insert(QStringLiteral("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"), QStringLiteral("1"));
        m_environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        m_environment.remove(QStringLiteral("TOLVANE_PLATFORM"));
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    }
    ~TolvaneProcess() { stop(); }
    TolvaneProcess(const TolvaneProcess&) = delete;
    TolvaneProcess& operator=(const TolvaneProcess&) = delete;

    QProcessEnvironment& environment() { return m_environment; }
    QProcess& process() { return m_process; }
    QString path(const QString& relative) const { return m_profile.filePath(relative); }
    QString configHome() const { return m_profile.filePath(QStringLiteral("config")); }
    QString recordsDirectory() const { return m_profile.filePath(QStringLiteral("data/Tolvane")); }

    // A file of the profile, written before the start: "config/Tolvane/preferences.json", …
    bool write(const QString& relative, const QByteArray& content) const
    {
        const QString file = path(relative);
        QFile out(file);
        return QDir().mkpath(QFileInfo(file).path()) && out.open(QIODevice::WriteOnly) &&
               out.write(content) == content.size();
    }
    // A finished guide, so that no guide window opens at start and takes the keys and the focus.
    bool skipGuide(const QByteArray& morePreferences = {}) const
    {
        return write(QStringLiteral("config/Tolvane/preferences.json"),
                     "{\"onboardingComplete\": true" + morePreferences + '}');
    }
    QJsonObject preferences() const
    {
        QFile file(path(QStringLiteral("config/Tolvane/preferences.json")));
        return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
    }

#ifdef TOLVANE_EXECUTABLE
    bool start()
    {
        m_process.setProcessEnvironment(m_environment);
        m_process.start(QStringLiteral(TOLVANE_EXECUTABLE), {});
        return m_process.waitForStarted();
    }
    // `tolvane arguments…` on the same profile: whether it exited 0, with what it printed.
    bool command(const QStringList& arguments, QByteArray* output = nullptr, QByteArray* errors = nullptr) const
    {
        QProcess command;
        command.setProcessEnvironment(m_environment);
        command.start(QStringLiteral(TOLVANE_EXECUTABLE), arguments);
        const bool done =
            command.waitForFinished(10000) && command.exitStatus() == QProcess::NormalExit && command.exitCode() == 0;
        if (output)
            *output = command.readAllStandardOutput();
        if (errors)
            *errors = command.readAllStandardError();
        return done;
    }
    // The same, retried while the started Tolvane is not listening yet.
    bool commandOnceListening(const QStringList& arguments) const
    {
        return QTest::qWaitFor([&] { return command(arguments); }, 15000);
    }
#endif
    bool stop()
    {
        if (m_process.state() == QProcess::NotRunning)
            return true;
        m_process.terminate();
        if (m_process.waitForFinished(10000))
            return true;
        m_process.kill();
        m_process.waitForFinished();
        return false;
    }

private:
    QTemporaryDir m_profile;
    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
    QProcess m_process;
};

// The output of a desktop tool such as xdotool, trimmed.
inline QString runTool(const QString& program, const QStringList& arguments)
{
    QProcess tool;
    tool.start(program, arguments);
    tool.waitForFinished(10000);
    return QString::fromUtf8(tool.readAllStandardOutput()).trimmed();
}

// The window holding the X input focus.
inline QString focusedWindow()
{
    return runTool(QStringLiteral("xdotool"), {QStringLiteral("getwindowfocus")});
}

inline QString activeWindowName()
{
    return runTool(QStringLiteral("xdotool"), {QStringLiteral("getactivewindow"), QStringLiteral("getwindowname")});
}

inline bool windowShown(const QString& title)
{
    return !runTool(QStringLiteral("xdotool"), {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                                QStringLiteral("--name"), QLatin1Char('^') + title + QLatin1Char('$')})
                .isEmpty();
}

// Why a walk-through cannot run here, or nothing.
inline const char* missingDesktop(const QStringList& tools = {QStringLiteral("xdotool")})
{
    if (qEnvironmentVariableIsEmpty("DISPLAY") || qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS"))
        return "No desktop: run inside scripts/virtual-desktop";
    for (const QString& tool : tools) {
        if (QStandardPaths::findExecutable(tool).isEmpty())
            return "A desktop tool (xdotool, xmessage) is missing: run scripts/setup";
    }
    return nullptr;
}

} // namespace tolvane::testing
