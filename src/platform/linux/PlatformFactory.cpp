// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/PlatformFactory.h"

#include "core/support/AppPaths.h"
#include "platform/linux/DesktopWorkspace.h"
#include "platform/linux/JsonFilePreferenceStore.h"
#include "platform/linux/QtScreenService.h"
#include "platform/linux/translation/DictionaryTranslationEngine.h"
#include "platform/null/NullPlatform.h"

namespace tolvane {

PlatformServices createPlatformServices()
{
    PlatformServices services = createNullPlatform();
    if (qEnvironmentVariable("TOLVANE_PLATFORM") == QLatin1String("null"))
        return services;

    services.name = QStringLiteral("linux");
    services.preferences =
        std::make_unique<JsonFilePreferenceStore>(configDirectory() + QStringLiteral("/preferences.json"));
    services.screens = std::make_unique<QtScreenService>();
    services.workspace = std::make_unique<DesktopWorkspace>();
    services.translationEngine = std::make_unique<DictionaryTranslationEngine>();
    return services;
}

} // namespace tolvane
