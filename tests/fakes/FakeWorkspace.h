// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Workspace.h"

#include <QList>

namespace tolvane {

class FakeWorkspace final : public Workspace
{
public:
    QList<QUrl> opened;
    QString frontmost = QStringLiteral("TextEdit");
    bool openUrl(const QUrl& url) override
    {
        opened.append(url);
        return true;
    }
    QString frontmostApplicationName() const override { return frontmost; }
};

} // namespace tolvane
