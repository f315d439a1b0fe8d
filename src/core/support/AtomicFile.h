// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/Result.h"

#include <QByteArray>
#include <QString>

namespace tolvane {

// Replaces the whole file at path so that no reader and no crash ever sees half of it: the bytes
// go to a temporary file beside it, are synced to the disk, and take the old file's place in one
// rename. The file is readable by the user alone. A failure leaves the old file as it was.
Result<void> writeFileAtomically(const QString& path, const QByteArray& bytes);

enum class SetAside { move, copy };

// ".corrupt-<UUID>": a name no earlier recovery copy can be in the way of.
QString recoveryCopySuffix();

// Keeps a file Tolvane cannot read for the user, as path + suffix, so the next write cannot
// destroy it: moved (a file or a folder) or copied. Gives the copy's path.
Result<QString> setFileAside(const QString& path, const QString& suffix, SetAside how);

} // namespace tolvane
