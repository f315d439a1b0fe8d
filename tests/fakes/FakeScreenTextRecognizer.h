// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fakes/OpenedSettings.h"
#include "platform/ScreenTextRecognizer.h"

#include <QList>
#include <QPair>
#include <QRectF>
#include <QStringList>

namespace tolvane {

class FakeScreenTextRecognizer final : public ScreenTextRecognizer
{
public:
    bool granted = true;
    int accessRequests = 0;
    int settingsOpened = 0;
    QString settingsError; // non-empty: opening the settings fails with it
    QList<QPair<QRectF, QStringList>> requests;
    QList<Completion> completions; // held until the test answers
    bool isCaptureGranted() const override { return granted; }
    bool requestCaptureAccess() override
    {
        ++accessRequests;
        return granted;
    }
    Result<void> openCaptureSettings() override { return openedSettings(settingsOpened, settingsError); }
    void recognizeStrip(QRectF strip, QStringList languages, Completion completion) override
    {
        requests.append({strip, languages});
        completions.append(std::move(completion));
    }
    void answer(int index, Result<RecognizedText> result) { completions.at(index)(std::move(result)); }
};

} // namespace tolvane
