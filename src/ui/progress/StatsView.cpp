// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/progress/StatsView.h"

#include "core/progress/ProgressTexts.h"
#include "ui/components/SectionCard.h"
#include "ui/components/TextStyle.h"
#include "ui/progress/NumberTile.h"
#include "ui/progress/ProgressSymbols.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QScrollArea>
#include <QVBoxLayout>

namespace tolvane {

namespace t = progress_texts;

namespace {

const QColor blue(0x0A, 0x84, 0xFF);
const QColor teal(0x30, 0xB0, 0xC7);
const QColor purple(0xAF, 0x52, 0xDE);
const QColor orange(0xFF, 0x95, 0x00);
const QColor yellow(0xF2, 0xB8, 0x00);

// A row of the highlights: a small tinted symbol and a sentence.
QWidget* highlightRow(ProgressSymbol symbol, const QColor& tint, QLabel* text)
{
    auto* row = new QWidget;
    auto* icon = new QLabel;
    icon->setPixmap(progressSymbol(symbol, tint).pixmap(QSize(16, 16)));
    icon->setFixedSize(18, 18);
    text->setTextFormat(Qt::PlainText);
    text->setWordWrap(true);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addWidget(icon, 0, Qt::AlignTop);
    layout->addWidget(text, 1);
    return row;
}

} // namespace

StatsView::StatsView(const ProgressSources& sources, StatsCalendarSource calendar, QWidget* parent)
    : QWidget(parent)
    , m_statistics(std::make_unique<ProgressStatistics>(sources, std::move(calendar)))
{
    setAccessibleName(t::statsWindowTitle);
    m_column = new QWidget;
    auto* column = new QVBoxLayout(m_column);
    column->setContentsMargins(16, 16, 16, 16);
    column->setSpacing(12);

    SectionCard* lookups = addSection(t::lookupsTitle, int(ProgressSymbol::magnifier), blue);
    m_lookupTiles = addTiles(lookups, {t::today, t::thisWeek, t::thisMonth, t::allTime, t::activeDays}, 3);
    SectionCard* reviews = addSection(t::reviewsTitle, int(ProgressSymbol::cardStack), teal);
    m_reviewTiles = addTiles(reviews, {t::today, t::thisWeek, t::thisMonth, t::allTime}, 2);
    SectionCard* flashcards = addSection(t::flashcardsTitle, int(ProgressSymbol::cardTower), purple);
    m_flashcardTiles = addTiles(flashcards, {t::newCards, t::knowIt, t::reviewAgain, t::total}, 2);

    SectionCard* milestones = addSection(t::milestonesTitle, int(ProgressSymbol::sparkles), orange);
    m_successfulTile = addTiles(milestones, {t::successfulLookups}, 1).first();
    m_progress = new QProgressBar;
    m_progress->setTextVisible(false);
    m_progress->setFixedHeight(6);
    m_progress->setAccessibleName(t::milestonesTitle);
    m_progressText = new QLabel;
    m_progressText->setTextFormat(Qt::PlainText);
    m_progressText->setWordWrap(true);
    m_progressText->setForegroundRole(QPalette::PlaceholderText);
    milestones->contentLayout()->addWidget(m_progress);
    milestones->contentLayout()->addWidget(m_progressText);

    m_highlights = addSection(t::highlightsTitle, int(ProgressSymbol::star), yellow);
    m_streakText = new QLabel;
    m_streakRow = highlightRow(ProgressSymbol::flame, orange, m_streakText);
    m_topText = new QLabel;
    m_topRow = highlightRow(ProgressSymbol::magnifier, blue, m_topText);
    m_highlights->contentLayout()->addWidget(m_streakRow);
    m_highlights->contentLayout()->addWidget(m_topRow);
    column->addStretch(1);

    auto* scroll = new QScrollArea;
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidget(m_column);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(scroll);

    connect(m_statistics.get(), &ProgressStatistics::changed, this, [this] {
        // A closed window keeps counting, which is cheap, but is not drawn.
        if (isVisible())
            render();
        else
            m_stale = true;
    });
    render();
}

StatsView::~StatsView() = default;

void StatsView::showEvent(QShowEvent* event)
{
    if (m_stale)
        render();
    QWidget::showEvent(event);
}

SectionCard* StatsView::addSection(const QString& title, int symbol, const QColor& tint)
{
    auto* section = new SectionCard(title, progressSymbol(ProgressSymbol(symbol)), tint);
    m_column->layout()->addWidget(section);
    return section;
}

QList<NumberTile*> StatsView::addTiles(SectionCard* section, const QStringList& captions, int columns)
{
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(10);
    QList<NumberTile*> tiles;
    for (qsizetype i = 0; i < captions.size(); ++i) {
        auto* tile = new NumberTile(captions.at(i));
        grid->addWidget(tile, int(i) / columns, int(i) % columns);
        tiles.append(tile);
    }
    for (int c = 0; c < columns; ++c)
        grid->setColumnStretch(c, 1);
    section->contentLayout()->addLayout(grid);
    return tiles;
}

void StatsView::render()
{
    m_stale = false;
    const ProgressSnapshot& s = m_statistics->snapshot();
    const auto fill = [](const QList<NumberTile*>& tiles, const QList<qint64>& values) {
        for (qsizetype i = 0; i < tiles.size(); ++i)
            tiles.at(i)->setValue(values.at(i));
    };
    fill(m_lookupTiles, {s.lookups.today, s.lookups.thisWeek, s.lookups.thisMonth, s.lookups.allTime, s.activeDays});
    fill(m_reviewTiles, {s.reviews.today, s.reviews.thisWeek, s.reviews.thisMonth, s.reviews.allTime});
    fill(m_flashcardTiles, {s.flashcards.newCards, s.flashcards.knowIt, s.flashcards.reviewAgain, s.flashcards.total});
    m_successfulTile->setValue(s.successfulLookups);

    m_progress->setVisible(s.nextMilestone.has_value());
    if (s.nextMilestone) {
        // Milestones are small numbers, and the count is below the next one.
        m_progress->setRange(0, int(*s.nextMilestone));
        m_progress->setValue(int(s.successfulLookups));
        m_progressText->setText(t::untilNextMilestone(*s.nextMilestone - s.successfulLookups));
    } else {
        m_progressText->setText(t::pastLastMilestone);
    }
    m_progressText->setAccessibleName(m_progressText->text());

    m_highlights->setVisible(s.showsHighlights());
    m_streakRow->setVisible(s.showsStreak());
    m_streakText->setText(t::streak(s.streak));
    m_streakText->setAccessibleName(m_streakText->text());
    m_topRow->setVisible(s.showsMostLookedUp());
    m_topText->setText(s.mostLookedUp ? t::mostLookedUp(*s.mostLookedUp) : QString());
    m_topText->setFont(withLanguageFamilies(font(), cjkLanguageOf(m_topText->text())));
    m_topText->setAccessibleName(m_topText->text());
}

} // namespace tolvane
