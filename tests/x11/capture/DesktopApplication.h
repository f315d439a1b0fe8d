// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/capture/TesseractScreenTextRecognizer.h"
#include "platform/linux/capture/X11ClientWindow.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRect>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>

#include <optional>

namespace tolvane::testing {

// The two lines every application is given to show.
inline const QString probeDocument = QStringLiteral(
    "The quick brown fox jumps over the lazy dog near the riverbank.\nLes enfants jouent dans le jardin.\n");

// An application people use, as installed on the machine, with its own way of being started.
struct ApplicationKind
{
    QString name;
    QString program;
    QStringList arguments; // "%f" stands for the document's path
    QString windowName;    // a part of its window's title once the document is open
    QProcessEnvironment environment = {};
};

// One of them, started on a two-line document for a test and stopped with it. Words are found on
// the screen by reading the window's picture, so no answer of the application's own is trusted.
class DesktopApplication
{
public:
    DesktopApplication() = default;
    DesktopApplication(const DesktopApplication&) = delete;
    DesktopApplication& operator=(const DesktopApplication&) = delete;
    ~DesktopApplication() { stop(); }

    static bool installed(const ApplicationKind& kind)
    {
        return !QStandardPaths::findExecutable(kind.program).isEmpty();
    }

    bool start(const ApplicationKind& kind, const QString& document = probeDocument)
    {
        m_path = m_folder.filePath(QStringLiteral("riverbank.txt"));
        QFile file(m_path);
        if (!file.open(QIODevice::WriteOnly) || file.write(document.toUtf8()) < 0)
            return false;
        file.close();
        QStringList arguments;
        for (const QString& argument : kind.arguments)
            arguments.append(argument == QLatin1String("%f") ? m_path : argument);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(kind.environment);
        environment.insert(QStringLiteral("HOME"), m_folder.path());
        m_process.setProcessEnvironment(environment);
        m_process.setProgram(QStandardPaths::findExecutable(kind.program));
        m_process.setArguments(arguments);
        m_process.setStandardOutputFile(QProcess::nullDevice());
        m_process.setStandardErrorFile(QProcess::nullDevice());
        m_process.start();
        if (!m_process.waitForStarted(5000))
            return false;
        QElapsedTimer waited;
        waited.start();
        while (waited.elapsed() < 30000 && m_process.state() == QProcess::Running) {
            if (findWindow(kind.windowName)) {
                // Let it finish drawing and register its text on the bus.
                QThread::msleep(1500);
                return activate();
            }
            QThread::msleep(250);
        }
        return false;
    }

    bool activate() const
    {
        return QProcess::execute(QStringLiteral("xdotool"),
                                 {QStringLiteral("windowactivate"), QStringLiteral("--sync"), m_window}) == 0;
    }

    // Where a word is drawn, in root-window pixels.
    std::optional<QPoint> locate(const QString& word)
    {
        return m_recognizer.locateWord(m_rect, word, {QStringLiteral("en-US"), QStringLiteral("fr-FR")});
    }

    qint64 pid() const { return m_process.processId(); }
    QRect rect() const { return m_rect; }
    QString window() const { return m_window; }

    void stop()
    {
        if (m_process.state() == QProcess::NotRunning)
            return;
        m_process.kill();
        m_process.waitForFinished(5000);
    }

private:
    bool findWindow(const QString& name)
    {
        QProcess search;
        search.start(QStringLiteral("xdotool"),
                     {QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"), name});
        search.waitForFinished(5000);
        const QStringList windows =
            QString::fromUtf8(search.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        if (windows.isEmpty())
            return false;
        m_window = windows.constLast();
        // The X server's own answer: xdotool counts the window manager's frame twice.
        const std::optional<x11::ClientWindow> client = x11::clientWindow(m_window.toUInt());
        m_rect = client ? client->rect : QRect();
        return !m_rect.isEmpty();
    }

    QTemporaryDir m_folder;
    QString m_path;
    QProcess m_process;
    QString m_window;
    QRect m_rect;
    TesseractScreenTextRecognizer m_recognizer;
};

// The light applications the tests use; scripts/reach adds the large ones.
inline QList<ApplicationKind> lightApplications()
{
    return {
        {QStringLiteral("Mousepad (GTK 3, tabs)"),
         QStringLiteral("mousepad"),
         {QStringLiteral("--disable-server"), QStringLiteral("%f")},
         QStringLiteral("riverbank.txt - Mousepad")},
        {QStringLiteral("Text Editor (GTK 4)"),
         QStringLiteral("gnome-text-editor"),
         {QStringLiteral("--standalone"), QStringLiteral("%f")},
         QStringLiteral("riverbank.txt")},
        {QStringLiteral("FeatherPad (Qt 5)"),
         QStringLiteral("featherpad"),
         {QStringLiteral("%f")},
         QStringLiteral("riverbank.txt")},
        {QStringLiteral("xterm"),
         QStringLiteral("xterm"),
         {QStringLiteral("-T"), QStringLiteral("riverbank.txt"), QStringLiteral("-fa"),
          QStringLiteral("DejaVu Sans Mono"), QStringLiteral("-fs"), QStringLiteral("12"), QStringLiteral("-hold"),
          QStringLiteral("-e"), QStringLiteral("cat"), QStringLiteral("%f")},
         QStringLiteral("riverbank.txt")},
    };
}

} // namespace tolvane::testing
