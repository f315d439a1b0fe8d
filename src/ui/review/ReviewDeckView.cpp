// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/review/ReviewDeckView.h"

#include "core/records/ReviewDeckStore.h"
#include "core/setup/Preferences.h"
#include "core/translation/DirectionDetection.h"
#include "platform/Transliterator.h"
#include "ui/components/SymbolIcon.h"
#include "ui/components/TextStyle.h"
#include "ui/review/DeckExportPane.h"
#include "ui/review/FlashcardView.h"
#include "ui/share/SharePayload.h"
#include "ui/share/SharePresenter.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QStackedWidget>
#include <QTabBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace tolvane {

namespace {

QToolButton* symbolButton(Symbol symbol, const QString& help)
{
    auto* button = new QToolButton;
    button->setIcon(symbolIcon(symbol));
    button->setIconSize(QSize(18, 18));
    button->setAutoRaise(true);
    button->setToolTip(help);
    button->setAccessibleName(help);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

QLabel* plainLabel(const QString& text = {})
{
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignCenter);
    return label;
}

// The palette's quieter text colour, which follows a switch between light and dark.
void makeSecondary(QLabel* label)
{
    label->setForegroundRole(QPalette::PlaceholderText);
}

QLabel* symbolLabel(Symbol symbol)
{
    auto* label = new QLabel;
    label->setPixmap(symbolIcon(symbol).pixmap(QSize(40, 40)));
    label->setAlignment(Qt::AlignCenter);
    return label;
}

QLabel* titleLabel(const QString& text)
{
    QLabel* label = plainLabel(text);
    label->setFont(textStyleFont(TextStyle::title2, QFont::DemiBold));
    return label;
}

// A centred screen of symbol, title and text.
QWidget* messageScreen(Symbol symbol, const QString& title, QLabel* text, QWidget* extra = nullptr)
{
    auto* screen = new QWidget;
    auto* layout = new QVBoxLayout(screen);
    layout->setSpacing(10);
    layout->addStretch(1);
    layout->addWidget(symbolLabel(symbol));
    layout->addWidget(titleLabel(title));
    makeSecondary(text);
    layout->addWidget(text);
    if (extra)
        layout->addWidget(extra, 0, Qt::AlignHCenter);
    layout->addStretch(1);
    return screen;
}

} // namespace

QString ReviewDeckView::previousHelp()
{
    return QStringLiteral("Previous card (\u2190)");
}

QString ReviewDeckView::nextHelp()
{
    return QStringLiteral("Next card (\u2192)");
}

QString ReviewDeckView::removeHelp()
{
    return QStringLiteral("Remove from deck");
}

QString ReviewDeckView::shuffleHelp()
{
    return QStringLiteral("Shuffle remaining cards");
}

QString ReviewDeckView::shareHelp()
{
    return QStringLiteral("Share this flashcard");
}

QString ReviewDeckView::flipCaption()
{
    return QStringLiteral("Space or click flips the card");
}

