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

namespace {

// Engine work held until the test lets it run, so the moments between the steps can be seen.
struct ManualExecutor
{
    std::deque<std::function<void()>> jobs;

    LiveTranslationService::Executor executor()
    {
        return [this](std::function<void()> job) { jobs.push_back(std::move(job)); };
    }
    void runJobs()
    {
        while (!jobs.empty()) {
            auto job = std::move(jobs.front());
            jobs.pop_front();
            job();
        }
    }
};

struct Answers
{
    QStringList texts;
    QStringList errors;

    LiveTranslationService::Completion record()
    {
        return [this](Result<QString> result) {
            if (result)
                texts.append(result.value());
            else
                errors.append(result.error().message);
        };
    }
};

} // namespace

class TestLiveTranslationService final : public QObject
{
    Q_OBJECT

private:
    FakeTranslationEngine m_engine;
    FakeScheduler m_scheduler;
    ManualExecutor m_work;

    std::unique_ptr<LiveTranslationService> makeService()
    {
        return std::make_unique<LiveTranslationService>(m_engine, m_scheduler, m_work.executor());
    }
    // Lets every piece of work and every answer run until nothing is left.
    void settle()
    {
        while (!m_work.jobs.empty() || m_scheduler.postedCount() > 0) {
            m_work.runJobs();
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
        m_work.jobs.clear();
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
        Answers answers;
        service->translate(QStringLiteral("chat"), QStringLiteral("fr"), QStringLiteral("en"), answers.record());
        service->translate(QStringLiteral("chien"), QStringLiteral("fr"), QStringLiteral("en"), answers.record());

        // Both availability checks answer; the first asks for the session, the second joins it.
        m_work.runJobs();
        m_scheduler.runPosted();
        QCOMPARE(service->requestedPairs(), QSet<QString>{QStringLiteral("fr-en")});
        QVERIFY(!service->session(QStringLiteral("fr-en")));
        QCOMPARE(m_work.jobs.size(), std::size_t(1)); // one session on its way, not two
        QVERIFY(m_engine.prepared.isEmpty());
        QCOMPARE(service->status().phase(), Phase::preparingSession);

        settle();
        QCOMPARE(answers.texts, (QStringList{QStringLiteral("cat"), QStringLiteral("dog")}));
        QCOMPARE(m_engine.prepared.size(), 2);
        QCOMPARE(service->status().phase(), Phase::idle);
    }

    void aLaterRequestReusesTheSessionAndWalksEveryPhase()
    {
        auto service = makeService();
        Answers answers;
        service->translate(QStringLiteral("chat"), QStringLiteral("fr"), QStringLiteral("en"), answers.record());
        settle();
        const auto first = service->session(QStringLiteral("fr-en"));

        QSignalSpy spy(service.get(), &LiveTranslationService::statusChanged);
        service->translate(QStringLiteral("chien"), QStringLiteral("fr"), QStringLiteral("en"), answers.record());
        settle();
        QList<Phase> phases;
        for (const auto& arguments : spy)
            phases.append(arguments.at(0).value<LiveTranslationService::Status>().phase());
        QCOMPARE(phases,
                 (QList<Phase>{Phase::preparingSession, Phase::downloadingModel, Phase::translating, Phase::idle}));
        QCOMPARE(service->session(QStringLiteral("fr-en")), first);
        QCOMPARE(service->requestedPairs().size(), 1);
        QCOMPARE(answers.texts, (QStringList{QStringLiteral("cat"), QStringLiteral("dog")}));
    }

    void aPairAndItsReverseHaveTheirOwnSessions()
    {
        auto service = makeService();
        Answers answers;
        service->translate(QStringLiteral("cat"), QStringLiteral("en"), QStringLiteral("fr"), answers.record());
        service->translate(QStringLiteral("chat"), QStringLiteral("fr"), QStringLiteral("en"), answers.record());
        settle();
        QCOMPARE(service->requestedPairs(), (QSet<QString>{QStringLiteral("en-fr"), QStringLiteral("fr-en")}));
        QVERIFY(service->session(QStringLiteral("en-fr")) != service->session(QStringLiteral("fr-en")));
        QCOMPARE(answers.texts.size(), 2);
    }

    void aFailedPreparationFailsTheRequestAndIsTriedAgainNextTime()
    {
        auto service = makeService();
        Answers answers;
        m_engine.prepareError = QStringLiteral("The English → Korean dictionary is not installed. Run scripts/setup.");
        QTest::ignoreMessage(QtInfoMsg, "pair=en-ko availability=installed");
        QTest::ignoreMessage(QtWarningMsg, "prepareTranslation failed for pair=en-ko: The English → Korean dictionary "
                                           "is not installed. Run scripts/setup.");
        service->translate(QStringLiteral("cat"), QStringLiteral("en"), QStringLiteral("ko"), answers.record());
        settle();
        QCOMPARE(answers.errors, QStringList{m_engine.prepareError});
        QCOMPARE(service->status(), LiveTranslationService::Status::failed(m_engine.prepareError));
        QVERIFY(m_engine.translated.isEmpty());
        const auto session = service->session(QStringLiteral("en-ko"));
        QVERIFY(session);

        m_engine.prepareError.clear();
        m_engine.translations.insert(QStringLiteral("cat"), QStringLiteral("고양이"));
        service->translate(QStringLiteral("cat"), QStringLiteral("en"), QStringLiteral("ko"), answers.record());
        settle();
        QCOMPARE(answers.texts, QStringList{QStringLiteral("고양이")});
        QCOMPARE(service->session(QStringLiteral("en-ko")), session);
    }

    void aFailedTranslationIsLoggedAndReturned()
    {
        auto service = makeService();
        Answers answers;
        QTest::ignoreMessage(QtWarningMsg, "translate failed for pair=fr-en: No translation for xyzzy");
        service->translate(QStringLiteral("xyzzy"), QStringLiteral("fr"), QStringLiteral("en"), answers.record());
        settle();
        QCOMPARE(answers.errors, QStringList{QStringLiteral("No translation for xyzzy")});
        QCOMPARE(service->status().failure(), QStringLiteral("No translation for xyzzy"));
    }

    void anUnsupportedPairIsOnlyLoggedAndGoesOn()
    {
        auto service = makeService();
        Answers answers;
        m_engine.availabilityAnswer = LanguageAvailability::unsupported;
        QTest::ignoreMessage(QtInfoMsg, "pair=fr-en availability=unsupported");
        service->translate(QStringLiteral("chat"), QStringLiteral("fr"), QStringLiteral("en"), answers.record());
        settle();
        QCOMPARE(answers.texts, QStringList{QStringLiteral("cat")});
    }

    void answersArrivingAfterTheServiceIsGoneAreDropped()
    {
        auto service = makeService();
        Answers answers;
        service->translate(QStringLiteral("chat"), QStringLiteral("fr"), QStringLiteral("en"), answers.record());
        m_work.runJobs(); // the availability answer is posted…
        service.reset();  // …and the service goes away before it runs
        settle();
        QVERIFY(answers.texts.isEmpty());
        QVERIFY(answers.errors.isEmpty());
        QVERIFY(m_engine.prepared.isEmpty());
    }

    void theWorkerThreadAnswersOnTheSchedulersThread()
    {
        // The service's own worker: the engine runs elsewhere, the answer comes back by post().
        LiveTranslationService service(m_engine, m_scheduler);
        Answers answers;
        service.translate(QStringLiteral("chat"), QStringLiteral("fr"), QStringLiteral("en"), answers.record());
        QTRY_VERIFY_WITH_TIMEOUT((m_scheduler.runPosted(), !answers.texts.isEmpty()), 5000);
        QCOMPARE(answers.texts, QStringList{QStringLiteral("cat")});
    }
};

QTEST_GUILESS_MAIN(TestLiveTranslationService)
#include "tst_LiveTranslationService.moc"
