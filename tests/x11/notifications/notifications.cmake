# SPDX-License-Identifier: GPL-3.0-or-later
# The reminder test finds the notification server's buttons through the accessibility bus.
pkg_check_modules(REMINDER_TEST_ATSPI REQUIRED IMPORTED_TARGET atspi-2 gobject-2.0)
target_link_libraries(tst_ReminderNotifications PRIVATE PkgConfig::REMINDER_TEST_ATSPI)
