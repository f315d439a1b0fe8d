// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/updates/NetworkUpdateChecker.h"

#include "core/support/Logging.h"
#include "core/updates/ReleaseFeed.h"
#include "platform/linux/updates/Ed25519Signature.h"
#include "platform/linux/updates/UpdateFeedBuildSettings.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

TOLVANE_DEFINE_LOG(lcNetworkUpdateChecker, "NetworkUpdateChecker")

namespace tolvane {

namespace {

constexpr int mostRedirects = 5;
// A hostile server chooses the address it redirects to; the error shows the beginning of it.
constexpr qsizetype mostShownAddress = 200;

QByteArray decodedKey(const QByteArray& base64)
{
    auto key = QByteArray::fromBase64Encoding(base64, QByteArray::AbortOnBase64DecodingErrors);
    return key ? *key : QByteArray();
}

} // namespace

UpdateFeedSettings builtInUpdateFeedSettings()
{
    UpdateFeedSettings settings;
    settings.feedAddress = QUrl(QStringLiteral(TOLVANE_UPDATE_FEED_URL));
    const QString address = qEnvironmentVariable("TOLVANE_UPDATE_FEED_URL");
    if (!address.isEmpty())
        settings.feedAddress = QUrl(address);
    settings.publicKey = decodedKey(QByteArrayLiteral(TOLVANE_UPDATE_PUBLIC_KEY));
    return settings;
}

NetworkUpdateChecker::NetworkUpdateChecker(UpdateFeedSettings settings, QObject* parent)
    : QObject(parent)
    , m_settings(std::move(settings))
{
    m_deadline.setSingleShot(true);
    connect(&m_deadline, &QTimer::timeout, this, [this] {
        const auto seconds = std::chrono::duration<double>(m_settings.timeout).count();
        finish(Error{seconds == 1.0
                         ? QStringLiteral("The update server did not answer within a second.")
                         : QStringLiteral("The update server did not answer within %1 seconds.").arg(seconds)});
    });
    if (!canCheckForUpdates()) {
        qCWarning(lcNetworkUpdateChecker).noquote()
            << "Update checks are off: the feed address" << m_settings.feedAddress.toString()
            << "is not https, or the public key is not 32 bytes of base64";
    }
}

NetworkUpdateChecker::~NetworkUpdateChecker()
{
    cancel();
}

bool NetworkUpdateChecker::canCheckForUpdates() const
{
    return isAllowedFeedAddress(m_settings.feedAddress) && m_settings.publicKey.size() == 32;
}

void NetworkUpdateChecker::fetchReleaseFeed(FeedHandler done)
{
    cancel();
    m_done = std::move(done);
    if (!canCheckForUpdates()) {
        finish(Error{QStringLiteral("This build of Tolvane has no secure address or key for its update feed.")});
        return;
    }
    if (!m_network)
        m_network = std::make_unique<QNetworkAccessManager>();

    QNetworkRequest request(m_settings.feedAddress);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::UserVerifiedRedirectPolicy);
    request.setMaximumRedirectsAllowed(mostRedirects);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setHeader(QNetworkRequest::UserAgentHeader, QByteArrayLiteral("Tolvane/" TOLVANE_VERSION));
    m_body.clear();
    m_reply = m_network->get(request);
    // The reply keeps no more than this between two reads; the size cap does the rest.
    m_reply->setReadBufferSize(64 * 1024);
    qCInfo(lcNetworkUpdateChecker).noquote() << "Fetching" << m_settings.feedAddress.toString();

    QNetworkReply* reply = m_reply;
    connect(reply, &QNetworkReply::redirected, this, [this, reply](const QUrl& target) {
        if (isAllowedFeedRedirect(reply->url(), target)) {
            Q_EMIT reply->redirectAllowed();
            return;
        }
        finish(Error{QStringLiteral("The update server sent Tolvane to an address that is not secure (%1); it "
                                    "was not followed.")
                         .arg(target.toString(QUrl::RemoveUserInfo | QUrl::RemoveQuery).left(mostShownAddress))});
    });
    connect(reply, &QNetworkReply::readyRead, this, &NetworkUpdateChecker::readAvailable);
    connect(reply, &QNetworkReply::finished, this, &NetworkUpdateChecker::replyFinished);
    m_deadline.start(m_settings.timeout);
}

void NetworkUpdateChecker::readAvailable()
{
    if (!m_reply)
        return;
    // Read only what still fits, so a hostile server cannot fill the memory before the check.
    m_body += m_reply->read(m_settings.maximumBytes + 1 - m_body.size());
    if (m_body.size() > m_settings.maximumBytes)
        finish(Error{QStringLiteral("The update feed is larger than %1 KiB; it was not read.")
                         .arg(m_settings.maximumBytes / 1024)});
}

void NetworkUpdateChecker::replyFinished()
{
    if (!m_reply)
        return;
    readAvailable();
    if (!m_reply)
        return;
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status == 404) {
        finish(Error{QStringLiteral("The update feed was not found on the server (HTTP 404).")});
        return;
    }
    if (status >= 400) {
        finish(Error{QStringLiteral("The update server answered with an error (HTTP %1).").arg(status)});
        return;
    }
    if (m_reply->error() != QNetworkReply::NoError) {
        finish(Error{QStringLiteral("The update server could not be reached: %1").arg(m_reply->errorString())});
        return;
    }
    finish(verified(m_body));
}

Result<QByteArray> NetworkUpdateChecker::verified(const QByteArray& document) const
{
    Result<SignedFeed> feed = parseSignedFeed(document);
    if (!feed)
        return feed.error();
    if (!isValidEd25519Signature(m_settings.publicKey, feed.value().payload, feed.value().signature))
        return Error{QStringLiteral("The update feed's signature is not valid, so its contents were not trusted.")};
    return std::move(feed).value().payload;
}

void NetworkUpdateChecker::stop()
{
    m_deadline.stop();
    if (QNetworkReply* reply = m_reply.data()) {
        m_reply = nullptr;
        reply->disconnect(this);
        reply->abort();
        reply->deleteLater();
    }
    m_body.clear();
}

void NetworkUpdateChecker::finish(Result<QByteArray> result)
{
    stop();
    if (!result)
        qCWarning(lcNetworkUpdateChecker).noquote() << result.error().message;
    if (FeedHandler done = std::exchange(m_done, {}))
        done(std::move(result));
}

void NetworkUpdateChecker::cancel()
{
    m_done = {};
    stop();
}

} // namespace tolvane
