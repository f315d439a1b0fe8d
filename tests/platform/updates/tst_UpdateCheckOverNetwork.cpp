// SPDX-License-Identifier: GPL-3.0-or-later
// "Check for Updates…" from the tray menu to the software update window, against a feed server
// this test runs on 127.0.0.1 and a signing key it makes for itself: every answer a server can
// give (current, newer, forged, malformed, failing, huge, silent, redirected to plain http) ends
// in the window the user should see. The window's states are saved as pictures under
// out/updates/ (light and dark).

#include "app/InstanceCommands.h"
#include "app/UpdateWiring.h"
#include "core/setup/Preferences.h"
#include "core/updates/UpdaterManager.h"
#include "fakes/FakePlatform.h"
#include "fakes/FakeScheduler.h"
#include "platform/linux/updates/NetworkUpdateChecker.h"
#include "ui/AppearanceApplier.h"
#include "ui/TrayMenu.h"
#include "ui/updates/UpdateWindow.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <openssl/evp.h>

#include <memory>

using namespace tolvane;

namespace {

using Phase = UpdateCheckState::Phase;
constexpr qint64 fiftyMegabytes = 50LL * 1024 * 1024;
const QString picturesDirectory = QStringLiteral(TOLVANE_SOURCE_DIR "/out/updates");

// An Ed25519 key pair made for this run.
class SigningKey final
{
public:
    SigningKey()
        : m_key(EVP_PKEY_Q_keygen(nullptr, nullptr, "ED25519"), EVP_PKEY_free)
    {
        unsigned char raw[32];
        size_t size = sizeof raw;
        if (m_key && EVP_PKEY_get_raw_public_key(m_key.get(), raw, &size) == 1)
            m_publicKey = QByteArray(reinterpret_cast<const char*>(raw), qsizetype(size));
    }
    const QByteArray& publicKey() const { return m_publicKey; }
    QByteArray sign(const QByteArray& message) const
    {
        const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(), EVP_MD_CTX_free);
        unsigned char signature[64];
        size_t size = sizeof signature;
        if (EVP_DigestSignInit(context.get(), nullptr, nullptr, nullptr, m_key.get()) != 1 ||
            EVP_DigestSign(context.get(), signature, &size, reinterpret_cast<const unsigned char*>(message.constData()),
                           size_t(message.size())) != 1)
            return {};
        return QByteArray(reinterpret_cast<const char*>(signature), qsizetype(size));
    }

private:
    std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> m_key;
    QByteArray m_publicKey;
};

QByteArray release(const QString& version, const QString& notes = QStringLiteral("Faster look-ups."))
{
    return QJsonDocument(QJsonObject{{QStringLiteral("version"), version},
                                     {QStringLiteral("notes"), notes},
                                     {QStringLiteral("download"), QStringLiteral("https://tolvane.app/download/")},
                                     {QStringLiteral("published"), QStringLiteral("2026-11-20T12:00:00Z")}})
        .toJson();
}

QByteArray envelope(const QByteArray& payload, const QByteArray& signature)
{
    return QJsonDocument(QJsonObject{{QStringLiteral("payload"), QString::fromLatin1(payload.toBase64())},
                                     {QStringLiteral("signature"), QString::fromLatin1(signature.toBase64())}})
        .toJson();
}

// What the server does for a path.
struct Answer
{
    enum class Kind {
        body,    // status, headers and body, then closes
        silent,  // reads the request and never answers
        endless, // announces and sends fifty megabytes
    };
    Kind kind = Kind::body;
    int status = 200;
    QByteArray body;
    QByteArray location; // "{origin}" stands for this server
};

// A plain HTTP/1.1 server on 127.0.0.1: one answer per path, one request per connection.
class FeedServer final : public QObject
{
public:
    FeedServer()
    {
        m_server.listen(QHostAddress::LocalHost);
        connect(&m_server, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket* socket = m_server.nextPendingConnection())
                connect(socket, &QTcpSocket::readyRead, this, [this, socket] { readRequest(socket); });
        });
    }
    QString origin() const { return QStringLiteral("http://127.0.0.1:%1").arg(m_server.serverPort()); }
    QUrl address(const QString& path) const { return QUrl(origin() + path); }
    void route(const QString& path, Answer answer) { m_answers.insert(path, std::move(answer)); }
    int requests = 0;

