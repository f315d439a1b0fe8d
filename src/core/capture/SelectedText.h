// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/AccessibilityService.h"

#include <QString>

#include <optional>

namespace tolvane {

// The selection in the focused element of the application the user works in, as that application
// reports it (not trimmed); nothing when there is no focused element, it does not answer, or it
// has no text. Never the clipboard: the primary selection outlives the application that made it
// and waits on its owner, which may hang.
std::optional<QString> selectedText(AccessibilityService& service);

} // namespace tolvane
