// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QWidget>

#include <functional>

class QLabel;
class QPushButton;

namespace tolvane {

class PermissionManager;
class StatusBadge;

// A permission and its state: "Accessibility granted", or "… not granted" with the buttons
// "Request Access" and "Open Settings", and what to do instead when the desktop has no settings
// window to open. Follows its monitor, so a change made elsewhere shows within a poll.
class PermissionRow final : public QWidget
{
    Q_OBJECT
public:
    PermissionRow(const QString& name, PermissionManager& manager, QWidget* parent = nullptr);

    bool isGranted() const { return m_granted; }

protected:
    void changeEvent(QEvent* event) override;

private:
    void setGranted(bool granted);
    void setSettingsMessage(const QString& message);
    void styleLink();

    bool m_granted = false;
    StatusBadge* m_badge = nullptr;
    QPushButton* m_request = nullptr;
    QPushButton* m_openSettings = nullptr;
    QLabel* m_message = nullptr; // Qt::PlainText (plainLabel)
};

} // namespace tolvane
