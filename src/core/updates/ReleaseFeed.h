// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/Result.h"
#include "core/updates/ReleaseVersion.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QUrl>

// The release feed: one small JSON document at an address of our own, signed with the project's
// Ed25519 key so that nobody between the server and the user can make Tolvane announce a release
// of their own.
//
// The document on the server is an envelope,
//     {"payload": "<base64>", "signature": "<base64>"}
// where the signature (64 bytes) is over the exact bytes of the decoded payload, and the payload
// is the release description,
//     {"version": "0.2.0", "notes": "What changed, as plain text.",
//      "download": "https://tolvane.app/download/", "published": "2026-11-20T12:00:00Z"}
// "version" and "download" (an https address) are required; "notes" and "published" (ISO 8601)
// may be left out; other members are ignored, so later releases can add some.
namespace tolvane {

// Every feed and download address we use is https; plain http only to this machine itself,
// where nothing travels over a network (a feed served locally while a release is prepared).
bool isAllowedFeedAddress(const QUrl& address);
// A redirect of the feed goes only to an allowed address and never from https down to http.
bool isAllowedFeedRedirect(const QUrl& from, const QUrl& to);

struct SignedFeed
{
    QByteArray payload;
    QByteArray signature;
};

struct ReleaseInfo
{
    ReleaseVersion version;
    QString notes;
    QUrl downloadPage;
    QDateTime published; // invalid when the feed gives none
};

// The envelope as it came from the server; its signature is not checked here.
Result<SignedFeed> parseSignedFeed(const QByteArray& document);
// The release description inside a payload whose signature has been checked.
Result<ReleaseInfo> parseReleaseDescription(const QByteArray& payload);

} // namespace tolvane
