// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/overlay/HoverOverlayView.h"

#include "core/overlay/OverlayText.h"
#include "core/translation/DirectionDetection.h"

namespace tolvane {

HoverOverlayView::Tint HoverOverlayView::tint(State::Kind kind)
{
    switch (kind) {
    case State::Kind::placeholder:
        return Tint::blue;
    case State::Kind::lookup:
        return Tint::accent;
    case State::Kind::ocrLookup:
        return Tint::purple;
    case State::Kind::liveLookup:
        return Tint::green;
    case State::Kind::unmatched:
    case State::Kind::ocrUnmatched:
    case State::Kind::translating:
    case State::Kind::noLabel:
        break;
    }
    return Tint::secondary;
}

std::optional<QString> HoverOverlayView::reading(const Transliterator& transliterator) const
{
    if (!state.hasTranslation() || !targetLanguageCode)
        return std::nullopt;
    // Only what the card can show is read: a transliterator given a megabyte would stall the card.
    return pronunciationReading(overlay::displayText(state.translation, overlay::wordCardTextLimit),
                                *targetLanguageCode, transliterator);
}

} // namespace tolvane
