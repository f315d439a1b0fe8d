// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace tolvane {

// Whole passages through Apertium's rule-based pairs: English and Spanish directly, French,
// Italian and Portuguese by way of Spanish. Other pairs have no route and get the word-by-word
// gloss instead. The pipeline runs as the "apertium" program, once per passage.
class ApertiumPassageTranslator final
{
public:
    // The Apertium modes to chain for a pair, or an empty list when there is no route.
    static QStringList route(const QString& source, const QString& target);
    // True when the route's modes are installed.
    static bool isAvailable(const QString& source, const QString& target);
    // The translation, or nothing when Apertium is missing, fails or takes unreasonably long.
    static std::optional<QString> translate(const QString& text, const QString& source, const QString& target);
};

} // namespace tolvane
