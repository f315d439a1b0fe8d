// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/Lifetime.h"
#include "core/support/Result.h"
#include "platform/TranslationEngine.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>
#include <QString>
#include <QThreadPool>

#include <functional>
#include <memory>

namespace tolvane {

class Scheduler;

// One translation session: the engine's pair, opened once and kept for the life of the process.
struct TranslationSession
{
    QString sourceCode;
    QString targetCode;
};

// Every translation Tolvane makes goes through here: one session per language pair, opened the
// first time the pair is asked for, prepared (the pair's dictionary loaded) before each request,
// and each request answered with the translated text or an error. Requests that arrive while
// their pair's session is still being opened wait for it and are resumed, in order, when it
// comes. Engine work runs on one worker thread; every state change happens on the main thread.
class LiveTranslationService final : public QObject
{
    Q_OBJECT

public:
    class Status
    {
    public:
        enum class Phase { failed, idle, preparingSession, downloadingModel, translating };

        Status(Phase phase = Phase::idle, QString failure = {})
            : m_phase(phase)
            , m_failure(std::move(failure))
        {}
        static Status failed(QString text) { return {Phase::failed, std::move(text)}; }

        Phase phase() const { return m_phase; }
        // The error text of a failed request, empty otherwise.
        QString failure() const { return m_failure; }
        bool operator==(const Status&) const = default;

    private:
        Phase m_phase;
        QString m_failure;
    };

    using Completion = std::function<void(Result<QString>)>;
    // Runs a piece of engine work away from the main thread.
    using Executor = std::function<void(std::function<void()>)>;

    // Without an executor the work runs on a worker thread of the service's own, one job at a time.
    LiveTranslationService(TranslationEngine& engine, Scheduler& scheduler, Executor executor = {});
    ~LiveTranslationService() override;

    // Translates text from the source language into the target; completion is called on the main
    // thread with the translation or the engine's error. Nothing times out and nothing cancels.
    void translate(const QString& text, const QString& sourceCode, const QString& targetCode, Completion completion);

    Status status() const { return m_status; }

    // "en-zh" for ("en", "zh-Hans"): only the language enters the key; "?" stands for none.
    static QString pairKey(const QString& sourceCode, const QString& targetCode);

    // The pairs whose session has been asked for (on its way or here), and the session of a pair.
    QSet<QString> requestedPairs() const { return m_sessionRequested; }
    std::shared_ptr<const TranslationSession> session(const QString& pairKey) const
    {
        return m_sessionsByPair.value(pairKey);
    }

Q_SIGNALS:
    void statusChanged(const tolvane::LiveTranslationService::Status& status);

private:
    using SessionWaiter = std::function<void(std::shared_ptr<TranslationSession>)>;

    void setStatus(Status status);
    void withSession(const QString& pairKey, const QString& sourceCode, const QString& targetCode,
                     SessionWaiter waiter);
    void sessionArrived(const QString& pairKey, std::shared_ptr<TranslationSession> session);
    void prepareAndTranslate(const QString& pairKey, std::shared_ptr<TranslationSession> session, const QString& text,
                             Completion completion);
    // Runs work off the main thread and its answer on the main thread, unless the service is gone.
    template <typename T> void offMainThread(std::function<T()> work, std::function<void(T)> answer);

    TranslationEngine& m_engine;
    Scheduler& m_scheduler;
    Executor m_executor;
    QThreadPool m_pool;
    Lifetime m_lifetime;

    Status m_status;
    QHash<QString, std::shared_ptr<TranslationSession>> m_sessionsByPair;
    QHash<QString, QList<SessionWaiter>> m_pendingWaiters;
    QSet<QString> m_sessionRequested;
};

QString availabilityText(LanguageAvailability availability);

} // namespace tolvane
