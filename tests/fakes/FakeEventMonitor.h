// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/EventMonitor.h"

#include <QHash>

namespace tolvane {

class FakeEventMonitor final : public EventMonitor
{
public:
    QHash<Token, KeyHandler> keyMonitors;
    QHash<Token, ClickHandler> clickMonitors;
    QHash<Token, ClickHandler> keyPressMonitors;

    Token addLocalKeyMonitor(KeyHandler handler) override
    {
        keyMonitors.insert(++m_next, std::move(handler));
        return m_next;
    }
    Token addClickMonitor(ClickHandler handler) override
    {
        clickMonitors.insert(++m_next, std::move(handler));
        return m_next;
    }
    Token addKeyPressMonitor(ClickHandler handler) override
    {
        keyPressMonitors.insert(++m_next, std::move(handler));
        return m_next;
    }
    void removeMonitor(Token token) override
    {
        keyMonitors.remove(token);
        clickMonitors.remove(token);
        keyPressMonitors.remove(token);
    }
    void activateApplication() override { ++activations; }
    int monitorCount() const { return int(keyMonitors.size() + clickMonitors.size() + keyPressMonitors.size()); }
    int activations = 0;

    // Test side. Returns true when a monitor swallowed the key.
    bool sendKey(const KeyEvent& event)
    {
        // A handler may remove monitors (its own included) while the event is delivered.
        bool swallowed = false;
        const auto monitors = keyMonitors;
        for (auto it = monitors.cbegin(); it != monitors.cend(); ++it) {
            if (keyMonitors.contains(it.key()))
                swallowed = it.value()(event) || swallowed;
        }
        return swallowed;
    }
    void click()
    {
        // A handler may remove monitors (its own included) while the click is delivered.
        const auto monitors = clickMonitors;
        for (const auto& handler : monitors)
            handler();
    }

private:
    Token m_next = 0;
};

} // namespace tolvane
