// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/notifications/DesktopNotificationCenter.h"

#include "core/support/AppPaths.h"
#include "core/support/Logging.h"
#include "core/support/QtScheduler.h"
#include "platform/linux/notifications/DbusNotificationServer.h"

#include <QGuiApplication>

#include <algorithm>

TOLVANE_DEFINE_LOG(lcNotificationCenter, "NotificationCenter")

namespace tolvane {

namespace {

const QString defaultActionKey = QStringLiteral("default");

} // namespace

DesktopNotificationCenter::DesktopNotificationCenter(std::unique_ptr<NotificationServer> server,
                                                     QString pendingFilePath, Scheduler& scheduler, const Clock& clock,
                                                     ActiveCheck applicationIsActive)
    : m_server(std::move(server))
    , m_file(std::move(pendingFilePath))
    , m_scheduler(scheduler)
    , m_clock(clock)
    , m_applicationIsActive(std::move(applicationIsActive))
{
    Result<QList<PendingRequest>> loaded = m_file.load();
    if (loaded)
        m_pending = std::move(loaded).value();
    else
        qCWarning(lcNotificationCenter).noquote() << loaded.error().message;

    const Lifetime::Watch alive = m_lifetime.watch();
    m_server->setHandlers(
        [this, alive](quint32 id, const QString& actionKey) {
            if (alive)
                actionInvoked(id, actionKey);
        },
        [this, alive](quint32 id) {
            if (alive)
                m_delivered.remove(id);
        });
    // Reminders that came due while Tolvane was not running are handled by the first check.
    arm();
}

QString DesktopNotificationCenter::defaultPendingFilePath()
{
    return dataDirectory() + QStringLiteral("/pending_reminders.json");
}

std::unique_ptr<DesktopNotificationCenter> DesktopNotificationCenter::forSessionBus()
{
    auto scheduler = std::make_unique<QtScheduler>();
    auto clock = std::make_unique<SystemClock>();
    auto center = std::make_unique<DesktopNotificationCenter>(
        std::make_unique<DbusNotificationServer>(), defaultPendingFilePath(), *scheduler, *clock,
        [] { return QGuiApplication::applicationState() == Qt::ApplicationActive; });
    center->m_ownedScheduler = std::move(scheduler);
    center->m_ownedClock = std::move(clock);
    return center;
}

DesktopNotificationCenter::~DesktopNotificationCenter()
{
    m_timer.cancel();
    if (m_unsaved)
        writeFile();
}

QString DesktopNotificationCenter::escapedBody(const QString& text)
{
    return text.toHtmlEscaped();
}

ServerNotification DesktopNotificationCenter::serverNotification(const PendingRequest& pending, bool bodyMarkup)
{
    ServerNotification n;
    // The summary is plain text for every server; only the body may be read as markup.
    n.summary = pending.request.title;
    n.body = bodyMarkup ? escapedBody(pending.request.body) : pending.request.body;
    n.actions = QStringList{defaultActionKey, QStringLiteral("Open")};
    for (const NotificationAction& action : pending.actions)
        n.actions << action.identifier << action.title;
    n.sound = pending.request.sound;
    return n;
}

void DesktopNotificationCenter::setDelegate(NotificationCenterDelegate* delegate)
{
    m_delegate = delegate;
}

void DesktopNotificationCenter::setCategories(const QList<NotificationCategory>& categories)
{
    m_categories = categories;
}

void DesktopNotificationCenter::add(const NotificationRequest& request, Completion completion)
{
    PendingRequest pending;
    pending.request = request;
    for (const NotificationCategory& category : std::as_const(m_categories)) {
        if (category.identifier == request.categoryIdentifier)
            pending.actions = category.actions;
    }
    pending.dueDate = m_clock.now().addMSecs(qint64(request.timeIntervalSeconds * 1000.0));
    m_pending.removeIf([&](const PendingRequest& p) { return p.request.identifier == request.identifier; });
    m_pending.append(pending);
    persist();
    arm();
    if (completion)
        completion(QString());
}

void DesktopNotificationCenter::pendingRequests(std::function<void(QList<NotificationRequest>)> completion)
{
    QList<NotificationRequest> requests;
    requests.reserve(m_pending.size());
    for (const PendingRequest& pending : std::as_const(m_pending))
        requests.append(pending.request);
    completion(requests);
}

void DesktopNotificationCenter::removePendingRequests(const QStringList& identifiers)
{
    const auto removed =
        m_pending.removeIf([&](const PendingRequest& p) { return identifiers.contains(p.request.identifier); });
    if (removed > 0) {
        persist();
        arm();
    }
}

void DesktopNotificationCenter::deliveredNotifications(std::function<void(QList<DeliveredNotification>)> completion)
{
    QList<DeliveredNotification> list;
    for (const Delivered& d : std::as_const(m_delivered))
        list.append({d.request.identifier, d.request.userInfo});
    completion(list);
}

void DesktopNotificationCenter::removeDeliveredNotifications(const QStringList& identifiers)
{
    for (auto it = m_delivered.begin(); it != m_delivered.end();) {
        if (identifiers.contains(it->request.identifier)) {
            m_server->close(it.key());
            it = m_delivered.erase(it);
        } else {
            ++it;
        }
    }
}

void DesktopNotificationCenter::authorizationStatus(std::function<void(NotificationAuthorization)> completion)
{
    checkAuthorization([completion](bool granted, const QString&) {
        completion(granted ? NotificationAuthorization::authorized : NotificationAuthorization::denied);
    });
}

void DesktopNotificationCenter::requestAuthorization(std::function<void(bool granted, const QString& error)> completion)
{
    // There is nobody to ask on this desktop: a server that can show the answer buttons is the
    // permission.
    checkAuthorization(std::move(completion));
}

void DesktopNotificationCenter::checkAuthorization(std::function<void(bool granted, const QString& error)> reply)
{
    m_server->capabilities([reply](std::optional<QStringList> capabilities, const QString& error) {
        if (!capabilities) {
            const QString reason = QStringLiteral("No notification server answers on this desktop (%1)").arg(error);
            qCWarning(lcNotificationCenter).noquote() << reason;
            reply(false, reason);
            return;
        }
        if (!capabilities->contains(QStringLiteral("actions"))) {
            const QString reason = QStringLiteral("The desktop's notification server cannot show answer buttons");
            qCWarning(lcNotificationCenter).noquote() << reason;
            reply(false, reason);
            return;
        }
        reply(true, QString());
    });
}

void DesktopNotificationCenter::persist()
{
    // A plan adds its reminders one after another within one turn of the main loop: one write
    // for all of them.
    if (m_unsaved)
        return;
    m_unsaved = true;
    const Lifetime::Watch alive = m_lifetime.watch();
    m_scheduler.post([this, alive] {
        if (alive)
            writeFile();
    });
}

void DesktopNotificationCenter::writeFile()
{
    m_unsaved = false;
    if (Result<void> saved = m_file.save(m_pending); !saved)
        qCWarning(lcNotificationCenter).noquote() << saved.error().message;
}

void DesktopNotificationCenter::arm()
{
    m_timer.cancel();
    m_timer = {};
    if (m_pending.isEmpty() || m_delivering)
        return;
    QDateTime next = std::min_element(m_pending.cbegin(), m_pending.cend(), [](const auto& a, const auto& b) {
                         return a.dueDate < b.dueDate;
                     })->dueDate;
    if (m_retryAt.isValid() && next < m_retryAt)
        next = m_retryAt;
    const qint64 wait =
        std::clamp<qint64>(m_clock.now().msecsTo(next), 0, std::chrono::duration_cast<Duration>(longestWait).count());
    const Lifetime::Watch alive = m_lifetime.watch();
    m_timer = m_scheduler.singleShot(Duration(wait), [this, alive] {
        if (alive)
            deliverDue();
    });
}

void DesktopNotificationCenter::deliverDue()
{
    const QDateTime now = m_clock.now();
    if (m_delivering || (m_retryAt.isValid() && now < m_retryAt)) {
        arm();
        return;
    }
    // Of the requests that are due together, only the latest is shown. Together means: Tolvane
    // was not running, or the machine was asleep, while they came due. A burst of stale reminders
    // helps nobody; the newest one is the one the plan meant for now.
    int latest = -1;
    for (int i = 0; i < m_pending.size(); ++i) {
        if (m_pending.at(i).dueDate <= now && (latest < 0 || m_pending.at(i).dueDate >= m_pending.at(latest).dueDate))
            latest = i;
    }
    if (latest < 0) {
        arm();
        return;
    }
    const PendingRequest chosen = m_pending.at(latest);
    const auto dropped = m_pending.removeIf(
        [&](const PendingRequest& p) { return p.dueDate <= now && p.request.identifier != chosen.request.identifier; });
    if (dropped > 0) {
        qCInfo(lcNotificationCenter).noquote()
            << (dropped == 1
                    ? QStringLiteral(
                          "Skipped 1 reminder that came due while it could not be shown; the latest one is shown")
                    : QStringLiteral("Skipped %1 reminders that came due while they could not be shown; the "
                                     "latest one is shown")
                          .arg(dropped));
        persist();
    }
    deliver(chosen);
}

void DesktopNotificationCenter::deliver(const PendingRequest& pending)
{
    m_delivering = true;
    const Lifetime::Watch alive = m_lifetime.watch();
    m_server->capabilities([this, alive, pending](std::optional<QStringList> capabilities, const QString& error) {
        if (!alive)
            return;
        if (!capabilities) {
            deliveryFailed(error);
            return;
        }
        const bool markup = capabilities->contains(QStringLiteral("body-markup"));
        m_server->notify(serverNotification(pending, markup),
                         [this, alive, pending](std::optional<quint32> id, const QString& notifyError) {
                             if (!alive)
                                 return;
                             if (id)
                                 delivered(pending, *id);
                             else
                                 deliveryFailed(notifyError);
                         });
    });
}

void DesktopNotificationCenter::delivered(const PendingRequest& pending, quint32 id)
{
    m_delivering = false;
    m_retryAt = {};
    if (!m_lastDeliveryError.isEmpty()) {
        qCInfo(lcNotificationCenter) << "The notification server answers again; reminders are shown";
        m_lastDeliveryError.clear();
    }
    // Planning may have replaced the request while the server was busy; only this one goes.
    if (m_pending.removeAll(pending) > 0)
        persist();
    m_delivered.insert(id, Delivered{pending.request});
    if (m_delegate && m_applicationIsActive && m_applicationIsActive())
        m_delegate->willPresent(pending.request);
    arm();
}

void DesktopNotificationCenter::deliveryFailed(const QString& error)
{
    m_delivering = false;
    if (error != m_lastDeliveryError) {
        qCWarning(lcNotificationCenter).noquote()
            << QStringLiteral("Reminder kept until the notification server answers: %1").arg(error);
        m_lastDeliveryError = error;
    }
    m_retryAt = m_clock.now().addSecs(std::chrono::seconds(retryDelay).count());
    arm();
}

void DesktopNotificationCenter::actionInvoked(quint32 id, const QString& actionKey)
{
    const auto it = m_delivered.constFind(id);
    if (it == m_delivered.cend())
        return; // another application's notification
    NotificationResponse response;
    response.actionIdentifier =
        actionKey == defaultActionKey ? NotificationResponse::defaultActionIdentifier : actionKey;
    response.requestIdentifier = it->request.identifier;
    response.userInfo = it->request.userInfo;
    m_delivered.erase(it);
    // Some servers keep a notification up after an answer; it has done its work.
    m_server->close(id);
    if (m_delegate)
        m_delegate->didReceive(response);
}

} // namespace tolvane
