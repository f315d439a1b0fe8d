// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/AccessibilityService.h"

#include <memory>

namespace tolvane {

class UnresponsiveApplications;

// The accessibility bus (AT-SPI 2). The desktop object cannot tell what lies under a point, so
// the X server names the top-level window's process and the walk starts from that application.
// Every call to another application waits at most 300 ms; an application that did not answer in
// time is left alone for a few seconds rather than asked again.
class AtspiAccessibilityService final : public AccessibilityService
{
public:
    AtspiAccessibilityService();
    ~AtspiAccessibilityService() override;

    AccessibleElementPtr elementAtPoint(QPointF screenPoint) override;
    AccessibleElementPtr focusedElement() override;
    bool isTrusted() const override;
    bool requestTrust() override;
    Result<void> openSystemSettings() override;

    // Whether libatspi reached the accessibility bus at all.
    bool isConnected() const { return m_connected; }

private:
    bool m_connected = false;
    std::shared_ptr<UnresponsiveApplications> m_unresponsive;
};

} // namespace tolvane
