// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ReviewWiring.h"

#include "app/AppDelegate.h"
#include "platform/PlatformServices.h"
#include "ui/review/ReviewDeckWindowManager.h"
#include "ui/share/SharePresenter.h"

#include <QPointer>

namespace tolvane {

void wireReview(AppDelegate& app, PlatformServices& services, const Preferences& preferences, const Clock& clock)
{
    const ReviewDeckContext context{app.reviewDeck(),
                                    preferences,
                                    clock,
                                    SharePresenter::sharedBy(app),
                                    services.transliterator.get(),
                                    services.languageRecognizer.get()};
    QPointer<ReviewDeckWindowManager> windows(new ReviewDeckWindowManager(context, &app));
    app.commands().addWindow(QStringLiteral("review"), [windows] {
        if (windows)
            windows->show();
    });
}

void showReviewWindow(AppDelegate& app)
{
    if (auto* windows = app.findChild<ReviewDeckWindowManager*>(QString(), Qt::FindDirectChildrenOnly))
        windows->show();
}

} // namespace tolvane
