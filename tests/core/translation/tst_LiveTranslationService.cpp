// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/translation/LiveTranslationService.h"

#include "fakes/FakePlatform.h"
#include "fakes/FakeScheduler.h"

#include <QSignalSpy>
#include <QTest>

#include <deque>

using namespace tolvane;
using Phase = LiveTranslationService::Status::Phase;

Q_DECLARE_METATYPE(tolvane::LiveTranslationService::Status)

class TestLiveTranslationService final : public QObject
{
    Q_OBJECT

private:
    FakeTranslationEngine m_engine;
    FakeScheduler m_scheduler;
    // Engine work held until the test lets it run, so the moments between the steps can be seen.
    std::deque<std::function<void()>> m_jobs;
    QStringList m_texts;
    QStringList m_errors;

    std::unique_ptr<LiveTranslationService> makeService()
    {
        return std::make_unique<LiveTranslationService>(
            m_engine, m_scheduler, [this](std::function<void()> job) { m_jobs.push_back(std::move(job)); });
    }
    void ask(LiveTranslationService& service, const char* text, const char* from, const char* to)
    {
        service.translate(QString::fromUtf8(text), QString::fromLatin1(from), QString::fromLatin1(to),
                          [this](Result<QString> result) {
                              if (result)
                                  m_texts.append(result.value());
                              else
                                  m_errors.append(result.error().message);
                          });
    }
    void runJobs()
    {
        while (!m_jobs.empty()) {
            auto job = std::move(m_jobs.front());
            m_jobs.pop_front();
            job();
        }
    }
    // Lets every piece of work and every answer run until nothing is left.
    void settle()
    {
        while (!m_jobs.empty() || m_scheduler.postedCount() > 0) {
            runJobs();
            m_scheduler.runPosted();
        }
    }

private Q_SLOTS:
    void init()
    {
        m_engine = FakeTranslationEngine{};
        m_engine.translations = {{QStringLiteral("chat"), QStringLiteral("cat")},
                                 {QStringLiteral("cat"), QStringLiteral("chat")},
                                 {QStringLiteral("chien"), QStringLiteral("dog")}};
        m_jobs.clear();
        m_texts.clear();
        m_errors.clear();
    }

    void pairKeysUseTheLanguageCodeOnly()
    {
        QCOMPARE(LiveTranslationService::pairKey(QStringLiteral("en"), QStringLiteral("zh-Hans")),
                 QStringLiteral("en-zh"));
        QCOMPARE(LiveTranslationService::pairKey(QStringLiteral("pt-BR"), QStringLiteral("en")),
                 QStringLiteral("pt-en"));
        QCOMPARE(LiveTranslationService::pairKey(QString(), QStringLiteral("fr")), QStringLiteral("?-fr"));
    }

    void requestsWaitingForASessionShareItAndKeepTheirOrder()
    {
        auto service = makeService();
        ask(*service, "chat", "fr", "en");
        ask(*service, "chien", "fr", "en");

        // Both availability checks answer; the first asks for the session, the second joins it.
        runJobs();
        m_scheduler.runPosted();
        QCOMPARE(service->requestedPairs(), QSet<QString>{QStringLiteral("fr-en")});
        QVERIFY(!service->session(QStringLiteral("fr-en")));
        QCOMPARE(m_jobs.size(), std::size_t(1)); // one session on its way, not two
        QVERIFY(m_engine.prepared.isEmpty());
        QCOMPARE(service->status().phase(), Phase::preparingSession);

        settle();
        QCOMPARE(m_texts, (QStringList{QStringLiteral("cat"), QStringLiteral("dog")}));
        QCOMPARE(m_engine.prepared.size(), 2);
        QCOMPARE(service->status().phase(), Phase::idle);
    }