ReviewDeckView::ReviewDeckView(const ReviewDeckContext& context, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_session(context.deck)
    , m_tabs(new QTabBar)
    , m_pages(new QStackedWidget)
    , m_cardsScreens(new QStackedWidget)
    , m_completionText(plainLabel())
    , m_previous(symbolButton(Symbol::chevronLeft, previousHelp()))
    , m_next(symbolButton(Symbol::chevronRight, nextHelp()))
    , m_progress(new QProgressBar)
    , m_progressText(new QLabel)
    , m_card(new FlashcardView)
    , m_underCard(new QStackedWidget)
    , m_knowIt(new QPushButton(QStringLiteral("I know this")))
    , m_reviewAgain(new QPushButton(QStringLiteral("Review again")))
    , m_remove(symbolButton(Symbol::trash, removeHelp()))
    , m_shuffle(symbolButton(Symbol::shuffle, shuffleHelp()))
    , m_share(symbolButton(Symbol::share, shareHelp()))
    , m_exportPane(new DeckExportPane(context.deck, context.clock))
{
    m_tabs->addTab(QStringLiteral("Cards"));
    m_tabs->addTab(QStringLiteral("Export"));
    m_tabs->setExpanding(false);
    m_tabs->setDrawBase(false);
    m_tabs->setAccessibleName(QStringLiteral("Review Deck"));

    // The empty and completion screens.
    m_emptyScreen =
        messageScreen(Symbol::cardStack, ReviewSession::emptyTitle(), plainLabel(ReviewSession::emptyText()));
    auto* startAgain = new QPushButton(QStringLiteral("Start New Session"));
    startAgain->setAccessibleName(startAgain->text());
    m_completeScreen = messageScreen(Symbol::checkmark, ReviewSession::completeTitle(), m_completionText, startAgain);
    connect(startAgain, &QPushButton::clicked, this, &ReviewDeckView::startSession);

    // The session: progress, card, answers, tools.
    m_progress->setTextVisible(false);
    m_progress->setFixedHeight(6);
    m_progress->setAccessibleName(QStringLiteral("Progress"));
    m_progressText->setTextFormat(Qt::PlainText);
    m_progressText->setFont(textStyleFont(TextStyle::callout));
    auto* header = new QHBoxLayout;
    header->setSpacing(8);
    header->addWidget(m_previous);
    header->addWidget(m_progress, 1);
    header->addWidget(m_progressText);
    header->addWidget(m_next);

    QLabel* caption = plainLabel(flipCaption());
    makeSecondary(caption);
    auto* answers = new QWidget;
    auto* answersLayout = new QHBoxLayout(answers);
    answersLayout->setContentsMargins(0, 0, 0, 0);
    m_reviewAgain->setAccessibleName(m_reviewAgain->text());
    m_knowIt->setAccessibleName(m_knowIt->text());
    m_knowIt->setDefault(true);
    QFont prominent = m_knowIt->font();
    prominent.setWeight(QFont::DemiBold);
    m_knowIt->setFont(prominent);
    for (QPushButton* button : {m_reviewAgain, m_knowIt}) {
        button->setFocusPolicy(Qt::TabFocus);
        answersLayout->addWidget(button, 1);
    }
    m_underCard->addWidget(caption);
    m_underCard->addWidget(answers);
    m_underCard->setFixedHeight(qMax(caption->sizeHint().height(), answers->sizeHint().height()));

    auto* tools = new QHBoxLayout;
    tools->addStretch(1);
    tools->addWidget(m_remove);
    tools->addSpacing(18);
    tools->addWidget(m_shuffle);
    tools->addSpacing(18);
    tools->addWidget(m_share);
    tools->addStretch(1);

    m_sessionScreen = new QWidget;
    auto* sessionLayout = new QVBoxLayout(m_sessionScreen);
    sessionLayout->setContentsMargins(0, 0, 0, 0);
    sessionLayout->setSpacing(12);
    sessionLayout->addLayout(header);
    sessionLayout->addWidget(m_card, 1);
    sessionLayout->addWidget(m_underCard);
    sessionLayout->addLayout(tools);

    m_cardsScreens->addWidget(m_emptyScreen);
    m_cardsScreens->addWidget(m_completeScreen);
    m_cardsScreens->addWidget(m_sessionScreen);
    auto* cardsPage = new QWidget;
    auto* cardsLayout = new QVBoxLayout(cardsPage);
    cardsLayout->setContentsMargins(24, 24, 24, 24);
    cardsLayout->addWidget(m_cardsScreens);

    auto* scroll = new QScrollArea;
    scroll->setWidget(m_exportPane);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

    m_pages->addWidget(cardsPage);
    m_pages->addWidget(scroll);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 10, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_tabs, 0, Qt::AlignHCenter);
    layout->addWidget(m_pages, 1);

    connect(m_tabs, &QTabBar::currentChanged, this, [this](int index) {
        m_pages->setCurrentIndex(index);
        // Date ranges count back from now: the count is taken afresh whenever the tab is shown.
        if (index == 1)
            m_exportPane->refresh();
        render();
    });
    connect(m_card, &FlashcardView::clicked, this, &ReviewDeckView::flip);
    connect(m_knowIt, &QPushButton::clicked, this, [this] { answer(CardStatus::knowIt); });
    connect(m_reviewAgain, &QPushButton::clicked, this, [this] { answer(CardStatus::reviewAgain); });
    connect(m_previous, &QToolButton::clicked, this, [this] {
        m_session.previous();
        render();
    });
    connect(m_next, &QToolButton::clicked, this, [this] {
        m_session.next();
        render();
    });
    connect(m_shuffle, &QToolButton::clicked, this, [this] {
        m_session.shuffleRemaining();
        render();
    });
    connect(m_remove, &QToolButton::clicked, this, [this] {
        m_session.removeCurrent();
        render();
    });
    connect(m_share, &QToolButton::clicked, this, &ReviewDeckView::shareCurrent);

    // The keys act only while a card is on screen; elsewhere Space and the arrows keep their
    // usual meaning for the focused control.
    const auto addKey = [this](QKeySequence key, auto action) {
        auto* shortcut = new QShortcut(key, this);
        shortcut->setContext(Qt::WindowShortcut);
        connect(shortcut, &QShortcut::activated, this, action);
        m_sessionKeys.append(shortcut);
        return shortcut;
    };
    addKey(QKeySequence(Qt::Key_Space), [this] { flip(); });
    addKey(QKeySequence(Qt::Key_Left), [this] {
        m_session.previous();
        render();
    });
    addKey(QKeySequence(Qt::Key_Right), [this] {
        m_session.next();
        render();
    });
    m_returnKey = addKey(QKeySequence(Qt::Key_Return), [this] { answer(CardStatus::knowIt); });
    addKey(QKeySequence(Qt::Key_Enter), [this] { answer(CardStatus::knowIt); });

    startSession();
}

