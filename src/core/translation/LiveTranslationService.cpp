// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/translation/LiveTranslationService.h"

#include "core/support/EnumNames.h"
#include "core/translation/LanguageTable.h"

#include "core/support/Logging.h"
#include "core/support/Scheduler.h"

TOLVANE_DEFINE_LOG(lcLiveTranslation, "LiveTranslationService")

namespace tolvane {

namespace {} // namespace

constexpr EnumNames availabilityNames{std::array{
    std::pair{LanguageAvailability::unsupported, "unsupported"},
    std::pair{LanguageAvailability::installed, "installed"},
    std::pair{LanguageAvailability::supported, "supported"},
}};

QString availabilityText(LanguageAvailability availability)
{
    return availabilityNames.text(availability);
}

LiveTranslationService::LiveTranslationService(TranslationEngine& engine, Scheduler& scheduler, Executor executor)
    : m_engine(engine)
    , m_scheduler(scheduler)
    , m_executor(std::move(executor))
{
    // One worker: the engine is called one job at a time, and requests keep their order.
    m_pool.setMaxThreadCount(1);
    if (!m_executor)
        m_executor = [this](std::function<void()> job) { m_pool.start(std::move(job)); };
}

LiveTranslationService::~LiveTranslationService()
{
    m_lifetime.end();
    m_pool.waitForDone();
}

QString LiveTranslationService::pairKey(const QString& sourceCode, const QString& targetCode)
{
    return tolvane::pairKey(sourceCode, targetCode);
}

template <typename T> void LiveTranslationService::offMainThread(std::function<T()> work, std::function<void(T)> answer)
{
    const Lifetime::Watch alive = m_lifetime.watch();
    Scheduler* scheduler = &m_scheduler;
    m_executor([alive, scheduler, work = std::move(work), answer = std::move(answer)]() mutable {
        if (!alive)
            return;
        auto result = std::make_shared<T>(work());
        scheduler->post([alive, result, answer = std::move(answer)]() {
            if (alive)
                answer(std::move(*result));
        });
    });
}

void LiveTranslationService::setStatus(Status status)
{
    if (m_status == status)
        return;
    m_status = std::move(status);
    Q_EMIT statusChanged(m_status);
}

void LiveTranslationService::translate(const QString& text, const QString& sourceCode, const QString& targetCode,
                                       Completion completion)
{
    const QString key = pairKey(sourceCode, targetCode);
    TranslationEngine* engine = &m_engine;
    offMainThread<LanguageAvailability>(
        [engine, sourceCode, targetCode] { return engine->availability(sourceCode, targetCode); },
        [this, key, text, sourceCode, targetCode, completion](LanguageAvailability availability) {
            // Only logged: an unsupported pair goes on and fails when it is prepared.
            qCInfo(lcLiveTranslation).noquote()
                << QStringLiteral("pair=%1 availability=%2").arg(key, availabilityText(availability));
            setStatus(Status::Phase::preparingSession);
            withSession(key, sourceCode, targetCode,
                        [this, key, text, completion](std::shared_ptr<TranslationSession> session) {
                            prepareAndTranslate(key, std::move(session), text, completion);
                        });
        });
}

void LiveTranslationService::withSession(const QString& pairKey, const QString& sourceCode, const QString& targetCode,
                                         SessionWaiter waiter)
{
    if (auto it = m_sessionsByPair.constFind(pairKey); it != m_sessionsByPair.cend()) {
        waiter(*it);
        return;
    }
    m_pendingWaiters[pairKey].append(std::move(waiter));
    if (m_sessionRequested.contains(pairKey))
        return; // the session on its way wakes this request too
    m_sessionRequested.insert(pairKey);
    offMainThread<std::shared_ptr<TranslationSession>>(
        [sourceCode, targetCode] {
            return std::make_shared<TranslationSession>(TranslationSession{sourceCode, targetCode});
        },
        [this, pairKey](std::shared_ptr<TranslationSession> session) { sessionArrived(pairKey, std::move(session)); });
}

void LiveTranslationService::sessionArrived(const QString& pairKey, std::shared_ptr<TranslationSession> session)
{
    m_sessionsByPair.insert(pairKey, session);
    const QList<SessionWaiter> waiters = m_pendingWaiters.take(pairKey);
    for (const SessionWaiter& waiter : waiters)
        waiter(session);
}

void LiveTranslationService::prepareAndTranslate(const QString& pairKey, std::shared_ptr<TranslationSession> session,
                                                 const QString& text, Completion completion)
{
    setStatus(Status::Phase::downloadingModel);
    TranslationEngine* engine = &m_engine;
    offMainThread<Result<void>>(
        [engine, session] { return engine->prepare(session->sourceCode, session->targetCode); },
        [this, engine, pairKey, session, text, completion](Result<void> prepared) {
            if (!prepared) {
                const QString message = prepared.error().message;
                qCWarning(lcLiveTranslation).noquote()
                    << QStringLiteral("prepareTranslation failed for pair=%1: %2").arg(pairKey, message);
                setStatus(Status::failed(message));
                completion(prepared.error());
                return;
            }
            setStatus(Status::Phase::translating);
            offMainThread<Result<QString>>(
                [engine, session, text] { return engine->translate(text, session->sourceCode, session->targetCode); },
                [this, pairKey, completion](Result<QString> translated) {
                    if (!translated) {
                        const QString message = translated.error().message;
                        qCWarning(lcLiveTranslation).noquote()
                            << QStringLiteral("translate failed for pair=%1: %2").arg(pairKey, message);
                        setStatus(Status::failed(message));
                        completion(translated.error());
                        return;
                    }
                    setStatus(Status::Phase::idle);
                    completion(std::move(translated));
                });
        });
}

} // namespace tolvane
