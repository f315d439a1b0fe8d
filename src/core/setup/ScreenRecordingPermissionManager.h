// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/setup/PermissionPoll.h"
#include "core/support/Scheduler.h"
#include "platform/ScreenTextRecognizer.h"

#include <QObject>
#include <QString>

namespace tolvane {

// Keeps whether Tolvane may capture the strip of screen the OCR fallback reads, polling while it
// lives. Main thread only.
class ScreenRecordingPermissionManager final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isGranted READ isGranted NOTIFY isGrantedChanged)
    Q_PROPERTY(QString settingsMessage READ settingsMessage NOTIFY settingsMessageChanged)
public:
    static constexpr Duration pollPeriod{1500};

    ScreenRecordingPermissionManager(ScreenTextRecognizer& recognizer, Scheduler& scheduler, QObject* parent = nullptr);
    ~ScreenRecordingPermissionManager() override;

    bool isGranted() const { return m_poll.value(); }
    // Set when there is no settings window to open: why, and what the user can do instead.
    QString settingsMessage() const { return m_poll.settingsMessage(); }

    void refresh();
    // Asks for access, refreshes, and opens the settings whatever the answer was.
    void requestAccess();
    void openSystemSettings();

Q_SIGNALS:
    void isGrantedChanged(bool isGranted);
    void settingsMessageChanged(const QString& message);

private:
    ScreenTextRecognizer& m_recognizer;
    PermissionPoll m_poll;
};

} // namespace tolvane