private:
    void readRequest(QTcpSocket* socket)
    {
        QByteArray& request = m_requests[socket];
        request += socket->readAll();
        if (!request.contains("\r\n\r\n") || request.isNull())
            return;
        ++requests;
        const QString path = QString::fromLatin1(request.split(' ').value(1));
        request = QByteArray(); // answered; later bytes are ignored
        const Answer answer = m_answers.value(path, Answer{Answer::Kind::body, 404, "Not Found", {}});
        if (answer.kind == Answer::Kind::silent)
            return;
        const qint64 length = answer.kind == Answer::Kind::endless ? fiftyMegabytes : answer.body.size();
        QByteArray head = "HTTP/1.1 " + QByteArray::number(answer.status) +
                          " X\r\nContent-Length: " + QByteArray::number(length) + "\r\nConnection: close\r\n";
        if (!answer.location.isEmpty())
            head += "Location: " + QByteArray(answer.location).replace("{origin}", origin().toLatin1()) + "\r\n";
        socket->write(head + "\r\n");
        if (answer.kind == Answer::Kind::body) {
            socket->write(answer.body);
            socket->disconnectFromHost();
            return;
        }
        // Fifty megabytes, a megabyte at a time as the client takes them, until it hangs up.
        auto sent = std::make_shared<qint64>(0);
        auto more = [socket, sent] {
            while (socket->state() == QAbstractSocket::ConnectedState && socket->bytesToWrite() < 1024 * 1024 &&
                   *sent < fiftyMegabytes) {
                socket->write(QByteArray(1024 * 1024, 'x'));
                *sent += 1024 * 1024;
            }
        };
        connect(socket, &QTcpSocket::bytesWritten, socket, more);
        more();
    }

    QTcpServer m_server;
    QHash<QString, Answer> m_answers;
    QHash<QTcpSocket*, QByteArray> m_requests;
};

// The application's update check as AppDelegate wires it, with the real network checker pointed
// at the test's server.
struct Harness
{
    explicit Harness(const FeedServer& server, const SigningKey& key,
                     QString executable = QStringLiteral("/opt/t/tolvane"),
                     std::chrono::milliseconds timeout = std::chrono::milliseconds(1000))
    {
        auto checker = std::make_unique<NetworkUpdateChecker>(
            UpdateFeedSettings{server.address(QStringLiteral("/feed.json")), key.publicKey(), timeout, 256 * 1024});
        platform.services.updates = std::move(checker);
        wiring = std::make_unique<UpdateWiring>(platform.services, preferences, clock, scheduler, commands, tray,
                                                std::move(executable));
    }
    // The tray menu's item, as a click would trigger it.
    void chooseCheckForUpdates()
    {
        tray.refresh();
        for (QAction* item : tray.menu()->actions()) {
            if (item->text() == QStringLiteral("Check for Updates…") && item->isVisible()) {
                item->trigger();
                return;
            }
        }
        QFAIL("The tray menu offers no visible \"Check for Updates…\"");
    }
    Phase phase() const { return wiring->updater() ? wiring->updater()->state().phase : Phase::idle; }
    bool waitForAnswer(int milliseconds = 5000)
    {
        return QTest::qWaitFor([this] { return phase() != Phase::checking; }, milliseconds);
    }
    QAbstractButton* button(const QString& name) const
    {
        for (QAbstractButton* control : wiring->window()->findChildren<QAbstractButton*>()) {
            if (control->accessibleName() == name && control->isVisible())
                return control;
        }
        return nullptr;
    }

    FakePlatform platform;
    Preferences preferences{*platform.preferences};
    FakeClock clock;
    FakeScheduler scheduler{&clock};
    InstanceCommands commands;
    TrayMenu tray{preferences};
    std::unique_ptr<UpdateWiring> wiring;
};

// Every label shows text as text, and every visible control has a name a screen reader can say.
void verifyReadable(QWidget* window)
{
    for (const QLabel* label : window->findChildren<QLabel*>())
        QCOMPARE(label->textFormat(), Qt::PlainText);
    for (const QWidget* control : window->findChildren<QWidget*>()) {
        const bool isControl = qobject_cast<const QAbstractButton*>(control) ||
                               qobject_cast<const QProgressBar*>(control) ||
                               qobject_cast<const QPlainTextEdit*>(control);
        if (isControl && control->isVisibleTo(window))
            QVERIFY2(!control->accessibleName().isEmpty(), control->metaObject()->className());
    }
}

void savePictures(QWidget* window, const QString& name)
{
    QDir().mkpath(picturesDirectory);
    for (const bool dark : {false, true}) {
        QApplication::setPalette(dark ? AppearanceApplier::darkPalette() : AppearanceApplier::lightPalette());
        QCoreApplication::processEvents();
        QImage image(window->size() * 2, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(2);
        image.fill(window->palette().color(QPalette::Window));
        window->render(&image);
        QVERIFY(image.save(QStringLiteral("%1/%2-%3.png").arg(picturesDirectory, name, dark ? "dark" : "light")));
    }
    QApplication::setPalette(AppearanceApplier::lightPalette());
}

} // namespace

