// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/review/DeckExport.h"

#include <QPointer>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QFileDialog;
class QLabel;
class QPushButton;
class QRadioButton;

namespace tolvane {

class Clock;
class ReviewDeckStore;

// The "Export" tab: format, status and date filters, and the button that writes the chosen cards
// to a file the learner picks. The choices last as long as the window.
class DeckExportPane final : public QWidget
{
    Q_OBJECT
public:
    DeckExportPane(ReviewDeckStore& deck, const Clock& clock, QWidget* parent = nullptr);

    const ExportSettings& settings() const { return m_settings; }
    // The save dialog while it is open.
    QFileDialog* saveDialog() const { return m_saveDialog; }

    // The cards the button would export now.
    QList<ReviewCard> cardsToExport() const;

public Q_SLOTS:
    void refresh();

private:
    void exportCards();

    ReviewDeckStore& m_deck;
    const Clock& m_clock;
    ExportSettings m_settings;
    QRadioButton* m_csv;
    QRadioButton* m_anki;
    QLabel* m_ankiNote; // plainLabel()/secondaryLabel(): Qt::PlainText
    QCheckBox* m_includeNew;
    QCheckBox* m_includeKnowIt;
    QCheckBox* m_includeReviewAgain;
    QComboBox* m_dateRange;
    QPushButton* m_exportButton;
    QLabel* m_noMatch;
    QPointer<QFileDialog> m_saveDialog;
};

} // namespace tolvane
