// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/setup/PermissionRow.h"

#include "core/setup/PermissionManager.h"
#include "ui/components/PlainLabel.h"
#include "ui/components/StatusBadge.h"
#include "ui/setup/SetupTexts.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tolvane {

PermissionRow::PermissionRow(const QString& name, PermissionManager& manager, QWidget* parent)
    : QWidget(parent)
    , m_badge(new StatusBadge(SetupTexts::granted(name), SetupTexts::notGranted(name), this))
    , m_request(new QPushButton(SetupTexts::requestAccess(), this))
    , m_openSettings(new QPushButton(SetupTexts::openSettings(), this))
    , m_message(plainLabel(QString(), this)) // Qt::PlainText: the desktop's message is shown as it is
{
    setAccessibleName(name);
    m_request->setAccessibleName(SetupTexts::requestAccess() + QStringLiteral(" (") + name + u')');
    m_openSettings->setAccessibleName(SetupTexts::openSettings() + QStringLiteral(" (") + name + u')');
    // A link, not a second button of the same weight.
    m_openSettings->setFlat(true);
    m_openSettings->setCursor(Qt::PointingHandCursor);
    styleLink();
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

    connect(m_openSettings, &QPushButton::clicked, &manager, &PermissionManager::openSystemSettings);
    connect(m_request, &QPushButton::clicked, &manager, &PermissionManager::requestAccess);
    connect(&manager, &PermissionManager::isGrantedChanged, this, &PermissionRow::setGranted);
    connect(&manager, &PermissionManager::settingsMessageChanged, this, &PermissionRow::setSettingsMessage);
    setGranted(manager.isGranted());
    setSettingsMessage(manager.settingsMessage());
}

void PermissionRow::styleLink()
{
    // Set again on every palette change: a style sheet reads the palette once.
    m_openSettings->setStyleSheet(QStringLiteral("QPushButton { color: palette(link); border: none; padding: 2px; }"));
}

void PermissionRow::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange)
        styleLink();
    QWidget::changeEvent(event);
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

} // namespace tolvane
