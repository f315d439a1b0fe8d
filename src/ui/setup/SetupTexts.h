// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/PlatformWording.h"

#include <QString>

// The texts of the settings window, the two permission windows and the tray menu, in one place.
// Texts that name the platform go through onThisPlatform(); key symbols through
// keysOnThisPlatform().
namespace tolvane::SetupTexts {

// Window titles, by identifier.
inline QString settingsTitle()
{
    return QStringLiteral("Settings");
}
inline QString accessibilityPermissionTitle()
{
    return QStringLiteral("Accessibility Permission");
}
inline QString screenRecordingPermissionTitle()
{
    return QStringLiteral("Screen Recording Permission");
}

// Settings sections.
inline QString hotkeySection()
{
    return QStringLiteral("Hotkey");
}
inline QString lookupHotkey()
{
    return QStringLiteral("Lookup Hotkey");
}
inline QString appearanceSection()
{
    return QStringLiteral("Appearance");
}
inline QString appearanceCaption()
{
    return QStringLiteral("Choose how Tolvane's windows appear, independent of your system setting.");
}
inline QString updatesSection()
{
    return QStringLiteral("Updates");
}
inline QString automaticUpdateChecks()
{
    return QStringLiteral("Check for updates automatically");
}
inline QString automaticUpdateChecksCaption()
{
    return QStringLiteral("Once a day at most, Tolvane asks its release feed whether a newer version exists. Nothing "
                          "about you or your words is sent. Off, Tolvane only asks when you choose Check for Updates.");
}
inline QString startAtLoginSection()
{
    return QStringLiteral("Start at Login");
}
inline QString startAtLogin()
{
    return QStringLiteral("Start Tolvane when you log in");
}
inline QString startAtLoginCaption()
{
    return QStringLiteral("Tolvane adds itself to the programs your desktop starts when you log in, so the hotkey "
                          "works from the first minute of the day.");
}
inline QString passageSection()
{
    return QStringLiteral("Passage Translation");
}
inline QString passageAutoSave()
{
    return QStringLiteral("Auto-Save Passage Lookups to Review Deck");
}
inline QString passageAutoSaveCaption()
{
    return QStringLiteral("Word lookups are always saved as flashcards. Passage lookups (a selected sentence or "
                          "paragraph) are not, by default, since a selection is often incidental text rather than "
                          "vocabulary worth drilling. Turn this on to save those too.");
}
inline QString accessibilitySection()
{
    return QStringLiteral("Word Mode — Accessibility");
}
inline QString wordHoverLookup()
{
    return QStringLiteral("Word Hover Lookup");
}
inline QString wordHoverCaption()
{
    // Where the accessibility bus carries text on this desktop, instead of the platform's own
    // applications.
    return QStringLiteral("Looks up the word under your cursor using the desktop's accessibility bus. Works in GTK "
                          "and Qt applications, LibreOffice, Firefox, and Chromium-based applications once their "
                          "accessibility switch is on (--force-renderer-accessibility). Tolvane only reads the "
                          "label of the element directly under your cursor — nothing is ever sent anywhere; a "
                          "successful lookup is saved locally to your Review Deck, same as every other word "
                          "lookup.");
}
inline QString ocrSection()
{
    return QStringLiteral("Word Mode — OCR Fallback");
}
inline QString ocrFallback()
{
    return QStringLiteral("OCR Fallback for Word Lookup");
}
inline QString ocrCaption()
{
    return QStringLiteral("When the word under your cursor isn't readable via accessibility info (common on some web "
                          "pages), capture a small area around your cursor and read the text directly. Requires "
                          "Screen Recording permission. Only a small region is ever captured, never a full "
                          "screenshot — the captured image itself is discarded immediately and never saved or sent "
                          "anywhere; only the recognized word, when found, is saved locally to your Review Deck, "
                          "same as every other word lookup.");
}
inline QString ocrLockedNote()
{
    return QStringLiteral("Grant Screen Recording access to enable this toggle.");
}
inline QString durationSection()
{
    return QStringLiteral("Overlay Duration");
}
inline QString durationCaption()
{
    return QStringLiteral("Minimum reading time (floor) for a quick tap, and maximum time (ceiling) before the "
                          "overlay auto-closes while held.");
}
inline QString wordDuration()
{
    return QStringLiteral("Word lookup");
}
inline QString passageDuration()
{
    return QStringLiteral("Passage translation");
}
inline QString notificationsSection()
{
    return QStringLiteral("Notifications");
}
inline QString reminderFrequency()
{
    return QStringLiteral("Reminder Frequency");
}
inline QString notificationsPermitted()
{
    return QStringLiteral("Notifications permitted");
}
inline QString notificationsNotPermitted()
{
    return QStringLiteral("Notifications not permitted");
}
inline QString openNotificationSettings()
{
    return onThisPlatform(QStringLiteral("Open System Settings"));
}

// Permission rows.
inline QString accessibilityName()
{
    return QStringLiteral("Accessibility");
}
inline QString screenRecordingName()
{
    return QStringLiteral("Screen Recording");
}
inline QString granted(const QString& name)
{
    return name + QStringLiteral(" granted");
}
inline QString notGranted(const QString& name)
{
    return name + QStringLiteral(" not granted");
}
inline QString requestAccess()
{
    return QStringLiteral("Request Access");
}
inline QString openSettings()
{
    return QStringLiteral("Open Settings");
}

// The accessibility permission window.
inline QString accessibilityHeader()
{
    return QStringLiteral("Hover Mode Needs Accessibility Access");
}
inline QString accessibilityWhy()
{
    return QStringLiteral("Tolvane uses Accessibility access to read selected text and the UI element under your "
                          "cursor when you press the lookup hotkey.");
}
inline QString accessibilityOnlyThat()
{
    return QStringLiteral("Tolvane does not use this access for anything else. It reads text only when you press "
                          "your configured lookup hotkey.");
}
inline QString accessibilityGranted()
{
    return QStringLiteral("Accessibility access granted");
}
inline QString accessibilityNotGranted()
{
    return QStringLiteral("Accessibility access not granted yet");
}
inline QString requestAccessibility()
{
    return QStringLiteral("Request Accessibility Access");
}
inline QString requestAccessibilityCaption()
{
    // On this desktop "access" is the accessibility bus being switched on for the session.
    return QStringLiteral("This switches on the desktop's accessibility bus, through which applications share "
                          "their text, and keeps it on for your next sessions. Applications that were already "
                          "running (Qt and Chromium-based ones) show their text only after a restart.");
}
inline QString openAccessibilitySettings()
{
    return onThisPlatform(QStringLiteral("Open System Settings → Accessibility manually"));
}
inline QString afterGranting()
{
    return QStringLiteral("After granting, switch back to Tolvane — this should update automatically within a "
                          "couple seconds.");
}

// The screen recording permission window.
inline QString screenRecordingHeader()
{
    return QStringLiteral("OCR Fallback Needs Screen Recording Access");
}
inline QString screenRecordingWhy()
{
    return QStringLiteral("Most UI text has an Accessibility label Tolvane can read directly. Some custom-drawn UI "
                          "and web content doesn't — for those cases, hover mode falls back to capturing a small "
                          "region around your cursor and running on-device text recognition on it. That capture "
                          "requires Screen Recording access, which is a separate permission from Accessibility.");
}
inline QString screenRecordingOnlyThat()
{
    return QStringLiteral("Tolvane only captures a small (~600×72pt) region around your cursor after you press the "
                          "lookup hotkey and an element has no accessible label — never a full screenshot. The "
                          "captured image itself is discarded immediately and never saved or sent anywhere; only "
                          "the recognized word, when found, is saved locally to your Review Deck, same as every "
                          "other word lookup.");
}
inline QString screenRecordingGranted()
{
    return QStringLiteral("Screen Recording access granted");
}
inline QString screenRecordingNotGranted()
{
    return QStringLiteral("Screen Recording access not granted yet");
}
inline QString openScreenRecordingSettings()
{
    return onThisPlatform(QStringLiteral("Open System Settings → Screen Recording"));
}
inline QString screenRecordingRestart()
{
    return onThisPlatform(QStringLiteral("macOS may require quitting and reopening Tolvane after granting this one."));
}
// X11 lets every client read the screen: there is nothing to grant.
inline QString screenRecordingAlwaysGranted()
{
    return QStringLiteral("On this desktop (X11) every application may read the screen, so there is nothing to "
                          "grant: the OCR fallback works as soon as it is switched on.");
}

// The tray menu.
inline QString enabled()
{
    return QStringLiteral("Tolvane Enabled");
}
inline QString disabled()
{
    return QStringLiteral("Tolvane Disabled");
}
inline QString targetLanguage()
{
    return QStringLiteral("Target Language");
}
inline QString openReviewDeck()
{
    return QStringLiteral("Open Review Deck");
}
inline QString usageStats()
{
    return QStringLiteral("Usage Stats");
}
inline QString setupGuide()
{
    return QStringLiteral("Setup Guide");
}
inline QString settingsItem()
{
    return QStringLiteral("Settings…");
}
inline QString checkForUpdates()
{
    return QStringLiteral("Check for Updates…");
}
inline QString shareTolvane()
{
    return QStringLiteral("Share Tolvane…");
}
inline QString quit()
{
    return QStringLiteral("Quit");
}

} // namespace tolvane::SetupTexts
