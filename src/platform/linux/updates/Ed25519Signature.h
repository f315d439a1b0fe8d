// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

namespace tolvane {

// Whether signature (64 bytes) is the Ed25519 signature of message under publicKey (32 raw bytes).
// Any malformed input is simply not a valid signature.
bool isValidEd25519Signature(const QByteArray& publicKey, const QByteArray& message, const QByteArray& signature);

} // namespace tolvane
