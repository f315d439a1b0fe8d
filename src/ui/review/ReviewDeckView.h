// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/review/ReviewSession.h"

#include <QWidget>

class QLabel;
class QProgressBar;
class QPushButton;
class QShortcut;
class QStackedWidget;
class QTabBar;
class QToolButton;

namespace tolvane {

class Clock;
class DeckExportPane;
class FlashcardView;
class LanguageRecognizer;
class Preferences;
class ReviewDeckStore;
class SharePresenter;
class Transliterator;

// What the review window needs from the rest of Tolvane. The language services may be null: the
// card then shows no reading and a share guesses its language by script alone.
struct ReviewDeckContext
{
    ReviewDeckStore& deck;
    const Preferences& preferences;
    const Clock& clock;
    SharePresenter& share;
    const Transliterator* transliterator = nullptr;
    const LanguageRecognizer* languageRecognizer = nullptr;
};

// The content of the "Review Deck" window: a "Cards" tab with the flashcard session and an
// "Export" tab. A session starts each time the view is shown and ends with it.
class ReviewDeckView final : public QWidget
{
    Q_OBJECT
public:
    explicit ReviewDeckView(const ReviewDeckContext& context, QWidget* parent = nullptr);
    ~ReviewDeckView() override;

    const ReviewSession& session() const { return m_session; }
    void startSession();
    void selectTab(int index);
    DeckExportPane* exportPane() const { return m_exportPane; }
    FlashcardView* card() const { return m_card; }

    // The help texts of the session's buttons, which are also their names on the bus.
    static QString previousHelp();
    static QString nextHelp();
    static QString removeHelp();
    static QString shuffleHelp();
    static QString shareHelp();
    static QString flipCaption();

protected:
    void showEvent(QShowEvent* event) override;

private:
    enum class Change { plain, turn };
    void render(Change change = Change::plain);
    void flip();
    void answer(CardStatus status);
    void shareCurrent();
    std::optional<QString> readingFor(const ReviewCard& card) const;

    ReviewDeckContext m_context;
    ReviewSession m_session;
    QTabBar* m_tabs;
    QStackedWidget* m_pages;
    QStackedWidget* m_cardsScreens;
    QWidget* m_emptyScreen;
    QWidget* m_completeScreen;
    QWidget* m_sessionScreen;
    // Labels in Qt::PlainText (plainLabel(), or set where they are made).
    QLabel* m_completionText;
    QToolButton* m_previous;
    QToolButton* m_next;
    QProgressBar* m_progress;
    QLabel* m_progressText;
    FlashcardView* m_card;
    QStackedWidget* m_underCard;
    QPushButton* m_knowIt;
    QPushButton* m_reviewAgain;
    QToolButton* m_remove;
    QToolButton* m_shuffle;
    QToolButton* m_share;
    DeckExportPane* m_exportPane;
    QList<QShortcut*> m_sessionKeys;
};

} // namespace tolvane
