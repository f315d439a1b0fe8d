// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/overlay/HoverOverlayView.h"
#include "ui/overlay/OverlayCardWidget.h"

#include <QSizeF>

#include <optional>

namespace tolvane {

class CardLabel;
class CardSpinner;
class OverlayTag;
class SpeakerButton;
class Transliterator;

// The word card's window and its content, drawn from a HoverOverlayView.
class HoverOverlayCard final : public OverlayCardWidget
{
    Q_OBJECT
public:
    explicit HoverOverlayCard(const Transliterator& transliterator, QWidget* parent = nullptr);

    void setView(const HoverOverlayView& view);
    // The size the content asks for: its one-line width clamped to 240…420, then its height at that
    // width, at most 360.
    QSizeF fittingSize() const;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paletteChanged() override;

private:
    // Lays the content out at this inner width (apply: move the widgets) and returns its height.
    int layoutContent(int width, bool apply) const;
    double idealContentWidth() const;
    void applyFonts();

    const Transliterator& m_transliterator;
    HoverOverlayView m_view;
    QString m_language;         // the learning language the fonts were chosen for
    QString m_fittedExampleKey; // the example (and language) the example lines were fitted for
    std::optional<QString> m_fittedExampleTranslation;

    OverlayTag* m_tag;
    CardLabel* m_placeholderCaption;
    CardLabel* m_placeholderText;
    CardLabel* m_source;
    CardLabel* m_partOfSpeech;
    SpeakerButton* m_speak;
    CardLabel* m_word;
    CardLabel* m_translation;
    CardLabel* m_reading;
    CardLabel* m_context;
    CardLabel* m_exampleSentence;
    CardLabel* m_exampleTranslation;
    CardSpinner* m_spinner;
    CardLabel* m_status;
};

} // namespace tolvane
