// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/GlobalHotkeyService.h"

#include <QList>
#include <QPair>

namespace tolvane {

class FakeGlobalHotkeyService final : public GlobalHotkeyService
{
public:
    struct Registration
    {
        quint32 keyCode;
        quint32 modifiers;
        HotkeyIdentifier identifier;
    };
    QList<Registration> registered; // currently held
    QList<Registration> attempts;   // every call, in order
    QList<HotkeyIdentifier> unregistered;
    // Combinations another client holds: registering them fails.
    QList<QPair<quint32, quint32>> takenByOthers;
    EventHandler handler;
    ModifierHandler modifierHandler;
    bool modifierMonitorFails = false;

    Result<void> registerHotkey(quint32 keyCode, quint32 modifiers, HotkeyIdentifier identifier) override
    {
        attempts.append({keyCode, modifiers, identifier});
        if (takenByOthers.contains(qMakePair(keyCode, modifiers)))
            return Error{QStringLiteral("The combination is held by another application.")};
        registered.append({keyCode, modifiers, identifier});
        return {};
    }
    void unregisterHotkey(HotkeyIdentifier identifier) override
    {
        unregistered.append(identifier);
        registered.removeIf([&](const Registration& r) { return r.identifier == identifier; });
    }
    void setEventHandler(EventHandler h) override { handler = std::move(h); }
    Result<void> startModifierMonitor(ModifierHandler h) override
    {
        if (modifierMonitorFails)
            return Error{QStringLiteral("The modifier monitor could not start.")};
        modifierHandler = std::move(h);
        return {};
    }
    void stopModifierMonitor() override { modifierHandler = nullptr; }

    // Test side: the desktop reports an event.
    void press(HotkeyIdentifier id)
    {
        if (handler)
            handler(id, HotkeyEventKind::pressed);
    }
    void release(HotkeyIdentifier id)
    {
        if (handler)
            handler(id, HotkeyEventKind::released);
    }
    void modifiersChanged(quint32 mask)
    {
        if (modifierHandler)
            modifierHandler(mask);
    }
};

} // namespace tolvane
