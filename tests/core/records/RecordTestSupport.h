// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QFile>
#include <QStringList>
#include <QtGlobal>

#include <cstring>

namespace tolvane {

inline QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

// Collects the lines of named components as "[Component] message", the form they take on stderr,
// for as long as it lives.
class LogCapture final
{
public:
    LogCapture()
    {
        s_lines.clear();
        m_previous = qInstallMessageHandler(&LogCapture::handle);
    }
    ~LogCapture() { qInstallMessageHandler(m_previous); }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    static const QStringList& lines() { return s_lines; }

private:
    static void handle(QtMsgType, const QMessageLogContext& context, const QString& message)
    {
        if (context.category && std::strcmp(context.category, "default") != 0 &&
            std::strncmp(context.category, "qt.", 3) != 0)
            s_lines.append(QStringLiteral("[%1] %2").arg(QLatin1String(context.category), message));
    }

    static inline QStringList s_lines;
    QtMessageHandler m_previous;
};

} // namespace tolvane
