// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/setup/PermissionRow.h"

#include "core/setup/AccessibilityPermissionManager.h"
#include "core/setup/ScreenRecordingPermissionManager.h"
#include "ui/components/StatusBadge.h"
#include "ui/setup/SetupTexts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tolvane {

PermissionRow::PermissionRow(const QString& name, QWidget* parent)
    : QWidget(parent)
    , m_badge(new StatusBadge(SetupTexts::granted(name), SetupTexts::notGranted(name), this))
    , m_request(new QPushButton(SetupTexts::requestAccess(), this))
    , m_openSettings(new QPushButton(SetupTexts::openSettings(), this))
    , m_message(new QLabel(this))
{
    setAccessibleName(name);
    m_request->setAccessibleName(SetupTexts::requestAccess() + QStringLiteral(" (") + name + u')');
    m_openSettings->setAccessibleName(SetupTexts::openSettings() + QStringLiteral(" (") + name + u')');
    // A link, not a second button of the same weight.
    m_openSettings->setFlat(true);
    m_openSettings->setCursor(Qt::PointingHandCursor);
    m_openSettings->setStyleSheet(QStringLiteral("QPushButton { color: palette(link); border: none; padding: 2px; }"));
    m_message->setTextFormat(Qt::PlainText);
    m_message->setWordWrap(true);
    m_message->setHidden(true);

    auto* row = new QHBoxLayout;
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_badge);
    row->addStretch(1);
    row->addWidget(m_request);
    row->addWidget(m_openSettings);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addLayout(row);
    column->addWidget(m_message);

    connect(m_request, &QPushButton::clicked, this, &PermissionRow::requestAccessClicked);
    connect(m_openSettings, &QPushButton::clicked, this, &PermissionRow::openSettingsClicked);
    setGranted(false);
}

void PermissionRow::setGranted(bool granted)
{
    m_granted = granted;
    m_badge->setOn(granted);
    m_request->setVisible(!granted);
    m_openSettings->setVisible(!granted);
    if (granted)
        m_message->setHidden(true);
}

void PermissionRow::setSettingsMessage(const QString& message)
{
    m_message->setText(message);
    m_message->setHidden(message.isEmpty() || m_granted);
}

PermissionRow* PermissionRow::forAccessibility(AccessibilityPermissionManager& manager, QWidget* parent)
{
    auto* row = new PermissionRow(SetupTexts::accessibilityName(), parent);
    row->setGranted(manager.isTrusted());
    connect(&manager, &AccessibilityPermissionManager::isTrustedChanged, row, &PermissionRow::setGranted);
    connect(&manager, &AccessibilityPermissionManager::settingsMessageChanged, row, &PermissionRow::setSettingsMessage);
    connect(row, &PermissionRow::requestAccessClicked, &manager, &AccessibilityPermissionManager::requestAccess);
    connect(row, &PermissionRow::openSettingsClicked, &manager, &AccessibilityPermissionManager::openSystemSettings);
    return row;
}

PermissionRow* PermissionRow::forScreenRecording(ScreenRecordingPermissionManager& manager, QWidget* parent)
{
    auto* row = new PermissionRow(SetupTexts::screenRecordingName(), parent);
    row->setGranted(manager.isGranted());
    connect(&manager, &ScreenRecordingPermissionManager::isGrantedChanged, row, &PermissionRow::setGranted);
    connect(&manager, &ScreenRecordingPermissionManager::settingsMessageChanged, row,
            &PermissionRow::setSettingsMessage);
    connect(row, &PermissionRow::requestAccessClicked, &manager, &ScreenRecordingPermissionManager::requestAccess);
    connect(row, &PermissionRow::openSettingsClicked, &manager, &ScreenRecordingPermissionManager::openSystemSettings);
    return row;
}

} // namespace tolvane
