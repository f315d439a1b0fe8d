// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

namespace tolvane {

// What the passage card shows. An immutable value: every update hands the card a new one.
struct TranslationOverlayView
{
    QString source;                        // the selected text (or word) that was translated
    QString translation;                   // its translation
    std::optional<QString> context;        // an extra line under the translation
    std::optional<QString> badge;          // a short green tag beside the direction ("Live")
    bool isPassage = false;                // wide, scrolling card with a smaller translation font
    std::optional<QString> directionLabel; // "EN → FR", shown as a tag

    friend bool operator==(const TranslationOverlayView&, const TranslationOverlayView&) = default;
};

} // namespace tolvane
