// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/ScreenTextRecognizer.h"

namespace tolvane {

class NullScreenTextRecognizer final : public ScreenTextRecognizer
{
public:
    bool isCaptureGranted() const override { return false; }
    bool requestCaptureAccess() override { return false; }
    Result<void> openCaptureSettings() override;
    void recognizeStrip(QRectF, QStringList, Completion completion) override;
};

} // namespace tolvane
