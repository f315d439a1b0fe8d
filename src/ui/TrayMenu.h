// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

#include <functional>
#include <memory>

class QAction;
class QActionGroup;
class QMenu;
class QSystemTrayIcon;

namespace tolvane {

class Preferences;

// What the menu can open. A window item appears only while hasWindow() says its window is wired
// (names as `tolvane open` takes them: "review", "stats", "guide", "settings"); the update check
// and the share item only while their action is set.
struct TrayMenuActions
{
    std::function<bool(const QString&)> hasWindow;
    std::function<void(const QString&)> openWindow;
    std::function<void()> checkForUpdates;
    std::function<void()> share;
};

// Tolvane's presence on the desktop: an icon in the tray and its menu, which switches look-ups
// on and off, chooses the learning language and opens every window. The menu reads the
// preferences each time it opens, so changes made anywhere else show there.
class TrayMenu final : public QObject
{
    Q_OBJECT
public:
    explicit TrayMenu(Preferences& preferences, QObject* parent = nullptr);
    ~TrayMenu() override;

    void setActions(TrayMenuActions actions);
    // The update check is wired on its own, after the windows.
    void setCheckForUpdates(std::function<void()> check);
    void show();
    QMenu* menu() const { return m_menu.get(); }
    QSystemTrayIcon* icon() const { return m_icon; }
    // Brings the items up to date with the preferences and the wired windows; runs each time the
    // menu opens.
    void refresh();

Q_SIGNALS:
    void quitRequested();

private:
    QAction* windowItem(const QString& text, const QString& window);
    bool hasWindow(const QString& name) const;
    void openWindow(const QString& name);

    Preferences& m_preferences;
    TrayMenuActions m_actions;
    std::unique_ptr<QMenu> m_menu;
    QSystemTrayIcon* m_icon = nullptr;
    QAction* m_enabled = nullptr;
    QMenu* m_languages = nullptr;
    QActionGroup* m_languageGroup = nullptr;
    QAction* m_review = nullptr;
    QAction* m_stats = nullptr;
    QAction* m_guide = nullptr;
    QAction* m_settings = nullptr;
    QAction* m_updatesSeparator = nullptr;
    QAction* m_updates = nullptr;
    QAction* m_share = nullptr;
};

} // namespace tolvane
