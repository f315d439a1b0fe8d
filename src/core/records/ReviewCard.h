// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/EnumNames.h"
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

inline constexpr EnumNames cardStatusNames{std::array{
    std::pair{CardStatus::new_, "new"},
    std::pair{CardStatus::knowIt, "knowIt"},
    std::pair{CardStatus::reviewAgain, "reviewAgain"},
}};

inline QString rawValue(CardStatus status)
{
    return cardStatusNames.text(status);
}

inline std::optional<CardStatus> cardStatusFromRawValue(const QString& raw)
{
    return cardStatusNames.value(raw);
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
