// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/KeyReleaseMonitor.h"

#include <QHash>
#include <QObject>

#include <memory>

class QSocketNotifier;

namespace tolvane {

// Keys going up anywhere on the desktop, from XInput 2.2 raw key events on a connection of its
// own. Raw events are asked for only while someone watches, so Tolvane does not wake for every
// key the user types between look-ups.
class XiKeyReleaseMonitor final : public QObject, public KeyReleaseMonitor
{
    Q_OBJECT
public:
    XiKeyReleaseMonitor();
    ~XiKeyReleaseMonitor() override;

    Token addMonitor(Handler handler) override;
    void removeMonitor(Token token) override;

    struct Display;

private:
    bool open();
    void select(bool watching);
    void readEvents();
    void keyReleased(quint32 keycode);

    std::unique_ptr<Display> m_display;
    bool m_unavailable = false;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QHash<Token, Handler> m_handlers;
    Token m_next = 0;
};

} // namespace tolvane
