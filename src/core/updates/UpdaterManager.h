// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/updates/ReleaseFeed.h"

#include <QDateTime>
#include <QObject>
#include <QString>

#include <chrono>
#include <optional>

namespace tolvane {

class Clock;
class Preferences;
class UpdateChecker;

enum class UpdateCheckKind {
    userInitiated, // "Check for Updates…": every outcome is shown
    background,    // the optional daily check: only a release the user has not put off is shown
};

enum class UpdateDecision {
    upToDate,
    updateAvailable,
    skipped,       // the user chose "Skip This Version" for exactly this release
    remindedLater, // the user chose "Remind Me Later" and the reminder is not due yet
};

// What a check of the feed means for this copy of Tolvane. A user who asks gets a skipped or
// postponed release shown all the same; only a background check keeps quiet about it.
UpdateDecision decideUpdate(const ReleaseVersion& current, const ReleaseVersion& newest,
                            const std::optional<QString>& skippedVersion, const std::optional<QDateTime>& remindAfter,
                            const QDateTime& now, UpdateCheckKind kind);

// A binary installed by the package manager (under /usr, not /usr/local) is updated there.
bool isPackageManagedExecutable(const QString& executablePath);

struct UpdateCheckState
{
    enum class Phase {
        idle,
        checking,
        upToDate,
        updateAvailable,
        failed,
    };
    Phase phase = Phase::idle;
    UpdateCheckKind kind = UpdateCheckKind::userInitiated;
    std::optional<ReleaseInfo> release; // updateAvailable
    QString error;                      // failed
};

// The owner of the update check. One instance lives for the rest of the process once the user
// first asks for a check; it runs each check through the platform's UpdateChecker, decides what
// the answer means, and keeps the user's "Skip This Version" and "Remind Me Later" in the
// preferences. Main thread only.
class UpdaterManager final : public QObject
{
    Q_OBJECT
public:
    static constexpr std::chrono::hours remindLaterDelay{24};
    static constexpr std::chrono::hours backgroundCheckInterval{24};

    UpdaterManager(UpdateChecker& checker, Preferences& preferences, const Clock& clock, QString currentVersion,
                   QObject* parent = nullptr);

    const QString& currentVersion() const { return m_currentVersion; }
    const UpdateCheckState& state() const { return m_state; }
    // How many checks have gone to the feed since the instance was made.
    int checksStarted() const { return m_checksStarted; }

    // A check the user asked for. While one runs, asking again changes nothing.
    void checkForUpdates();
    // The daily check, when the user has switched it on and the last check is a day old.
    void checkInBackgroundIfDue();
    // Stops the running check; the state goes back to idle.
    void cancel();

    // The answers to an announced release; each ends the dialog (state idle).
    void skipThisVersion();
    void remindMeLater();
    void dismiss();

Q_SIGNALS:
    void stateChanged();

private:
    void start(UpdateCheckKind kind);
    void finish(quint64 generation, UpdateCheckKind kind, const Result<QByteArray>& feed);
    void setState(UpdateCheckState state);

    UpdateChecker& m_checker;
    Preferences& m_preferences;
    const Clock& m_clock;
    QString m_currentVersion;
    UpdateCheckState m_state;
    quint64 m_generation = 0;
    int m_checksStarted = 0;
};

} // namespace tolvane
