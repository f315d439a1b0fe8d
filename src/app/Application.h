// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tolvane {

// Builds the application's parts, starts them and runs the event loop.
int runApplication(int argc, char** argv);

} // namespace tolvane