ReviewDeckView::~ReviewDeckView() = default;

void ReviewDeckView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    render();
}

void ReviewDeckView::startSession()
{
    m_session.start();
    render();
}

void ReviewDeckView::selectTab(int index)
{
    m_tabs->setCurrentIndex(index);
}

void ReviewDeckView::flip()
{
    if (m_session.screen() != ReviewSession::Screen::card)
        return;
    m_session.flip();
    render(Change::turn);
}

void ReviewDeckView::answer(CardStatus status)
{
    if (m_session.screen() != ReviewSession::Screen::card || !m_session.isFlipped())
        return;
    m_session.answer(status);
    render();
}

void ReviewDeckView::shareCurrent()
{
    if (const ReviewCard* card = m_session.currentCard())
        m_context.share.present(flashcardSharePayload(*card, m_context.languageRecognizer));
}

std::optional<QString> ReviewDeckView::readingFor(const ReviewCard& card) const
{
    if (!m_context.transliterator)
        return std::nullopt;
    QString language = card.targetLanguage.value_or(QString()).trimmed();
    if (language.isEmpty())
        language = m_context.preferences.targetLanguage();
    return pronunciationReading(card.translation, language, *m_context.transliterator);
}

void ReviewDeckView::render(Change change)
{
    const ReviewSession::Screen screen = m_session.screen();
    const bool onCards = m_tabs->currentIndex() == 0;
    const bool cardShown = onCards && screen == ReviewSession::Screen::card;
    for (QShortcut* key : std::as_const(m_sessionKeys))
        key->setEnabled(cardShown);
    m_returnKey->setEnabled(cardShown && m_session.isFlipped());

    switch (screen) {
    case ReviewSession::Screen::empty:
        m_cardsScreens->setCurrentWidget(m_emptyScreen);
        return;
    case ReviewSession::Screen::complete:
        m_completionText->setText(ReviewSession::completionText(m_session.reviewedThisSession()));
        m_cardsScreens->setCurrentWidget(m_completeScreen);
        return;
    case ReviewSession::Screen::card:
        break;
    }
    m_cardsScreens->setCurrentWidget(m_sessionScreen);
    const ReviewCard& card = *m_session.currentCard();
    const bool flipped = m_session.isFlipped();
    m_card->showCard(card, flipped ? readingFor(card) : std::nullopt, flipped, change == Change::turn);
    m_progress->setRange(0, int(qMin<qsizetype>(m_session.progressTotal(), INT_MAX)));
    m_progress->setValue(int(qMin<qsizetype>(m_session.progressValue(), INT_MAX)));
    m_progressText->setText(m_session.progressText());
    m_previous->setEnabled(m_session.canGoPrevious());
    m_next->setEnabled(m_session.canGoNext());
    m_underCard->setCurrentIndex(flipped ? 1 : 0);
    // The remove button cannot keep the focus when its card goes; the card takes it.
    if (onCards && (!m_sessionScreen->isAncestorOf(focusWidget()) || !focusWidget()->isVisible()))
        m_card->setFocus();
}

} // namespace tolvane
