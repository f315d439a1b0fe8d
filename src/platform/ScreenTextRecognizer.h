// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/Result.h"

#include <QList>
#include <QRectF>
#include <QString>
#include <QStringList>

#include <functional>

namespace tolvane {

struct RecognizedWord
{
    QString text;
    QRectF box;        // bottom-left-origin points, relative to the captured strip
    int lineIndex = 0; // words with the same index stand on one line
};

struct RecognizedText
{
    QList<RecognizedWord> words;
    QRectF strip; // the captured strip in screen points
};

// Captures a strip of the screen and recognises the words in it.
class ScreenTextRecognizer
{
public:
    virtual ~ScreenTextRecognizer() = default;

    using Completion = std::function<void(Result<RecognizedText>)>;

    // Whether capturing the screen is allowed.
    virtual bool isCaptureGranted() const = 0;
    virtual bool requestCaptureAccess() = 0;
    // Runs off the main thread; completion is called exactly once, on the main thread.
    virtual void recognizeStrip(QRectF stripInPoints, QStringList languages, Completion completion) = 0;
};

} // namespace tolvane
