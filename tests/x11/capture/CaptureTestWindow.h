// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/ScreenCoordinates.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QHash>
#include <QPoint>
#include <QProcess>
#include <QScreen>
#include <QStandardPaths>

#include <csignal>

namespace tolvane::testing {

// One of the test applications, started for a test and stopped with it. It reports where its
// characters are on the screen in root-window pixels.
class CaptureTestWindow
{
public:
    CaptureTestWindow() = default;
    CaptureTestWindow(const CaptureTestWindow&) = delete;
    CaptureTestWindow& operator=(const CaptureTestWindow&) = delete;
    ~CaptureTestWindow() { stop(); }

    bool start(const QString& program, const QStringList& arguments, const QProcessEnvironment& extra = {})
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(extra);
        m_process.setProcessEnvironment(environment);
        m_process.setProgram(program);
        m_process.setArguments(arguments);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start();
        if (!m_process.waitForStarted(5000))
            return false;
        QElapsedTimer waited;
        waited.start();
        while (waited.elapsed() < 20000) {
            if (!m_process.canReadLine() && !m_process.waitForReadyRead(200))
                continue;
            while (m_process.canReadLine()) {
                const QString line = QString::fromUtf8(m_process.readLine()).trimmed();
                if (line == QLatin1String("ready"))
                    return true;
                const QStringList parts = line.split(QLatin1Char(' '));
                if (parts.size() == 3)
                    m_points.insert(parts[0], QPoint(parts[1].toInt(), parts[2].toInt()));
            }
        }
        return false;
    }

    QPoint point(const QString& name) const { return m_points.value(name); }
    qint64 pid() const { return m_process.processId(); }
    void freeze()
    {
        ::kill(pid_t(pid()), SIGSTOP);
        m_frozen = true;
    }
    void thaw()
    {
        if (m_frozen)
            ::kill(pid_t(pid()), SIGCONT);
        m_frozen = false;
    }
    void stop()
    {
        if (m_process.state() == QProcess::NotRunning)
            return;
        thaw();
        m_process.kill();
        m_process.waitForFinished(3000);
    }

private:
    QProcess m_process;
    QHash<QString, QPoint> m_points;
    bool m_frozen = false;
};

inline bool haveXdotool()
{
    return !QStandardPaths::findExecutable(QStringLiteral("xdotool")).isEmpty();
}

// Moves the pointer to a root-window pixel and returns it as Tolvane's logic sees it.
inline QPointF movePointerTo(QPoint device)
{
    QProcess::execute(QStringLiteral("xdotool"),
                      {QStringLiteral("mousemove"), QString::number(device.x()), QString::number(device.y())});
    const double scale = QGuiApplication::primaryScreen()->devicePixelRatio();
    return screen::fromQt(QPointF(device) / scale);
}

} // namespace tolvane::testing
