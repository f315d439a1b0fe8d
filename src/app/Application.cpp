// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Application.h"

#include "app/AppDelegate.h"
#include "app/SingleInstance.h"
#include "core/records/JsonRecordFile.h"
#include "core/setup/Preferences.h"
#include "core/support/Clock.h"
#include "core/support/Logging.h"
#include "core/support/QtScheduler.h"
#include "platform/linux/PlatformFactory.h"

#include <QApplication>
#include <QTextStream>

#include <cstdio>

TOLVANE_DEFINE_LOG(lcApplication, "Application")

namespace tolvane {

int runApplication(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tolvane"));
    QApplication::setApplicationDisplayName(QStringLiteral("Tolvane"));
    QApplication::setApplicationVersion(QStringLiteral(TOLVANE_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("tolvane"));

    SingleInstance instance(SingleInstance::defaultName());
    if (!instance.claim()) {
        QTextStream(stderr) << "Tolvane is already running; look for its icon in the tray.\n";
        return 0;
    }

    SystemClock clock;
    QtScheduler scheduler;
    PlatformServices services = createPlatformServices();
    Preferences preferences(*services.preferences);

    AppDelegate delegate(services, preferences, clock, scheduler, recordsDirectory());
    instance.setCommandHandler([&delegate](const QStringList& words) { return delegate.commands().handle(words); });
    QObject::connect(&instance, &SingleInstance::activationRequested, &delegate,
                     [] { qCInfo(lcApplication) << "Another start was attempted; this instance keeps running"; });
    QObject::connect(&app, &QCoreApplication::aboutToQuit, &delegate, &AppDelegate::applicationWillTerminate);
    scheduler.post([&delegate] { delegate.applicationDidFinishLaunching(); });
    return QApplication::exec();
}

} // namespace tolvane
