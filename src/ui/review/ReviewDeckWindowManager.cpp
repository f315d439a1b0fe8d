// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/review/ReviewDeckWindowManager.h"

#include "core/support/Logging.h"
#include "ui/components/WindowActivation.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

TOLVANE_DEFINE_LOG(lcReviewDeckWindow, "ReviewDeckWindowManager")

namespace tolvane {

ReviewDeckWindowManager::ReviewDeckWindowManager(const ReviewDeckContext& context, QObject* parent)
    : QObject(parent)
    , m_context(context)
{}

ReviewDeckWindowManager::~ReviewDeckWindowManager()
{
    delete m_window;
}

QString ReviewDeckWindowManager::windowTitle()
{
    return QStringLiteral("Review Deck");
}

void ReviewDeckWindowManager::show()
{
    if (m_window && m_window->isVisible()) {
        bringToFront(m_window);
        return;
    }
    delete m_window;
    auto* window = new ReviewDeckView(m_context);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint |
                           Qt::WindowMinimizeButtonHint);
    window->setWindowTitle(windowTitle());
    window->setAccessibleName(windowTitle());
    window->setFixedSize(contentSize);
    QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (screen) {
        QRect frame(QPoint(), contentSize);
        frame.moveCenter(screen->availableGeometry().center());
        window->move(frame.topLeft());
    }
    m_window = window;
    window->show();
    bringToFront(window);
    qCInfo(lcReviewDeckWindow) << "Review window opened with" << window->session().queue().size() << "cards to review";
}

} // namespace tolvane
