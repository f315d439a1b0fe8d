// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/support/Scheduler.h"

namespace tolvane {

void TimerHandle::cancel()
{
    if (!m_state || m_state->cancelled)
        return;
    m_state->cancelled = true;
    if (m_state->onCancel) {
        auto onCancel = std::move(m_state->onCancel);
        m_state->onCancel = nullptr;
        onCancel();
    }
}

} // namespace tolvane
