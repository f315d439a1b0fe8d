// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QtGlobal>

#include <functional>

namespace tolvane {

// A key event in Tolvane's convention. A key going down is keyDown; a modifier key going down or
// up is flagsChanged, carrying the set of modifiers held after the change.
struct KeyEvent
{
    enum class Type { keyDown, flagsChanged };
    Type type = Type::keyDown;
    quint32 keyCode = 0;       // virtual key code
    quint32 modifierFlags = 0; // Carbon mask: Command 256, Shift 512, Option 2048, Control 4096
    QString characters;
    bool isRepeat = false;
};

// Clicks and keys while Tolvane watches: on its own windows (local) or anywhere (global, where
// the platform allows it).
class EventMonitor
{
public:
    virtual ~EventMonitor() = default;

    using Token = quint64;
    // The handler returns true to swallow the event.
    using KeyHandler = std::function<bool(const KeyEvent&)>;
    using ClickHandler = std::function<void()>;

    virtual Token addLocalKeyMonitor(KeyHandler handler) = 0;
    virtual Token addClickMonitor(ClickHandler handler) = 0;
    virtual Token addKeyPressMonitor(ClickHandler handler) = 0;
    virtual void removeMonitor(Token token) = 0;

    // Brings Tolvane's windows forward so that the local key monitors receive the user's keys.
    // Nothing to do where there are no windows.
    virtual void activateApplication() {}
};

} // namespace tolvane
