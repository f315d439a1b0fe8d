// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <memory>

class QMenu;
class QSystemTrayIcon;

namespace tolvane {

// Tolvane's presence on the desktop: an icon in the tray and its menu.
class TrayMenu final : public QObject
{
    Q_OBJECT
public:
    explicit TrayMenu(QObject* parent = nullptr);
    ~TrayMenu() override;

    void show();
    QMenu* menu() const { return m_menu.get(); }
    QSystemTrayIcon* icon() const { return m_icon; }

Q_SIGNALS:
    void quitRequested();

private:
    std::unique_ptr<QMenu> m_menu;
    QSystemTrayIcon* m_icon = nullptr;
};

} // namespace tolvane
