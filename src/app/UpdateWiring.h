// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

#include <memory>

namespace tolvane {

class Clock;
class InstanceCommands;
class Preferences;
class Scheduler;
class TrayMenu;
class UpdateWindow;
class UpdaterManager;
struct PlatformServices;

// "Check for Updates…" in the tray menu and `tolvane open updates`: the one UpdaterManager,
// created at the first check and kept, and the software update window that follows it. Offered
// only when this build knows its release feed.
class UpdateWiring final : public QObject
{
    Q_OBJECT
public:
    // executablePath: where this binary lives, which tells a packaged install from any other.
    UpdateWiring(PlatformServices& services, Preferences& preferences, const Clock& clock, Scheduler& scheduler,
                 InstanceCommands& commands, TrayMenu& tray, QString executablePath, QObject* parent = nullptr);
    ~UpdateWiring() override;

    // Runs a check the user asked for and shows its window.
    void checkForUpdates();

    // Nothing until the first check.
    UpdaterManager* updater() const { return m_updater.get(); }
    UpdateWindow* window() const;

private:
    UpdaterManager& sharedUpdater();
    void showState();

    PlatformServices& m_services;
    Preferences& m_preferences;
    const Clock& m_clock;
    bool m_packageManaged;
    std::unique_ptr<UpdaterManager> m_updater;
    QPointer<UpdateWindow> m_window;
};

} // namespace tolvane
