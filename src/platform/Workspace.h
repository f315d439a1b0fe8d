// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QUrl>

namespace tolvane {

// The desktop around Tolvane.
class Workspace
{
public:
    virtual ~Workspace() = default;

    virtual bool openUrl(const QUrl& url) = 0;
    // The name of the application the user is working in, or empty when it cannot be told.
    virtual QString frontmostApplicationName() const = 0;
};

} // namespace tolvane
