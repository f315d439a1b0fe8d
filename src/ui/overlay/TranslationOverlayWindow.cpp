// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/overlay/TranslationOverlayWindow.h"

#include "platform/ScreenService.h"
#include "ui/overlay/TranslationOverlayCard.h"

namespace tolvane {

using namespace overlay;

TranslationOverlayWindow::TranslationOverlayWindow(const ScreenService& screens, const Preferences& preferences,
                                                   const Clock& clock, Scheduler& scheduler, EventMonitor& events,
                                                   QObject* parent)
    : QObject(parent)
    , m_screens(screens)
    , m_frame(passageCardPointerOffset, QSizeF(passageCardWidth, passageCardMinimumHeight))
    , m_lifetime(preferences, clock, scheduler, events, [this] { orderOut(); })
{}

TranslationOverlayWindow::~TranslationOverlayWindow()
{
    delete m_card.data();
}

TranslationOverlayCard& TranslationOverlayWindow::card()
{
    if (!m_card) {
        m_card = new TranslationOverlayCard;
        m_card->setView(m_view);
        applyGeometry();
    }
    return *m_card;
}

QWidget* TranslationOverlayWindow::widget()
{
    return &card();
}

void TranslationOverlayWindow::show(const TranslationOverlayView& view)
{
    // A card shown before and closed since starts afresh.
    if (m_lifetime.isShown() && !isVisible())
        dismiss();
    m_view = view;
    card().setView(m_view);
    m_frame.setFrame(QRectF(m_frame.frame().topLeft(), QSizeF(passageCardWidth, m_card->fittingHeight())));
    position(m_screens.pointerLocation());
    m_card->orderFront();
    m_lifetime.shown();
}

void TranslationOverlayWindow::update(const TranslationOverlayView& view)
{
    m_view = view;
    card().setView(m_view);
    if (m_frame.resizeKeepingTop(m_card->fittingHeight(), passageCardResizeTolerance))
        applyGeometry();
    m_card->keepOnTop();
    m_lifetime.updated();
}

void TranslationOverlayWindow::scheduleAutoDismiss()
{
    m_lifetime.scheduleAutoDismiss();
}

void TranslationOverlayWindow::requestDismiss()
{
    m_lifetime.requestDismiss();
}

void TranslationOverlayWindow::dismiss()
{
    m_lifetime.dismiss();
}

void TranslationOverlayWindow::orderOut()
{
    if (m_card)
        m_card->hide();
}

void TranslationOverlayWindow::position(QPointF point)
{
    m_frame.position(point, m_screens.screens());
    applyGeometry();
}

double TranslationOverlayWindow::fittingHeight(const TranslationOverlayView& view) const
{
    // Measured on a card of its own, so that asking does not change what is shown.
    TranslationOverlayCard measuring;
    measuring.setView(view);
    return measuring.fittingHeight();
}

bool TranslationOverlayWindow::isVisible() const
{
    return m_card && m_card->isVisible();
}

void TranslationOverlayWindow::applyGeometry()
{
    if (!m_card)
        return;
    m_card->placeAt(m_frame.frame(), m_screens.screens());
}

} // namespace tolvane
