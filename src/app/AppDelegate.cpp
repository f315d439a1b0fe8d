// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/AppDelegate.h"

#include "core/setup/Preferences.h"
#include "core/support/Logging.h"
#include "core/support/Scheduler.h"
#include "platform/PlatformServices.h"
#include "ui/AppearanceApplier.h"
#include "ui/TrayMenu.h"

#include <QApplication>
#include <QPointer>
#include <QSystemTrayIcon>

TOLVANE_DEFINE_LOG(lcAppDelegate, "AppDelegate")

namespace tolvane {

AppDelegate::AppDelegate(PlatformServices& services, Preferences& preferences, Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_services(services)
    , m_preferences(preferences)
    , m_scheduler(scheduler)
{}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    // No taskbar entry and no main window: Tolvane lives in the tray, and closing its last
    // window must not end it.
    QApplication::setQuitOnLastWindowClosed(false);

    m_preferences.registerStartupDefaults();
    m_preferences.reportMistypedValues();

    m_appearance = std::make_unique<AppearanceApplier>();
    m_appearance->applyFrom(m_preferences);
    connect(&m_preferences, &Preferences::changed, this, [this](const QString& key) {
        if (key == PreferenceKey::appearanceMode)
            m_appearance->applyFrom(m_preferences);
    });

    m_trayMenu = std::make_unique<TrayMenu>();
    connect(m_trayMenu.get(), &TrayMenu::quitRequested, qApp, &QApplication::quit, Qt::QueuedConnection);
    showTrayWhenAvailable();
}

void AppDelegate::showTrayWhenAvailable()
{
    if (QSystemTrayIcon::isSystemTrayAvailable()) {
        m_trayMenu->show();
        qCInfo(lcAppDelegate) << "Tray icon shown";
        return;
    }
    // Panels often start after the applications of a session; keep looking, quietly.
    static bool told = false;
    if (!told) {
        qCInfo(lcAppDelegate) << "No system tray yet; the icon appears when one starts";
        told = true;
    }
    QPointer<AppDelegate> self(this);
    m_scheduler.singleShot(std::chrono::milliseconds(500), [self] {
        if (self)
            self->showTrayWhenAvailable();
    });
}

void AppDelegate::applicationWillTerminate() {}

} // namespace tolvane
