// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/GuideWiring.h"

#include "app/AppDelegate.h"
#include "app/LookupWiring.h"
#include "core/support/Logging.h"
#include "core/translation/LiveTranslationService.h"
#include "platform/PlatformServices.h"
#include "ui/components/WindowActivation.h"
#include "ui/setup/OnboardingGuideView.h"

TOLVANE_DEFINE_LOG(lcGuideWiring, "GuideWiring")

namespace tolvane {

GuideWiring::GuideWiring(AppDelegate& app, QObject* parent)
    : QObject(parent)
    , m_app(app)
{
    app.commands().addWindow(QStringLiteral("guide"), [this] { open(); });
}

GuideWiring::~GuideWiring()
{
    delete m_view;
}

OnboardingGuideView* GuideWiring::view() const
{
    return m_view;
}

void GuideWiring::open()
{
    if (!m_view) {
        PlatformServices& services = m_app.services();
        m_view = new OnboardingGuideView(OnboardingGuide::Services{m_app.preferences(), m_app.scheduler(),
                                                                   m_app.lookup()->translation(),
                                                                   *services.notifications, m_app.reminders(),
                                                                   *services.eventMonitor, m_app.hotkeys()},
                                         m_app.accessibilityPermission(), m_app.screenRecordingPermission());
        qCInfo(lcGuideWiring) << "Setup guide opened";
    }
    bringToFront(m_view);
}

} // namespace tolvane
