// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Transliterator.h"

#include <QHash>

#include <optional>

namespace tolvane {

class FakeTransliterator final : public Transliterator
{
public:
    QHash<QString, QString> pinyinReadings;
    QHash<QString, QString> hiraganaReadings;
    std::optional<QString> pinyin(const QString& text) const override { return find(pinyinReadings, text); }
    std::optional<QString> hiragana(const QString& text) const override { return find(hiraganaReadings, text); }

private:
    static std::optional<QString> find(const QHash<QString, QString>& table, const QString& text)
    {
        if (auto it = table.constFind(text); it != table.cend())
            return *it;
        return std::nullopt;
    }
};

} // namespace tolvane
