// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tolvane {

class AppDelegate;
class Clock;
class Preferences;
struct PlatformServices;

// The review window in the running Tolvane: `tolvane open review`, the reminder click and the tray
// all reach the one window manager made here, kept by the application delegate.
void wireReview(AppDelegate& app, PlatformServices& services, const Preferences& preferences, const Clock& clock);
// Opens (or raises) the review window wired into app; nothing before wireReview.
void showReviewWindow(AppDelegate& app);

} // namespace tolvane
