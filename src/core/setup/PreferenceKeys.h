// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLatin1String>

// The one list of preference keys. Every reader and writer uses these names.
namespace tolvane::PreferenceKey {

inline constexpr QLatin1String translationHelperEnabled("translationHelperEnabled");
inline constexpr QLatin1String targetLanguage("targetLanguage");
inline constexpr QLatin1String onboardingComplete("onboardingComplete");
inline constexpr QLatin1String axWordLookupEnabled("axWordLookupEnabled");
inline constexpr QLatin1String ocrFallbackEnabled("ocrFallbackEnabled");
inline constexpr QLatin1String passageAutoSaveEnabled("passageAutoSaveEnabled");
inline constexpr QLatin1String wordOverlayDurationSeconds("wordOverlayDurationSeconds");
inline constexpr QLatin1String passageOverlayDurationSeconds("passageOverlayDurationSeconds");
inline constexpr QLatin1String notificationIntervalHours("notificationIntervalHours");
inline constexpr QLatin1String notificationPermissionGranted("notificationPermissionGranted");
inline constexpr QLatin1String customHotkeyKeyCode("customHotkeyKeyCode");
inline constexpr QLatin1String customHotkeyModifiers("customHotkeyModifiers");
inline constexpr QLatin1String appearanceMode("appearanceMode");
inline constexpr QLatin1String successfulWordLookupCount("successfulWordLookupCount");
inline constexpr QLatin1String shownLookupMilestones("shownLookupMilestones");
// The update check: off by default, so Tolvane goes on the network only when asked.
inline constexpr QLatin1String automaticallyCheckForUpdates("automaticallyCheckForUpdates");
inline constexpr QLatin1String lastUpdateCheckDate("lastUpdateCheckDate");
inline constexpr QLatin1String skippedUpdateVersion("skippedUpdateVersion");
inline constexpr QLatin1String updateReminderDate("updateReminderDate");

} // namespace tolvane::PreferenceKey
