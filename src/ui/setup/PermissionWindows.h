// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace tolvane {

class AccessibilityPermissionManager;
class ScreenRecordingPermissionManager;
class StatusBadge;

// Why Tolvane needs the accessibility bus, whether it has it, and the buttons to switch it on or
// open the desktop's accessibility settings. Follows its monitor while open.
class AccessibilityPermissionWindow final : public QWidget
{
    Q_OBJECT
public:
    explicit AccessibilityPermissionWindow(AccessibilityPermissionManager& manager, QWidget* parent = nullptr);

private:
    StatusBadge* m_status = nullptr;
};

// Why the OCR fallback captures a strip of the screen, and whether it may. On X11 it always may,
// and the window says so.
class ScreenRecordingPermissionWindow final : public QWidget
{
    Q_OBJECT
public:
    explicit ScreenRecordingPermissionWindow(ScreenRecordingPermissionManager& manager, QWidget* parent = nullptr);

private:
    void setGranted(bool granted);

    StatusBadge* m_status = nullptr;
    // Qt::PlainText, like every label of these windows (plainLabel, captionLabel).
    QLabel* m_alwaysGranted = nullptr;
    QLabel* m_restartCaption = nullptr;
};

} // namespace tolvane
