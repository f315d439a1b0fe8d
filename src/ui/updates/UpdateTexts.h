// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// Every text of the software update window, in one place.
namespace tolvane::UpdateTexts {

inline QString windowTitle()
{
    return QStringLiteral("Software Update");
}
inline QString checking()
{
    return QStringLiteral("Checking for Updates…");
}
inline QString checkingProgress()
{
    return QStringLiteral("Checking for updates");
}
inline QString cancel()
{
    return QStringLiteral("Cancel");
}
inline QString upToDate()
{
    return QStringLiteral("You're up to date!");
}
inline QString newestAvailable(const QString& current)
{
    return QStringLiteral("Tolvane %1 is currently the newest version available.").arg(current);
}
inline QString ok()
{
    return QStringLiteral("OK");
}
inline QString updateAvailable()
{
    return QStringLiteral("A new version of Tolvane is available!");
}
inline QString versionOffer(const QString& newest, const QString& current)
{
    return QStringLiteral("Tolvane %1 is now available—you have %2. Would you like to download it now?")
        .arg(newest, current);
}
inline QString packageManaged()
{
    return QStringLiteral("This copy of Tolvane was installed by your package manager. To update it, use your "
                          "package manager or software centre.");
}
inline QString releaseNotes()
{
    return QStringLiteral("Release Notes:");
}
inline QString noReleaseNotes()
{
    return QStringLiteral("This release comes without notes.");
}
inline QString skipThisVersion()
{
    return QStringLiteral("Skip This Version");
}
inline QString remindMeLater()
{
    return QStringLiteral("Remind Me Later");
}
inline QString download()
{
    return QStringLiteral("Download");
}
inline QString updateError()
{
    return QStringLiteral("Update Error!");
}
inline QString couldNotCheck()
{
    return QStringLiteral("Tolvane could not check for updates.");
}

} // namespace tolvane::UpdateTexts
