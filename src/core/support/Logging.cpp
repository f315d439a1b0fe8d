// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/support/Logging.h"

namespace tolvane {

void installLogFormat()
{
    qSetMessagePattern(QStringLiteral("%{if-category}[%{category}] %{endif}%{message}"));
}

} // namespace tolvane
