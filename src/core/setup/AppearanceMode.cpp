// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/setup/AppearanceMode.h"

namespace tolvane {

QString rawValue(AppearanceMode mode)
{
    switch (mode) {
    case AppearanceMode::light:
        return QStringLiteral("light");
    case AppearanceMode::dark:
        return QStringLiteral("dark");
    case AppearanceMode::system:
        break;
    }
    return QStringLiteral("system");
}

AppearanceMode appearanceModeFromRawValue(const QString& raw)
{
    if (raw == QLatin1String("light"))
        return AppearanceMode::light;
    if (raw == QLatin1String("dark"))
        return AppearanceMode::dark;
    return AppearanceMode::system;
}

} // namespace tolvane
