// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/translation/DetectedDirection.h"

#include <QDateTime>
#include <QString>
#include <QUuid>

#include <optional>

namespace tolvane {

enum class CardStatus {
    new_,       // raw value "new": never answered
    knowIt,     // answered "I know this"; no longer reminded
    reviewAgain // answered "Review again", or known but looked up again
};

inline QString rawValue(CardStatus status)
{
    switch (status) {
    case CardStatus::knowIt:
        return QStringLiteral("knowIt");
    case CardStatus::reviewAgain:
        return QStringLiteral("reviewAgain");
    case CardStatus::new_:
        break;
    }
    return QStringLiteral("new");
}

inline std::optional<CardStatus> cardStatusFromRawValue(const QString& raw)
{
    if (raw == QLatin1String("new"))
        return CardStatus::new_;
    if (raw == QLatin1String("knowIt"))
        return CardStatus::knowIt;
    if (raw == QLatin1String("reviewAgain"))
        return CardStatus::reviewAgain;
    return std::nullopt;
}

// One flashcard.
struct ReviewCard
{
    QUuid id;
    QString sourceText;
    QString translation;
    std::optional<QString> targetLanguage;
    std::optional<DetectedDirection> direction;
    std::optional<QString> context;
    CardStatus status = CardStatus::new_;
    QDateTime nextNotificationDate;
    std::optional<QDateTime> lastShownDate;
    QDateTime dateAdded;

    friend bool operator==(const ReviewCard&, const ReviewCard&) = default;
};

} // namespace tolvane
