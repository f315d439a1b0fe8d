// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/setup/AppearanceMode.h"

#include <QPalette>
#include <QString>

namespace tolvane {

class Preferences;

// Applies the appearance preference to every window of the application: a light or a dark
// palette, or whatever the desktop's style provides.
class AppearanceApplier final
{
public:
    // Remembers the desktop's own style and palette, to return to them for "system".
    AppearanceApplier();

    void apply(AppearanceMode mode);
    // Reads the preference now and applies it.
    void applyFrom(const Preferences& preferences);

    static QPalette lightPalette();
    static QPalette darkPalette();

private:
    QString m_desktopStyle;
    QPalette m_desktopPalette;
};

} // namespace tolvane
