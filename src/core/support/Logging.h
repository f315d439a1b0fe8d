// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLoggingCategory>

// Every component logs through a category named after the component itself, so that, with the
// message pattern installed by installLogFormat(), each line starts with "[Component] ".
#define TOLVANE_DECLARE_LOG(symbol) Q_DECLARE_LOGGING_CATEGORY(symbol)
#define TOLVANE_DEFINE_LOG(symbol, component) Q_LOGGING_CATEGORY(symbol, component, QtInfoMsg)

namespace tolvane {

// "[Component] message" for categorised lines, the bare message otherwise.
void installLogFormat();

} // namespace tolvane
