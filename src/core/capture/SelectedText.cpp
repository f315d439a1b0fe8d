// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/capture/SelectedText.h"

namespace tolvane {

std::optional<QString> selectedText(AccessibilityService& service)
{
    const AccessibleElementPtr focused = service.focusedElement();
    if (!focused)
        return std::nullopt;
    return focused->selectedText();
}

} // namespace tolvane
