// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/setup/AppearanceMode.h"

#include "core/support/EnumNames.h"

namespace tolvane {

namespace {
constexpr EnumNames appearanceModeNames{std::array{
    std::pair{AppearanceMode::system, "system"},
    std::pair{AppearanceMode::light, "light"},
    std::pair{AppearanceMode::dark, "dark"},
}};
} // namespace

QString rawValue(AppearanceMode mode)
{
    return appearanceModeNames.text(mode);
}

AppearanceMode appearanceModeFromRawValue(const QString& raw)
{
    return appearanceModeNames.value(raw).value_or(AppearanceMode::system);
}

} // namespace tolvane
