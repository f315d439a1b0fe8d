// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <functional>

namespace tolvane {

// A key let go, or the set of held modifiers changing, anywhere on the desktop. Key codes and
// modifier masks are in Tolvane's stored convention (virtual key codes; Command 256, Shift 512,
// Option 2048, Control 4096).
struct GlobalKeyEvent
{
    enum class Kind { keyUp, flagsChanged };
    Kind kind = Kind::keyUp;
    quint32 keyCode = 0;       // keyUp: the key let go
    quint32 modifierFlags = 0; // the modifiers held after the event
};

// Watches keys going up system-wide while a look-up is held, so that the card follows the hotkey
// even when the desktop tells the release of a combination late or not at all (a modifier let go
// first). Handlers run on the main thread.
class KeyReleaseMonitor
{
public:
    virtual ~KeyReleaseMonitor() = default;
    using Token = quint64;
    using Handler = std::function<void(const GlobalKeyEvent&)>;

    // 0 when the desktop offers no such events.
    virtual Token addMonitor(Handler handler) = 0;
    virtual void removeMonitor(Token token) = 0;
};

} // namespace tolvane
