// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Recording stand-ins for the word and passage cards: what they were asked to show, and whether
// they are up.
#include "core/lookup/LookupCards.h"

#include <QList>

namespace tolvane {

class FakeWordCard final : public WordCard
{
public:
    QList<QPointF> shownAt;
    QList<HoverOverlayView> views;
    bool visible = false;
    void showAt(QPointF pointer) override
    {
        shownAt.append(pointer);
        visible = true;
    }
    void update(const HoverOverlayView& view) override { views.append(view); }
    void hide() override { visible = false; }
    bool isVisible() const override { return visible; }
    const HoverOverlayView& last() const { return views.constLast(); }
    QList<HoverOverlayView::State::Kind> kinds() const
    {
        QList<HoverOverlayView::State::Kind> result;
        for (const auto& view : views)
            result.append(view.state.kind);
        return result;
    }
};

class FakePassageCard final : public PassageCard
{
public:
    QList<TranslationOverlayView> views; // the show first, then every update
    bool visible = false;
    int dismissRequests = 0;
    void show(const TranslationOverlayView& view) override
    {
        views.append(view);
        visible = true;
    }
    void update(const TranslationOverlayView& view) override { views.append(view); }
    void requestDismiss() override { ++dismissRequests; }
    bool isVisible() const override { return visible; }
    const TranslationOverlayView& view() const override { return views.constLast(); }
};

} // namespace tolvane
