// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/UpdateChecker.h"

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>

#include <chrono>
#include <memory>

class QNetworkAccessManager;
class QNetworkReply;

namespace tolvane {

// Where the release feed is and how it is fetched. The build's values come from
// builtInUpdateFeedSettings(); tests pass their own server, key and a short timeout.
struct UpdateFeedSettings
{
    QUrl feedAddress;
    QByteArray publicKey; // Ed25519, 32 raw bytes
    std::chrono::milliseconds timeout{15000};
    qint64 maximumBytes = 256 * 1024;
};

// The settings this build was configured with (CMake: TOLVANE_UPDATE_FEED_URL and
// TOLVANE_UPDATE_PUBLIC_KEY). The environment variable TOLVANE_UPDATE_FEED_URL replaces the
// address, so a release can be tried against a feed served locally; the key cannot be replaced.
UpdateFeedSettings builtInUpdateFeedSettings();

// Fetches the feed with QtNetwork, only when asked: https (plain http to this machine only),
// redirects never down to http, a cap on the size and the time, then the envelope's Ed25519
// signature. The network stack is created at the first fetch, so a Tolvane that is never asked
// opens no connection at all.
class NetworkUpdateChecker final : public QObject, public UpdateChecker
{
    Q_OBJECT
public:
    explicit NetworkUpdateChecker(UpdateFeedSettings settings, QObject* parent = nullptr);
    ~NetworkUpdateChecker() override;

    bool canCheckForUpdates() const override;
    void fetchReleaseFeed(FeedHandler done) override;
    void cancel() override;

private:
    void readAvailable();
    void replyFinished();
    void finish(Result<QByteArray> result);
    void stop();
    Result<QByteArray> verified(const QByteArray& document) const;

    UpdateFeedSettings m_settings;
    std::unique_ptr<QNetworkAccessManager> m_network;
    QPointer<QNetworkReply> m_reply;
    QByteArray m_body;
    QTimer m_deadline;
    FeedHandler m_done;
};

} // namespace tolvane
