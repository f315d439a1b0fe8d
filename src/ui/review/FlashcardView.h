// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>
#include <QPixmap>
#include <QPointer>

#include <optional>

class QLabel;
class QStackedLayout;
class QVariantAnimation;

namespace tolvane {

struct ReviewCard;

// The card of the review window: the word on the front; on the back the word small, the
// translation large, its reading and the sentence it came from. A click turns it over. To the
// accessibility bus it is a button named after the face on show.
class FlashcardView final : public QAbstractButton
{
    Q_OBJECT
public:
    explicit FlashcardView(QWidget* parent = nullptr);
    ~FlashcardView() override;

    // Shows card with the given face up; animate turns it over visibly when the face changes.
    void showCard(const ReviewCard& card, const std::optional<QString>& reading, bool flipped, bool animate);
    bool showsBack() const { return m_flipped; }
    bool isTurning() const;

    // Texts longer than this are cut on the card; nobody reads an essay on a flashcard.
    static constexpr qsizetype longestShownText = 280;

    // The flip's length: a spring that settles in about this time.
    static constexpr int flipMilliseconds = 450;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void fitTranslation();
    void startTurn(const QPixmap& from);

    QStackedLayout* m_faces;
    // Qt::PlainText, all of them: they show the user's words, translations and sentences.
    QLabel* m_front;
    QLabel* m_backSource;
    QLabel* m_translation;
    QLabel* m_reading;
    QLabel* m_context;
    QWidget* m_turnOverlay;
    QPointer<QVariantAnimation> m_turn;
    QPixmap m_turnFrom;
    QPixmap m_turnTo;
    qreal m_turnProgress = 1.0;
    bool m_flipped = false;
    QString m_cardKey;
    QString m_translationLanguage;

    friend class FlashcardTurnOverlay;
};

} // namespace tolvane
