// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/ScreenTextRecognizer.h"

#include <QImage>
#include <QThreadPool>

#include <memory>
#include <optional>

namespace tolvane {

// Captures the strip with the screen's own grab and reads it with Tesseract. A strip of UI text
// holds several lines, and reading them all as one block is slow, so the layout is analysed
// first, the line under the strip's centre is cut out, and only that line is read. One engine,
// created on first use and kept, works on one worker thread.
class TesseractScreenTextRecognizer final : public ScreenTextRecognizer
{
public:
    TesseractScreenTextRecognizer();
    ~TesseractScreenTextRecognizer() override;

    bool isCaptureGranted() const override;
    bool requestCaptureAccess() override;
    Result<void> openCaptureSettings() override;
    void recognizeStrip(QRectF stripInPoints, QStringList languages, Completion completion) override;

    // Captures the strip (main thread). The image is in device pixels.
    static Result<QImage> captureStrip(QRectF stripInPoints);
    // Recognises a captured strip on the calling thread, waiting for the engine when it is busy.
    // scale: device pixels per point.
    Result<RecognizedText> recognizeImage(const QImage& image, QRectF stripInPoints, double scale,
                                          const QStringList& languages);

    // Every word of a whole image (a window, say), with its box in the image's pixels, top-left
    // origin. Slow: seconds for a window.
    Result<QList<RecognizedWord>> readWords(const QImage& image, const QStringList& languages);

    // Where a word is seen in a part of the screen (root device pixels): the centre of the last
    // recognised word that equals it, ignoring case and surrounding punctuation.
    std::optional<QPoint> locateWord(const QRect& rootRect, const QString& word, const QStringList& languages);

    // Tesseract's names for the locales it has data for ("ru-RU" → "rus"), the main one first.
    static QStringList engineLanguages(const QStringList& locales);

    struct Engine;

private:
    std::shared_ptr<Engine> m_engine;
    QThreadPool m_worker;
};

} // namespace tolvane
