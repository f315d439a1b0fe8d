// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/updates/UpdaterManager.h"

#include "core/records/RecordJson.h"
#include "core/setup/Preferences.h"
#include "core/support/Clock.h"
#include "core/support/Logging.h"
#include "platform/UpdateChecker.h"

#include <QPointer>

TOLVANE_DEFINE_LOG(lcUpdaterManager, "UpdaterManager")

namespace tolvane {

namespace {

std::optional<QDateTime> storedDate(const Preferences& preferences, const QString& key)
{
    const std::optional<PreferenceValue> value = preferences.objectForKey(key);
    if (!value || !std::holds_alternative<double>(*value))
        return std::nullopt;
    return RecordJson::dateFromSecondsSinceReferenceDate(std::get<double>(*value));
}

const char* decisionName(UpdateDecision decision)
{
    switch (decision) {
    case UpdateDecision::upToDate:
        return "up to date";
    case UpdateDecision::updateAvailable:
        return "announce it";
    case UpdateDecision::skipped:
        return "skipped by the user";
    case UpdateDecision::remindedLater:
        return "reminder not due";
    }
    return "";
}

const char* kindName(UpdateCheckKind kind)
{
    return kind == UpdateCheckKind::userInitiated ? "asked" : "background";
}

} // namespace

UpdateDecision decideUpdate(const ReleaseVersion& current, const ReleaseVersion& newest,
                            const std::optional<QString>& skippedVersion, const std::optional<QDateTime>& remindAfter,
                            const QDateTime& now, UpdateCheckKind kind)
{
    if (newest <= current)
        return UpdateDecision::upToDate;
    if (kind == UpdateCheckKind::userInitiated)
        return UpdateDecision::updateAvailable;
    if (skippedVersion) {
        const std::optional<ReleaseVersion> skipped = ReleaseVersion::parse(*skippedVersion);
        if (skipped && *skipped == newest)
            return UpdateDecision::skipped;
    }
    if (remindAfter && now < *remindAfter)
        return UpdateDecision::remindedLater;
    return UpdateDecision::updateAvailable;
}

bool isPackageManagedExecutable(const QString& executablePath)
{
    return executablePath.startsWith(QLatin1String("/usr/")) &&
           !executablePath.startsWith(QLatin1String("/usr/local/"));
}

UpdaterManager::UpdaterManager(UpdateChecker& checker, Preferences& preferences, const Clock& clock,
                               QString currentVersion, QObject* parent)
    : QObject(parent)
    , m_checker(checker)
    , m_preferences(preferences)
    , m_clock(clock)
    , m_currentVersion(std::move(currentVersion))
{}

void UpdaterManager::checkForUpdates()
{
    if (m_state.phase == UpdateCheckState::Phase::checking) {
        // A background check the user now asks about becomes theirs: its answer is shown.
        if (m_state.kind == UpdateCheckKind::background) {
            m_state.kind = UpdateCheckKind::userInitiated;
            Q_EMIT stateChanged();
        }
        return;
    }
    start(UpdateCheckKind::userInitiated);
}

void UpdaterManager::checkInBackgroundIfDue()
{
    if (!m_preferences.boolForKey(PreferenceKey::automaticallyCheckForUpdates) ||
        m_state.phase != UpdateCheckState::Phase::idle)
        return;
    const std::optional<QDateTime> last = storedDate(m_preferences, PreferenceKey::lastUpdateCheckDate);
    const QDateTime now = m_clock.now();
    // A last check in the future (the clock was set back) counts as due.
    if (last && *last <= now && last->addSecs(std::chrono::seconds(backgroundCheckInterval).count()) > now)
        return;
    start(UpdateCheckKind::background);
}

void UpdaterManager::start(UpdateCheckKind kind)
{
    ++m_checksStarted;
    const quint64 generation = ++m_generation;
    m_preferences.setDouble(PreferenceKey::lastUpdateCheckDate, RecordJson::secondsSinceReferenceDate(m_clock.now()));
    qCInfo(lcUpdaterManager) << "Checking for updates (" << kindName(kind) << ")";
    setState({UpdateCheckState::Phase::checking, kind, std::nullopt, {}});
    QPointer<UpdaterManager> self(this);
    m_checker.fetchReleaseFeed([self, generation](Result<QByteArray> feed) {
        // The kind is read at the answer: a user may have joined a background check meanwhile.
        if (self)
            self->finish(generation, self->m_state.kind, feed);
    });
}

void UpdaterManager::finish(quint64 generation, UpdateCheckKind kind, const Result<QByteArray>& feed)
{
    if (generation != m_generation || m_state.phase != UpdateCheckState::Phase::checking)
        return;
    const bool shown = kind == UpdateCheckKind::userInitiated;
    if (!feed) {
        qCWarning(lcUpdaterManager).noquote() << "Update check failed:" << feed.error().message;
        setState(shown ? UpdateCheckState{UpdateCheckState::Phase::failed, kind, std::nullopt, feed.error().message}
                       : UpdateCheckState{});
        return;
    }
    Result<ReleaseInfo> release = parseReleaseDescription(feed.value());
    const std::optional<ReleaseVersion> current = ReleaseVersion::parse(m_currentVersion);
    if (release && !current)
        release = Error{QStringLiteral("This copy of Tolvane has no version number (\"%1\").").arg(m_currentVersion)};
    if (!release) {
        qCWarning(lcUpdaterManager).noquote() << "Update check failed:" << release.error().message;
        setState(shown ? UpdateCheckState{UpdateCheckState::Phase::failed, kind, std::nullopt, release.error().message}
                       : UpdateCheckState{});
        return;
    }

    const UpdateDecision decision =
        decideUpdate(*current, release.value().version, m_preferences.stringForKey(PreferenceKey::skippedUpdateVersion),
                     storedDate(m_preferences, PreferenceKey::updateReminderDate), m_clock.now(), kind);
    qCInfo(lcUpdaterManager).noquote() << "Newest release" << release.value().version.text() << "; this is"
                                       << m_currentVersion << "; decision:" << decisionName(decision);
    switch (decision) {
    case UpdateDecision::upToDate:
        setState(shown ? UpdateCheckState{UpdateCheckState::Phase::upToDate, kind, std::nullopt, {}}
                       : UpdateCheckState{});
        return;
    case UpdateDecision::updateAvailable:
        setState({UpdateCheckState::Phase::updateAvailable, kind, std::move(release).value(), {}});
        return;
    case UpdateDecision::skipped:
    case UpdateDecision::remindedLater:
        setState({});
        return;
    }
}

void UpdaterManager::cancel()
{
    if (m_state.phase == UpdateCheckState::Phase::checking) {
        ++m_generation;
        m_checker.cancel();
        qCInfo(lcUpdaterManager) << "Update check cancelled";
    }
    setState({});
}

void UpdaterManager::skipThisVersion()
{
    if (m_state.release) {
        m_preferences.setString(PreferenceKey::skippedUpdateVersion, m_state.release->version.text());
        m_preferences.removeObject(PreferenceKey::updateReminderDate);
    }
    setState({});
}

void UpdaterManager::remindMeLater()
{
    const QDateTime when = m_clock.now().addSecs(std::chrono::seconds(remindLaterDelay).count());
    m_preferences.setDouble(PreferenceKey::updateReminderDate, RecordJson::secondsSinceReferenceDate(when));
    setState({});
}

void UpdaterManager::dismiss()
{
    if (m_state.phase == UpdateCheckState::Phase::checking)
        cancel();
    else
        setState({});
}

void UpdaterManager::setState(UpdateCheckState state)
{
    m_state = std::move(state);
    Q_EMIT stateChanged();
}

} // namespace tolvane