    void aLaterRequestReusesTheSessionAndWalksEveryPhase()
    {
        auto service = makeService();
        ask(*service, "chat", "fr", "en");
        settle();
        const auto first = service->session(QStringLiteral("fr-en"));

        QSignalSpy spy(service.get(), &LiveTranslationService::statusChanged);
        ask(*service, "chien", "fr", "en");
        settle();
        QList<Phase> phases;
        for (const auto& arguments : spy)
            phases.append(arguments.at(0).value<LiveTranslationService::Status>().phase());
        QCOMPARE(phases,
                 (QList<Phase>{Phase::preparingSession, Phase::downloadingModel, Phase::translating, Phase::idle}));
        QCOMPARE(service->session(QStringLiteral("fr-en")), first);
        QCOMPARE(service->requestedPairs().size(), 1);
        QCOMPARE(m_texts, (QStringList{QStringLiteral("cat"), QStringLiteral("dog")}));
    }

    void aPairAndItsReverseHaveTheirOwnSessions()
    {
        auto service = makeService();
        ask(*service, "cat", "en", "fr");
        ask(*service, "chat", "fr", "en");
        settle();
        QCOMPARE(service->requestedPairs(), (QSet<QString>{QStringLiteral("en-fr"), QStringLiteral("fr-en")}));
        QVERIFY(service->session(QStringLiteral("en-fr")) != service->session(QStringLiteral("fr-en")));
        QCOMPARE(m_texts.size(), 2);
    }

    void aFailedPreparationFailsTheRequestAndIsTriedAgainNextTime()
    {
        auto service = makeService();
        m_engine.prepareError = QStringLiteral("The English → Korean dictionary is not installed. Run scripts/setup.");
        QTest::ignoreMessage(QtInfoMsg, "pair=en-ko availability=installed");
        QTest::ignoreMessage(QtWarningMsg, "prepareTranslation failed for pair=en-ko: The English → Korean dictionary "
                                           "is not installed. Run scripts/setup.");
        ask(*service, "cat", "en", "ko");
        settle();
        QCOMPARE(m_errors, QStringList{m_engine.prepareError});
        QCOMPARE(service->status(), LiveTranslationService::Status::failed(m_engine.prepareError));
        QVERIFY(m_engine.translated.isEmpty());
        const auto session = service->session(QStringLiteral("en-ko"));
        QVERIFY(session);

        m_engine.prepareError.clear();
        m_engine.translations.insert(QStringLiteral("cat"), QStringLiteral("고양이"));
        ask(*service, "cat", "en", "ko");
        settle();
        QCOMPARE(m_texts, QStringList{QStringLiteral("고양이")});
        QCOMPARE(service->session(QStringLiteral("en-ko")), session);
    }

    void aFailedTranslationIsLoggedAndReturned()
    {
        auto service = makeService();
        QTest::ignoreMessage(QtWarningMsg, "translate failed for pair=fr-en: No translation for xyzzy");
        ask(*service, "xyzzy", "fr", "en");
        settle();
        QCOMPARE(m_errors, QStringList{QStringLiteral("No translation for xyzzy")});
        QCOMPARE(service->status().failure(), QStringLiteral("No translation for xyzzy"));
    }

    void anUnsupportedPairIsOnlyLoggedAndGoesOn()
    {
        auto service = makeService();
        m_engine.availabilityAnswer = LanguageAvailability::unsupported;
        QTest::ignoreMessage(QtInfoMsg, "pair=fr-en availability=unsupported");
        ask(*service, "chat", "fr", "en");
        settle();
        QCOMPARE(m_texts, QStringList{QStringLiteral("cat")});
    }

    void answersArrivingAfterTheServiceIsGoneAreDropped()
    {
        auto service = makeService();
        ask(*service, "chat", "fr", "en");
        runJobs();       // the availability answer is posted…
        service.reset(); // …and the service goes away before it runs
        settle();
        QVERIFY(m_texts.isEmpty());
        QVERIFY(m_errors.isEmpty());
        QVERIFY(m_engine.prepared.isEmpty());
    }

    void theWorkerThreadAnswersOnTheSchedulersThread()
    {
        // The service's own worker: the engine runs elsewhere, the answer comes back by post().
        LiveTranslationService service(m_engine, m_scheduler);
        ask(service, "chat", "fr", "en");
        QTRY_VERIFY_WITH_TIMEOUT((m_scheduler.runPosted(), !m_texts.isEmpty()), 5000);
        QCOMPARE(m_texts, QStringList{QStringLiteral("cat")});
    }
};

QTEST_GUILESS_MAIN(TestLiveTranslationService)
#include "tst_LiveTranslationService.moc"
