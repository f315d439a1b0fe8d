// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/overlay/OverlayText.h"

namespace tolvane::overlay {

QString displayText(const QString& text, qsizetype limit)
{
    qsizetype length = std::min(text.size(), std::max<qsizetype>(limit, 0));
    if (length < text.size() && length > 0 && text.at(length).isLowSurrogate() && text.at(length - 1).isHighSurrogate())
        --length;
    QString result = text.left(length);
    const qsizetype size = result.size();
    for (qsizetype i = 0; i < size; ++i) {
        const QChar c = result.at(i);
        if (c.isHighSurrogate() && i + 1 < size && result.at(i + 1).isLowSurrogate()) {
            ++i;
            continue;
        }
        if (c.isSurrogate())
            result[i] = QChar::ReplacementCharacter;
    }
    if (length < text.size())
        result += QStringLiteral("…");
    return result;
}

} // namespace tolvane::overlay
