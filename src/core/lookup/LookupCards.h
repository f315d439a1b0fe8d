// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/overlay/HoverOverlayView.h"
#include "core/overlay/TranslationOverlayView.h"

#include <QPointF>

#include <functional>
#include <memory>

namespace tolvane {

// The word card as the look-up drives it: one window, created on the first word look-up and
// reused for the life of the process.
class WordCard
{
public:
    virtual ~WordCard() = default;
    // Remembers the pointer (points, origin bottom-left, y upward), places the card beside it and
    // brings it to the front when hidden, without taking the focus. The content stays until the
    // next update.
    virtual void showAt(QPointF pointer) = 0;
    // New content; the card takes its fitting size and is placed again beside the last pointer.
    virtual void update(const HoverOverlayView& view) = 0;
    virtual void hide() = 0;
    virtual bool isVisible() const = 0;
};

// The passage card. A card that has closed is not shown again: the next passage gets a new one.
class PassageCard
{
public:
    virtual ~PassageCard() = default;
    // Shows the content beside the pointer and starts the reading time.
    virtual void show(const TranslationOverlayView& view) = 0;
    // New content while shown; the reading time starts again.
    virtual void update(const TranslationOverlayView& view) = 0;
    // Closes now when the reading time since the show has passed, otherwise when it passes.
    virtual void requestDismiss() = 0;
    virtual bool isVisible() const = 0;
    virtual const TranslationOverlayView& view() const = 0;
};

using WordCardFactory = std::function<std::unique_ptr<WordCard>()>;
using PassageCardFactory = std::function<std::unique_ptr<PassageCard>()>;

} // namespace tolvane
