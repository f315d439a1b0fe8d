// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/TrayMenu.h"

#include "ui/AppIcon.h"

#include <QAction>
#include <QCursor>
#include <QKeySequence>
#include <QMenu>
#include <QSystemTrayIcon>

namespace tolvane {

namespace {
const QString titleText = QStringLiteral("Tolvane");
const QString quitText = QStringLiteral("Quit");
} // namespace

TrayMenu::TrayMenu(QObject* parent)
    : QObject(parent)
    , m_menu(std::make_unique<QMenu>())
    , m_icon(new QSystemTrayIcon(appIcon(), this))
{
    m_icon->setToolTip(titleText);
    m_menu->setTitle(titleText);

    QAction* quit = m_menu->addAction(quitText);
    quit->setShortcut(QKeySequence::Quit);
    quit->setShortcutVisibleInContextMenu(true);
    connect(quit, &QAction::triggered, this, &TrayMenu::quitRequested);

    m_icon->setContextMenu(m_menu.get());
    // A left click opens the menu too: the tray icon has nothing else to do.
    connect(m_icon, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger)
            m_menu->popup(QCursor::pos());
    });
}

TrayMenu::~TrayMenu() = default;

void TrayMenu::show()
{
    m_icon->show();
}

} // namespace tolvane
