// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/KeyReleaseMonitor.h"

#include <QHash>

namespace tolvane {

// Keys going up system-wide, as the test tells them.
class FakeKeyReleaseMonitor final : public KeyReleaseMonitor
{
public:
    QHash<Token, Handler> monitors;
    Token addMonitor(Handler handler) override
    {
        monitors.insert(++m_next, std::move(handler));
        return m_next;
    }
    void removeMonitor(Token token) override { monitors.remove(token); }
    void send(const GlobalKeyEvent& event)
    {
        const auto current = monitors;
        for (const auto& handler : current)
            handler(event);
    }

private:
    Token m_next = 0;
};

} // namespace tolvane
