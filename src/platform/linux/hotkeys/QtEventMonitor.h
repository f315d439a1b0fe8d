// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/EventMonitor.h"

#include <QHash>
#include <QObject>

#include <optional>

class QKeyEvent;

namespace tolvane {

// Clicks and keys on Tolvane's own windows, through one application-wide event filter that is
// installed only while somebody watches. Key events are told in Tolvane's convention: stored key
// codes from the key's position, modifier masks, and modifier keys as flags changes.
class QtEventMonitor final : public QObject, public EventMonitor
{
    Q_OBJECT
public:
    explicit QtEventMonitor(QObject* parent = nullptr);
    ~QtEventMonitor() override;

    Token addLocalKeyMonitor(KeyHandler handler) override;
    Token addClickMonitor(ClickHandler handler) override;
    Token addKeyPressMonitor(ClickHandler handler) override;
    void removeMonitor(Token token) override;
    void activateApplication() override;

    // A Qt key event in Tolvane's convention; nothing for events Tolvane does not report (the
    // release of an ordinary key, a key without a stored code).
    static std::optional<KeyEvent> toKeyEvent(const QKeyEvent& event);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void updateFilter();

    Token m_next = 0;
    QHash<Token, KeyHandler> m_keyMonitors;
    QHash<Token, ClickHandler> m_clickMonitors;
    QHash<Token, ClickHandler> m_keyPressMonitors;
    bool m_filterInstalled = false;
    quint32 m_lastModifierFlags = 0;
};

} // namespace tolvane
