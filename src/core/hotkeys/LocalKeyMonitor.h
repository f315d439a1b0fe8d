// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/EventMonitor.h"

#include <optional>
#include <utility>

namespace tolvane {

// One local key monitor that a capture installs at most once and takes down when it stops or is
// destroyed, so no handler outlives the capture that put it there.
class LocalKeyMonitor final
{
public:
    explicit LocalKeyMonitor(EventMonitor& monitor)
        : m_monitor(monitor)
    {}
    ~LocalKeyMonitor() { remove(); }
    LocalKeyMonitor(const LocalKeyMonitor&) = delete;
    LocalKeyMonitor& operator=(const LocalKeyMonitor&) = delete;

    // Keeps the handler already installed, if any.
    void install(EventMonitor::KeyHandler handler)
    {
        if (!m_token)
            m_token = m_monitor.addLocalKeyMonitor(std::move(handler));
    }
    void remove()
    {
        if (m_token)
            m_monitor.removeMonitor(*std::exchange(m_token, std::nullopt));
    }

private:
    EventMonitor& m_monitor;
    std::optional<EventMonitor::Token> m_token;
};

} // namespace tolvane
