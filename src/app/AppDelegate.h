// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <memory>

namespace tolvane {

class AppearanceApplier;
class Preferences;
class Scheduler;
class TrayMenu;
struct PlatformServices;

// The start-up sequence, the wiring between components and the routing of answers from the
// desktop. It owns no logic of its own beyond the order of these steps.
class AppDelegate final : public QObject
{
    Q_OBJECT
public:
    AppDelegate(PlatformServices& services, Preferences& preferences, Scheduler& scheduler, QObject* parent = nullptr);
    ~AppDelegate() override;

    void applicationDidFinishLaunching();
    void applicationWillTerminate();

    TrayMenu* trayMenu() const { return m_trayMenu.get(); }

private:
    void showTrayWhenAvailable();

    PlatformServices& m_services;
    Preferences& m_preferences;
    Scheduler& m_scheduler;
    std::unique_ptr<AppearanceApplier> m_appearance;
    std::unique_ptr<TrayMenu> m_trayMenu;
};

} // namespace tolvane
