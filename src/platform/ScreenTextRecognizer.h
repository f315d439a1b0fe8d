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
    QRectF box; // bottom-left-origin points relative to the strip; empty when the engine gave none
};

// One recognised line: its text as read, its box, and its words in reading order.
struct RecognizedLine
{
    QString text;
    QRectF box; // bottom-left-origin points relative to the strip
    QList<RecognizedWord> words;
};

struct RecognizedText
{
    QList<RecognizedLine> lines; // in the engine's order
    QRectF strip;                // the captured strip in screen points
};

// Captures a strip of the screen and recognises the text in it.
class ScreenTextRecognizer
{
public:
    virtual ~ScreenTextRecognizer() = default;

    using Completion = std::function<void(Result<RecognizedText>)>;

    // Whether capturing the screen is allowed.
    virtual bool isCaptureGranted() const = 0;
    virtual bool requestCaptureAccess() = 0;
    // Opens the desktop's screen-capture settings; the error says why there is nothing to open.
    virtual Result<void> openCaptureSettings() = 0;
    // Call on the main thread (the capture happens there). The recognition runs on a worker and
    // completion is called exactly once, on whichever thread finished the work (possibly before
    // this returns, when the capture already failed). languages are locale codes ("en-US",
    // "ru-RU"); the first is the main one.
    virtual void recognizeStrip(QRectF stripInPoints, QStringList languages, Completion completion) = 0;
};

} // namespace tolvane
