// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/AccessibilityService.h"

namespace tolvane {

class NullAccessibilityService final : public AccessibilityService
{
public:
    AccessibleElementPtr elementAtPoint(QPointF) override { return nullptr; }
    AccessibleElementPtr focusedElement() override { return nullptr; }
    bool isTrusted() const override { return false; }
    bool requestTrust() override { return false; }
    Result<void> openSystemSettings() override;
};

} // namespace tolvane
