// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/progress/ProgressStatistics.h"

#include <QWidget>

class QLabel;
class QProgressBar;

namespace tolvane {

class NumberTile;
class SectionCard;

// The statistics window's content: five titled sections in a scrolling column, drawn again after
// every change of the records while it is open. It only reads.
class StatsView final : public QWidget
{
    Q_OBJECT
public:
    explicit StatsView(const ProgressSources& sources, StatsCalendarSource calendar = &StatsCalendar::current,
                       QWidget* parent = nullptr);
    ~StatsView() override;

    const ProgressStatistics& statistics() const { return *m_statistics; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void render();
    SectionCard* addSection(const QString& title, int symbol, const QColor& tint);
    QList<NumberTile*> addTiles(SectionCard* section, const QStringList& captions, int columns);

    std::unique_ptr<ProgressStatistics> m_statistics;
    bool m_stale = false; // changed while hidden: drawn when shown again
    QWidget* m_column = nullptr;
    QList<NumberTile*> m_lookupTiles;
    QList<NumberTile*> m_reviewTiles;
    QList<NumberTile*> m_flashcardTiles;
    NumberTile* m_successfulTile = nullptr;
    QProgressBar* m_progress = nullptr;
    // Every text label is Qt::PlainText: the most looked-up word is the user's own text.
    QLabel* m_progressText = nullptr;
    SectionCard* m_highlights = nullptr;
    QWidget* m_streakRow = nullptr;
    QLabel* m_streakText = nullptr;
    QWidget* m_topRow = nullptr;
    QLabel* m_topText = nullptr;
};

} // namespace tolvane
