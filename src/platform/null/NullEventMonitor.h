// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/EventMonitor.h"

namespace tolvane {

class NullEventMonitor final : public EventMonitor
{
public:
    Token addLocalKeyMonitor(KeyHandler) override { return ++m_next; }
    Token addClickMonitor(ClickHandler) override { return ++m_next; }
    Token addKeyPressMonitor(ClickHandler) override { return ++m_next; }
    void removeMonitor(Token) override {}
    void activateApplication() override {}

private:
    Token m_next = 0;
};

} // namespace tolvane
