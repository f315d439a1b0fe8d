// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

namespace tolvane {

struct LanguageHypotheses
{
    QString dominant;                  // a candidate code, or empty when nothing could be told
    QMap<QString, double> probability; // per candidate, summing to about 1
};

// Tells which of a few candidate languages a text is written in.
class LanguageRecognizer
{
public:
    virtual ~LanguageRecognizer() = default;

    // candidates are language codes ("en", "fr", "zh-Hans", …).
    virtual LanguageHypotheses recognize(const QString& text, const QStringList& candidates) const = 0;
};

} // namespace tolvane
