// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/PlatformServices.h"

namespace tolvane {

// The Linux services, or the null ones when TOLVANE_PLATFORM=null is set (headless runs, or to
// rule the desktop out when hunting a fault). Preferences are always the real file unless
// TOLVANE_PLATFORM=null.
PlatformServices createPlatformServices();

} // namespace tolvane
