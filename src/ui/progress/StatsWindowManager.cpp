// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/progress/StatsWindowManager.h"

#include "core/progress/ProgressTexts.h"
#include "ui/progress/ProgressWindow.h"
#include "ui/progress/StatsView.h"

namespace tolvane {

StatsWindowManager::StatsWindowManager(const ProgressSources& sources, StatsCalendarSource calendar, QObject* parent)
    : QObject(parent)
    , m_sources(sources)
    , m_calendar(std::move(calendar))
{}

StatsWindowManager::~StatsWindowManager() = default;

void StatsWindowManager::show()
{
    if (m_window && m_window->isVisible()) {
        bringToFront(m_window.get());
        return;
    }
    m_window = std::make_unique<StatsView>(m_sources, m_calendar);
    makeFixedWindow(m_window.get(), progress_texts::statsWindowTitle, contentSize, true);
    centreOnPointerScreen(m_window.get());
    bringToFront(m_window.get());
}

} // namespace tolvane
