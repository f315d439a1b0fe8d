// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/LanguageRecognizer.h"

#include <QHash>
#include <QMutex>
#include <QString>

#include <memory>

namespace tolvane {

class LanguageModel;

// Tells languages apart by script, by what each language's dictionaries and running text say
// about every word, and by character n-grams. A word that is a confirmed word of two candidates
// ("hotel", "piano") leaves both near one half, so callers that need 0.6 abstain.
// Safe to call from several threads (the text-recognition fallback asks from a worker).
class LanguageModelRecognizer final : public LanguageRecognizer
{
public:
    // modelDirectory holds one "<code>.langmodel" per language; models load on first use.
    explicit LanguageModelRecognizer(QString modelDirectory);
    ~LanguageModelRecognizer() override;

    // The directory of the compiled models: $TOLVANE_LANGUAGE_MODEL_DIR, the build tree, or the
    // installed copy, whichever has them.
    static QString defaultModelDirectory();

    LanguageHypotheses recognize(const QString& text, const QStringList& candidates) const override;

    // The model for a code, loading it on first use; nullptr when there is none.
    const LanguageModel* model(const QString& code) const;

private:
    QString m_directory;
    mutable QMutex m_modelsMutex;
    mutable QHash<QString, std::shared_ptr<LanguageModel>> m_models;
};

} // namespace tolvane
