// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/UpdateWiring.h"

#include "app/InstanceCommands.h"
#include "core/setup/Preferences.h"
#include "core/support/Logging.h"
#include "core/support/Scheduler.h"
#include "core/updates/UpdaterManager.h"
#include "platform/PlatformServices.h"
#include "ui/TrayMenu.h"
#include "ui/components/WindowActivation.h"
#include "ui/updates/UpdateWindow.h"

TOLVANE_DEFINE_LOG(lcUpdateWiring, "UpdateWiring")

namespace tolvane {

UpdateWiring::UpdateWiring(PlatformServices& services, Preferences& preferences, const Clock& clock,
                           Scheduler& scheduler, InstanceCommands& commands, TrayMenu& tray, QString executablePath,
                           QObject* parent)
    : QObject(parent)
    , m_services(services)
    , m_preferences(preferences)
    , m_clock(clock)
    , m_packageManaged(isPackageManagedExecutable(executablePath))
{
    if (!m_services.updates->canCheckForUpdates()) {
        qCInfo(lcUpdateWiring) << "This build has no update feed; \"Check for Updates…\" is not offered";
        return;
    }
    commands.addWindow(QStringLiteral("updates"), [this] { checkForUpdates(); });
    tray.setCheckForUpdates([this] { checkForUpdates(); });

    // The daily check exists only for those who switched it on; nobody else is ever contacted
    // without asking.
    if (m_preferences.boolForKey(PreferenceKey::automaticallyCheckForUpdates)) {
        QPointer<UpdateWiring> self(this);
        scheduler.post([self] {
            if (self)
                self->sharedUpdater().checkInBackgroundIfDue();
        });
    }
}

UpdateWiring::~UpdateWiring()
{
    delete m_window.data();
}

UpdateWindow* UpdateWiring::window() const
{
    return m_window.data();
}

UpdaterManager& UpdateWiring::sharedUpdater()
{
    if (!m_updater) {
        m_updater = std::make_unique<UpdaterManager>(*m_services.updates, m_preferences, m_clock,
                                                     QStringLiteral(TOLVANE_VERSION));
        connect(m_updater.get(), &UpdaterManager::stateChanged, this, &UpdateWiring::showState);
    }
    return *m_updater;
}

void UpdateWiring::checkForUpdates()
{
    UpdaterManager& updater = sharedUpdater();
    updater.checkForUpdates();
    // Asked again while a check runs: the window it already has comes to the front.
    if (m_window && m_window->isVisible())
        bringToFront(m_window);
}

void UpdateWiring::showState()
{
    const UpdateCheckState& state = m_updater->state();
    if (state.phase == UpdateCheckState::Phase::idle) {
        if (m_window)
            m_window->hide();
        return;
    }
    // A background check stays out of sight until it has a release to announce.
    if (state.kind == UpdateCheckKind::background && state.phase != UpdateCheckState::Phase::updateAvailable)
        return;
    if (!m_window) {
        m_window = new UpdateWindow(m_updater->currentVersion(), m_packageManaged);
        UpdaterManager* updater = m_updater.get();
        connect(m_window, &UpdateWindow::cancelRequested, updater, &UpdaterManager::cancel);
        connect(m_window, &UpdateWindow::dismissed, updater, &UpdaterManager::dismiss);
        connect(m_window, &UpdateWindow::skipRequested, updater, &UpdaterManager::skipThisVersion);
        connect(m_window, &UpdateWindow::remindLaterRequested, updater, &UpdaterManager::remindMeLater);
        connect(m_window, &UpdateWindow::downloadRequested, this, [this] {
            // The download page only: nothing here replaces the program on disk.
            if (const auto& release = m_updater->state().release) {
                if (!m_services.workspace->openUrl(release->downloadPage))
                    qCWarning(lcUpdateWiring).noquote() << "Could not open" << release->downloadPage.toString();
            }
            m_updater->dismiss();
        });
    }
    m_window->showState(state);
    bringToFront(m_window);
}

} // namespace tolvane
