// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/overlay/TranslationOverlayView.h"
#include "ui/overlay/OverlayCardWidget.h"

class QScrollArea;

namespace tolvane {

class CardLabel;
class OverlayTag;

// The passage card's window and its content, drawn from a TranslationOverlayView: a passage
// scrolls inside the card; a single word sits in a fixed 240 × 88 frame.
class TranslationOverlayCard final : public OverlayCardWidget
{
    Q_OBJECT
public:
    explicit TranslationOverlayCard(QWidget* parent = nullptr);

    void setView(const TranslationOverlayView& view);
    // The card's height for the current content: 80 to 400 points.
    double fittingHeight() const;
    QScrollArea* scrollArea() const { return m_scroll; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paletteChanged() override;

private:
    int layoutContent(int width, bool apply) const;
    void placeContent();

    TranslationOverlayView m_view;
    QScrollArea* m_scroll;
    QWidget* m_content;
    OverlayTag* m_direction;
    OverlayTag* m_badge;
    CardLabel* m_source;
    CardLabel* m_translation;
    CardLabel* m_context;
};

} // namespace tolvane
