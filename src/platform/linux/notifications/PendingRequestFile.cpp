// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/notifications/PendingRequestFile.h"

#include "core/records/RecordJson.h"
#include "core/support/AppPaths.h"
#include "core/support/AtomicFile.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace tolvane {

namespace {

// Dates are kept like those of the record files: seconds since 2001-01-01 00:00:00 UTC.

QJsonObject toJson(const PendingRequest& pending)
{
    const NotificationRequest& r = pending.request;
    QJsonArray actions;
    for (const NotificationAction& action : pending.actions)
        actions.append(
            QJsonObject{{QStringLiteral("identifier"), action.identifier}, {QStringLiteral("title"), action.title}});
    return QJsonObject{
        {QStringLiteral("identifier"), r.identifier},
        {QStringLiteral("title"), r.title},
        {QStringLiteral("body"), r.body},
        {QStringLiteral("sound"), r.sound},
        {QStringLiteral("userInfo"), QJsonObject::fromVariantMap(r.userInfo)},
        {QStringLiteral("categoryIdentifier"), r.categoryIdentifier},
        {QStringLiteral("actions"), actions},
        {QStringLiteral("timeInterval"), r.timeIntervalSeconds},
        {QStringLiteral("dueDate"), RecordJson::secondsSinceReferenceDate(pending.dueDate)},
    };
}

std::optional<PendingRequest> fromJson(const QJsonObject& o)
{
    const QJsonValue identifier = o.value(QStringLiteral("identifier"));
    const QJsonValue due = o.value(QStringLiteral("dueDate"));
    const std::optional<QDateTime> dueDate = RecordJson::dateFromSecondsSinceReferenceDate(due.toDouble());
    if (!identifier.isString() || identifier.toString().isEmpty() || !due.isDouble() || !dueDate)
        return std::nullopt;
    PendingRequest pending;
    NotificationRequest& r = pending.request;
    r.identifier = identifier.toString();
    r.title = o.value(QStringLiteral("title")).toString();
    r.body = o.value(QStringLiteral("body")).toString();
    r.sound = o.value(QStringLiteral("sound")).toBool();
    r.userInfo = o.value(QStringLiteral("userInfo")).toObject().toVariantMap();
    r.categoryIdentifier = o.value(QStringLiteral("categoryIdentifier")).toString();
    r.timeIntervalSeconds = o.value(QStringLiteral("timeInterval")).toDouble();
    for (const QJsonValue& value : o.value(QStringLiteral("actions")).toArray()) {
        const QJsonObject action = value.toObject();
        const QString actionIdentifier = action.value(QStringLiteral("identifier")).toString();
        if (!actionIdentifier.isEmpty())
            pending.actions.append({actionIdentifier, action.value(QStringLiteral("title")).toString()});
    }
    pending.dueDate = *dueDate;
    return pending;
}

} // namespace

PendingRequestFile::PendingRequestFile(QString path)
    : m_path(std::move(path))
{}

Result<QList<PendingRequest>> PendingRequestFile::load() const
{
    QFile file(m_path);
    if (!file.exists())
        return QList<PendingRequest>{};
    if (!file.open(QIODevice::ReadOnly))
        return Error{QStringLiteral("Cannot read %1: %2").arg(m_path, file.errorString())};
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &parseError);
    file.close();
    const QJsonArray entries = document.object().value(QStringLiteral("requests")).toArray();
    if (parseError.error != QJsonParseError::NoError || !document.isObject() ||
        !document.object().value(QStringLiteral("requests")).isArray()) {
        // Keep the unreadable file for the user rather than overwriting it at the next change.
        const QString aside = m_path + QStringLiteral(".unreadable");
        (void)setFileAside(m_path, QStringLiteral(".unreadable"), SetAside::move);
        return Error{QStringLiteral("%1 is not a list of reminders (%2); it was kept as %3")
                         .arg(m_path,
                              parseError.error != QJsonParseError::NoError ? parseError.errorString()
                                                                           : QStringLiteral("no \"requests\" list"),
                              aside)};
    }
    QList<PendingRequest> requests;
    for (const QJsonValue& entry : entries) {
        if (auto pending = fromJson(entry.toObject()))
            requests.append(*pending);
    }
    return requests;
}

Result<void> PendingRequestFile::save(const QList<PendingRequest>& requests) const
{
    if (!ensurePrivateDirectory(QFileInfo(m_path).absolutePath()))
        return Error{QStringLiteral("Cannot create the folder of %1").arg(m_path)};
    QJsonArray entries;
    for (const PendingRequest& pending : requests)
        entries.append(toJson(pending));
    const Result<void> written = writeFileAtomically(
        m_path, QJsonDocument(QJsonObject{{QStringLiteral("version"), 1}, {QStringLiteral("requests"), entries}})
                    .toJson(QJsonDocument::Compact));
    if (!written.ok())
        return Error{QStringLiteral("Cannot write %1").arg(written.error().message)};
    return {};
}

} // namespace tolvane