class TestUpdateCheckOverNetwork final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachAnswerOfTheServerEndsInTheWindowItCalls_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("answerKind");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QByteArray>("location");
        QTest::addColumn<int>("phase");
        QTest::addColumn<QString>("shown"); // a text of the window

        const SigningKey& key = signingKey();
        const SigningKey forger;
        const QByteArray current = release(QStringLiteral("0.1.0"));
        const QByteArray newer = release(QStringLiteral("0.2.0"));
        const auto row = [](const char* name, const QByteArray& body, Phase phase, const QString& shown,
                            int status = 200, Answer::Kind kind = Answer::Kind::body, const QByteArray& location = {},
                            const QString& path = QStringLiteral("/feed.json")) {
            QTest::newRow(name) << path << int(kind) << status << body << location << int(phase) << shown;
        };
        row("up to date", envelope(current, key.sign(current)), Phase::upToDate,
            QStringLiteral("Tolvane 0.1.0 is currently the newest version available."));
        row("newer version", envelope(newer, key.sign(newer)), Phase::updateAvailable,
            QStringLiteral("Tolvane 0.2.0 is now available—you have 0.1.0. Would you like to download it now?"));
        row("signed with another key", envelope(newer, forger.sign(newer)), Phase::failed,
            QStringLiteral("The update feed's signature is not valid, so its contents were not trusted."));
        row("payload changed after signing", envelope(release(QStringLiteral("9.0.0")), key.sign(newer)), Phase::failed,
            QStringLiteral("The update feed's signature is not valid, so its contents were not trusted."));
        row("an HTML page instead of the feed", "<html><body>Moved</body></html>", Phase::failed,
            QStringLiteral("The update feed is not valid: the feed is not JSON (illegal value at byte 1)."));
        row("server error", "Oops", Phase::failed,
            QStringLiteral("The update server answered with an error (HTTP 503)."), 503);
        row("fifty megabytes", {}, Phase::failed,
            QStringLiteral("The update feed is larger than 256 KiB; it was not read."), 200, Answer::Kind::endless);
        row("no answer", {}, Phase::failed, QStringLiteral("The update server did not answer within a second."), 200,
            Answer::Kind::silent);
        row("redirect to plain http elsewhere", {}, Phase::failed,
            QStringLiteral("The update server sent Tolvane to an address that is not secure "
                           "(http://updates.example/feed.json); it was not followed."),
            302, Answer::Kind::body, "http://updates.example/feed.json");
        row("redirect on this machine", envelope(current, key.sign(current)), Phase::upToDate,
            QStringLiteral("You're up to date!"), 302, Answer::Kind::body, "{origin}/moved/feed.json");
    }
    void eachAnswerOfTheServerEndsInTheWindowItCalls()
    {
        QFETCH(QString, path);
        QFETCH(int, answerKind);
        QFETCH(int, status);
        QFETCH(QByteArray, body);
        QFETCH(QByteArray, location);
        QFETCH(int, phase);
        QFETCH(QString, shown);

        FeedServer server;
        if (location.isEmpty()) {
            server.route(path, {Answer::Kind(answerKind), status, body, {}});
        } else {
            server.route(path, {Answer::Kind::body, status, {}, location});
            server.route(QStringLiteral("/moved/feed.json"), {Answer::Kind::body, 200, body, {}});
        }
        Harness harness(server, signingKey());
        harness.chooseCheckForUpdates();
        QVERIFY(harness.wiring->window() && harness.wiring->window()->isVisible());
        QVERIFY(harness.waitForAnswer());
        QCOMPARE(int(harness.phase()), phase);

        QStringList texts;
        for (const QLabel* label : harness.wiring->window()->findChildren<QLabel*>())
            texts << label->text();
        QVERIFY2(texts.contains(shown), qPrintable(texts.join(u'\n')));
        verifyReadable(harness.wiring->window());
        // A redirect elsewhere is refused before any connection to it.
        QCOMPARE(server.requests, location.startsWith("{origin}") ? 2 : 1);
    }

    void twoChoicesOfCheckForUpdatesMakeOneManagerAndRunTwoChecks()
    {
        FeedServer server;
        const QByteArray current = release(QStringLiteral("0.1.0"));
        server.route(QStringLiteral("/feed.json"),
                     {Answer::Kind::body, 200, envelope(current, signingKey().sign(current)), {}});
        Harness harness(server, signingKey());
        QVERIFY(!harness.wiring->updater()); // nothing exists, nothing is fetched, until asked

        harness.chooseCheckForUpdates();
        UpdaterManager* first = harness.wiring->updater();
        QVERIFY(harness.waitForAnswer());
        QCOMPARE(harness.phase(), Phase::upToDate);
        harness.button(QStringLiteral("OK"))->click();
        QCOMPARE(harness.phase(), Phase::idle);

        harness.chooseCheckForUpdates();
        QVERIFY(harness.waitForAnswer());
        QCOMPARE(harness.wiring->updater(), first);
        QCOMPARE(first->checksStarted(), 2);
        QCOMPARE(server.requests, 2);
        QCOMPARE(harness.phase(), Phase::upToDate);
    }

    void releaseNotesWithMarkupShowAsTheirCharactersAndDownloadOnlyOpensThePage()
    {
        const QString notes =
            QStringLiteral("<h1>Big</h1> <b>bold</b> &amp; <a href=\"https://evil.example\">click</a>\n"
                           "<img src=x onerror=alert(1)>");
        const QByteArray newer = release(QStringLiteral("0.2.0"), notes);
        FeedServer server;
        server.route(QStringLiteral("/feed.json"),
                     {Answer::Kind::body, 200, envelope(newer, signingKey().sign(newer)), {}});
        Harness harness(server, signingKey());
        harness.chooseCheckForUpdates();
        QVERIFY(harness.waitForAnswer());
        QCOMPARE(harness.phase(), Phase::updateAvailable);
        auto* shown = harness.wiring->window()->findChild<QPlainTextEdit*>(QStringLiteral("release-notes"));
        QVERIFY(shown);
        QCOMPARE(shown->toPlainText(), notes);
        verifyReadable(harness.wiring->window());

        harness.button(QStringLiteral("Download"))->click();
        QCOMPARE(harness.platform.workspace->opened,
                 QList<QUrl>{QUrl(QStringLiteral("https://tolvane.app/download/"))});
        QVERIFY(!harness.wiring->window()->isVisible());
        QCOMPARE(harness.phase(), Phase::idle);

        // Skip This Version is remembered in the preferences.
        harness.chooseCheckForUpdates();
        QVERIFY(harness.waitForAnswer());
        harness.button(QStringLiteral("Skip This Version"))->click();
        QCOMPARE(harness.preferences.stringForKey(PreferenceKey::skippedUpdateVersion), QStringLiteral("0.2.0"));
    }

    void eachStateOfTheWindowIsSavedAsAPicture()
    {
        const QByteArray newer = release(
            QStringLiteral("0.2.0"),
            QStringLiteral("Look-ups in Chinese read the word's tones aloud.\nThe review window remembers its size.\n"
                           "Fixed: the card could open behind a full-screen window."));
        FeedServer server;
        server.route(QStringLiteral("/feed.json"), {Answer::Kind::silent, 200, {}, {}});
        server.route(QStringLiteral("/newer"), {Answer::Kind::body, 302, {}, "{origin}/newer.json"});
        server.route(QStringLiteral("/newer.json"),
                     {Answer::Kind::body, 200, envelope(newer, signingKey().sign(newer)), {}});

        Harness hanging(server, signingKey());
        hanging.chooseCheckForUpdates();
        QTRY_COMPARE(server.requests, 1);
        savePictures(hanging.wiring->window(), QStringLiteral("checking"));
        QVERIFY(hanging.waitForAnswer());
        savePictures(hanging.wiring->window(), QStringLiteral("error-timeout"));

        const QByteArray current = release(QStringLiteral("0.1.0"));
        server.route(QStringLiteral("/feed.json"),
                     {Answer::Kind::body, 200, envelope(current, signingKey().sign(current)), {}});
        Harness upToDate(server, signingKey());
        upToDate.chooseCheckForUpdates();
        QVERIFY(upToDate.waitForAnswer());
        savePictures(upToDate.wiring->window(), QStringLiteral("up-to-date"));

        server.route(QStringLiteral("/feed.json"),
                     {Answer::Kind::body, 200, envelope(newer, signingKey().sign(newer)), {}});
        for (const QString& executable : {QStringLiteral("/opt/tolvane/tolvane"), QStringLiteral("/usr/bin/tolvane")}) {
            Harness available(server, signingKey(), executable);
            available.chooseCheckForUpdates();
            QVERIFY(available.waitForAnswer());
            QCOMPARE(available.phase(), Phase::updateAvailable);
            savePictures(available.wiring->window(), executable.startsWith(QLatin1String("/usr"))
                                                         ? QStringLiteral("new-version-packaged")
                                                         : QStringLiteral("new-version"));
        }

        server.route(QStringLiteral("/feed.json"), {Answer::Kind::body, 200, envelope(newer, newer.left(64)), {}});
        Harness forged(server, signingKey());
        forged.chooseCheckForUpdates();
        QVERIFY(forged.waitForAnswer());
        savePictures(forged.wiring->window(), QStringLiteral("error-signature"));
    }

private:
    static const SigningKey& signingKey()
    {
        static const SigningKey key;
        return key;
    }
};

QTEST_MAIN(TestUpdateCheckOverNetwork)
#include "tst_UpdateCheckOverNetwork.moc"
