// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>

#include <memory>

namespace tolvane {

class AppDelegate;
class OnboardingGuideView;

// The first-run guide's window, "guide" for `tolvane open`: made anew each time it opens, brought
// to the front when already open.
class GuideWiring final : public QObject
{
    Q_OBJECT
public:
    explicit GuideWiring(AppDelegate& app, QObject* parent = nullptr);
    ~GuideWiring() override;

    void open();
    OnboardingGuideView* view() const;

private:
    AppDelegate& m_app;
    QPointer<OnboardingGuideView> m_view;
};

} // namespace tolvane
