// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/null/NullScreenTextRecognizer.h"

namespace tolvane {

namespace {
const QString noDesktop = QStringLiteral("No desktop is available in this session.");
}

Result<void> NullScreenTextRecognizer::openCaptureSettings()
{
    return Error{noDesktop};
}

void NullScreenTextRecognizer::recognizeStrip(QRectF, QStringList, Completion completion)
{
    completion(Error{QStringLiteral("Screen capture is not available in this session.")});
}

} // namespace tolvane
