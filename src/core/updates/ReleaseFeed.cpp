// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/updates/ReleaseFeed.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>

namespace tolvane {

namespace {

// "localhost", "::1" or an address of 127.0.0.0/8, as QUrl gives the host (lower case, no brackets).
bool isLoopbackHost(const QString& host)
{
    if (host == QLatin1String("localhost") || host == QLatin1String("::1"))
        return true;
    const QStringList parts = host.split(u'.');
    if (parts.size() != 4 || parts.first() != QLatin1String("127"))
        return false;
    for (const QString& part : parts) {
        bool number = false;
        const uint value = part.toUInt(&number);
        if (!number || value > 255 || part.size() > 3)
            return false;
    }
    return true;
}

Error invalidFeed(const QString& why)
{
    return Error{QStringLiteral("The update feed is not valid: %1.").arg(why)};
}

std::optional<QByteArray> strictBase64(const QJsonValue& value)
{
    if (!value.isString())
        return std::nullopt;
    auto decoded = QByteArray::fromBase64Encoding(value.toString().toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        return std::nullopt;
    return *decoded;
}

Result<QJsonObject> jsonObject(const QByteArray& document, const QString& what)
{
    QJsonParseError error;
    const QJsonDocument json = QJsonDocument::fromJson(document, &error);
    if (error.error != QJsonParseError::NoError)
        return invalidFeed(
            QStringLiteral("the %1 is not JSON (%2 at byte %3)").arg(what, error.errorString()).arg(error.offset));
    if (!json.isObject())
        return invalidFeed(QStringLiteral("the %1 is not a JSON object").arg(what));
    return json.object();
}

} // namespace

bool isAllowedFeedAddress(const QUrl& address)
{
    if (!address.isValid() || address.host().isEmpty() || !address.userInfo().isEmpty())
        return false;
    const QString scheme = address.scheme().toLower();
    if (scheme == QLatin1String("https"))
        return true;
    return scheme == QLatin1String("http") && isLoopbackHost(address.host());
}

bool isAllowedFeedRedirect(const QUrl& from, const QUrl& to)
{
    if (!isAllowedFeedAddress(to))
        return false;
    const bool fromSecure = from.scheme().compare(QLatin1String("https"), Qt::CaseInsensitive) == 0;
    const bool toSecure = to.scheme().compare(QLatin1String("https"), Qt::CaseInsensitive) == 0;
    return toSecure || !fromSecure;
}

Result<SignedFeed> parseSignedFeed(const QByteArray& document)
{
    Result<QJsonObject> envelope = jsonObject(document, QStringLiteral("feed"));
    if (!envelope)
        return envelope.error();
    const std::optional<QByteArray> payload = strictBase64(envelope.value().value(QLatin1String("payload")));
    if (!payload || payload->isEmpty())
        return invalidFeed(QStringLiteral("it has no payload in base64"));
    const std::optional<QByteArray> signature = strictBase64(envelope.value().value(QLatin1String("signature")));
    if (!signature || signature->isEmpty())
        return invalidFeed(QStringLiteral("it has no signature in base64"));
    return SignedFeed{*payload, *signature};
}

Result<ReleaseInfo> parseReleaseDescription(const QByteArray& payload)
{
    Result<QJsonObject> parsed = jsonObject(payload, QStringLiteral("release description"));
    if (!parsed)
        return parsed.error();
    const QJsonObject& description = parsed.value();

    const QJsonValue versionValue = description.value(QLatin1String("version"));
    if (!versionValue.isString())
        return invalidFeed(QStringLiteral("it names no version"));
    const std::optional<ReleaseVersion> version = ReleaseVersion::parse(versionValue.toString());
    if (!version)
        return invalidFeed(QStringLiteral("\"%1\" is not a version number").arg(versionValue.toString().left(64)));

    const QJsonValue notes = description.value(QLatin1String("notes"));
    if (!notes.isUndefined() && !notes.isString())
        return invalidFeed(QStringLiteral("its release notes are not text"));

    const QUrl download(description.value(QLatin1String("download")).toString(), QUrl::StrictMode);
    if (download.scheme() != QLatin1String("https") || !isAllowedFeedAddress(download))
        return invalidFeed(QStringLiteral("its download page is not an https address"));

    QDateTime published;
    const QJsonValue publishedValue = description.value(QLatin1String("published"));
    if (!publishedValue.isUndefined()) {
        published = QDateTime::fromString(publishedValue.toString(), Qt::ISODate);
        if (!published.isValid())
            return invalidFeed(QStringLiteral("its publication date is not a date"));
    }
    return ReleaseInfo{*version, notes.toString(), download, published};
}

} // namespace tolvane
