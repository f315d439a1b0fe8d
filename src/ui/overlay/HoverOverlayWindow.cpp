// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/overlay/HoverOverlayWindow.h"

#include "platform/ScreenService.h"
#include "ui/overlay/HoverOverlayCard.h"

namespace tolvane {

using namespace overlay;

HoverOverlayWindow::HoverOverlayWindow(const ScreenService& screens, const Transliterator& transliterator,
                                       QObject* parent)
    : QObject(parent)
    , m_screens(screens)
    , m_transliterator(transliterator)
    , m_view{HoverOverlayView::State::placeholder(QString()), {}, {}, {}, {}, {}}
    , m_frame(wordCardPointerOffset, wordCardInitialSize)
{}

HoverOverlayWindow::~HoverOverlayWindow()
{
    delete m_card.data();
}

HoverOverlayCard& HoverOverlayWindow::card()
{
    if (!m_card) {
        m_card = new HoverOverlayCard(m_transliterator);
        m_card->setView(m_view);
        applyGeometry();
    }
    return *m_card;
}

QWidget* HoverOverlayWindow::widget()
{
    return &card();
}

void HoverOverlayWindow::prepare()
{
    card().prepareWindow();
    applyGeometry();
}

void HoverOverlayWindow::show()
{
    show(m_screens.pointerLocation());
}

void HoverOverlayWindow::show(QPointF pointer)
{
    setLastTrackedPoint(pointer);
    position(pointer);
    orderFront();
}

void HoverOverlayWindow::orderFront()
{
    card().orderFront();
}

void HoverOverlayWindow::update(const HoverOverlayView& view)
{
    m_view = view;
    card().setView(m_view);
    if (m_frame.resizeToFit(m_card->fittingSize(), wordCardResizeTolerance, m_screens.screens()))
        applyGeometry();
    m_card->keepOnTop();
}

void HoverOverlayWindow::hide()
{
    if (m_card)
        m_card->hide();
}

void HoverOverlayWindow::position(QPointF point)
{
    m_frame.position(point, m_screens.screens());
    applyGeometry();
}

bool HoverOverlayWindow::isVisible() const
{
    return m_card && m_card->isVisible();
}

QSizeF HoverOverlayWindow::fittingSize()
{
    return card().fittingSize();
}

void HoverOverlayWindow::applyGeometry()
{
    if (!m_card)
        return;
    m_card->placeAt(m_frame.frame(), m_screens.screens());
}

} // namespace tolvane
