// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/translation/ApertiumPassageTranslator.h"

#include "core/support/Logging.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QStandardPaths>

#include <memory>
#include <mutex>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

TOLVANE_DEFINE_LOG(lcApertium, "ApertiumPassageTranslator")

namespace tolvane {

namespace {

const QString modesDirectory = QStringLiteral("/usr/share/apertium/modes/");
// A passage that takes longer than this is abandoned for the word-by-word gloss; a frozen
// pipeline must not hold the translation queue. The first request of a pipeline also pays for
// loading its data.
constexpr int longestRunMs = 15000;
// Characters Apertium's stream format reserves.
const QString reserved = QStringLiteral("^$@/<>{}[]\\*#+~");

// One mode's pipeline, kept running between requests.
class Pipeline
{
public:
    explicit Pipeline(QString command)
        : m_command(std::move(command))
    {}
    Pipeline(const Pipeline&) = delete;
    Pipeline& operator=(const Pipeline&) = delete;
    ~Pipeline() { stop(); }

    std::optional<QByteArray> translate(const QByteArray& stream)
    {
        if (m_pid <= 0 && !start())
            return std::nullopt;
        QByteArray request = stream;
        request.append('\0');
        QElapsedTimer elapsed;
        elapsed.start();
        qsizetype written = 0;
        while (written < request.size()) {
            // A socket rather than a pipe: a dead pipeline gives an error, not SIGPIPE.
            const ssize_t n = ::send(m_input, request.constData() + written, size_t(request.size() - written),
                                     MSG_NOSIGNAL | MSG_DONTWAIT);
            if (n > 0) {
                written += n;
                continue;
            }
            if (n < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR)
                return failed("stopped taking text");
            // Full: read what is ready so the pipeline can go on.
            if (!wait(elapsed, POLLOUT))
                return timedOut("did not take the text in time");
        }
        for (;;) {
            if (const qsizetype end = m_pending.indexOf('\0'); end >= 0) {
                QByteArray answer = m_pending.left(end);
                m_pending.remove(0, end + 1);
                return answer;
            }
            if (!wait(elapsed, POLLIN))
                return elapsed.elapsed() >= longestRunMs ? timedOut("did not answer in time") : failed("ended");
            char buffer[16384];
            const ssize_t n = ::read(m_output, buffer, sizeof buffer);
            if (n > 0)
                m_pending.append(buffer, n);
            else if (n == 0 || (errno != EAGAIN && errno != EINTR))
                return failed("ended");
        }
    }

    pid_t processGroup() const { return m_pid; }
    // A pipeline that died is found out by the next request; a hung one costs the full wait.
    bool lastFailureWasTimeout() const { return m_timedOut; }

    void stop()
    {
        if (m_input >= 0)
            ::close(m_input);
        if (m_output >= 0)
            ::close(m_output);
        m_input = m_output = -1;
        if (m_pid > 0) {
            // The shell's whole process group: every program of the chain.
            ::kill(-m_pid, SIGKILL);
            ::waitpid(m_pid, nullptr, 0);
        }
        m_pid = -1;
        m_pending.clear();
    }

private:
    bool start()
    {
        int input[2], output[2];
        if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, input) != 0)
            return false;
        if (::pipe2(output, O_CLOEXEC) != 0) {
            ::close(input[0]);
            ::close(input[1]);
            return false;
        }
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, input[1], STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawnattr_t attributes;
        posix_spawnattr_init(&attributes);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
        posix_spawnattr_setpgroup(&attributes, 0);
        const QByteArray command = m_command.toUtf8();
        const char* argv[] = {"sh", "-c", command.constData(), nullptr};
        pid_t pid = -1;
        const int spawned = posix_spawnp(&pid, "sh", &actions, &attributes, const_cast<char* const*>(argv), environ);
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
        ::close(input[1]);
        ::close(output[1]);
        if (spawned != 0) {
            ::close(input[0]);
            ::close(output[0]);
            qCWarning(lcApertium) << "cannot start the Apertium pipeline:" << strerror(spawned);
            return false;
        }
        m_pid = pid;
        m_input = input[0];
        m_output = output[0];
        ::fcntl(m_output, F_SETFL, ::fcntl(m_output, F_GETFL) | O_NONBLOCK);
        return true;
    }

    bool wait(const QElapsedTimer& elapsed, short event)
    {
        const qint64 left = longestRunMs - elapsed.elapsed();
        if (left <= 0)
            return false;
        pollfd fds[2] = {{m_output, POLLIN, 0}, {m_input, event == POLLOUT ? short(POLLOUT) : short(0), 0}};
        const int ready = ::poll(fds, event == POLLOUT ? 2 : 1, int(left));
        if (ready <= 0)
            return ready < 0 && errno == EINTR;
        if (fds[0].revents & (POLLIN | POLLHUP | POLLERR)) {
            char buffer[16384];
            const ssize_t n = ::read(m_output, buffer, sizeof buffer);
            if (n > 0)
                m_pending.append(buffer, n);
            else if (n == 0)
                return false;
        }
        return true;
    }

    std::optional<QByteArray> timedOut(const char* what)
    {
        m_timedOut = true;
        qCWarning(lcApertium).noquote() << "The Apertium pipeline" << what << "- it starts afresh next time";
        stop();
        return std::nullopt;
    }

    std::optional<QByteArray> failed(const char* what)
    {
        m_timedOut = false;
        qCWarning(lcApertium).noquote() << "The Apertium pipeline" << what << "- starting it again";
        stop();
        return std::nullopt;
    }

    QString m_command;
    bool m_timedOut = false;
    pid_t m_pid = -1;
    int m_input = -1;
    int m_output = -1;
    QByteArray m_pending;
};

std::mutex pipelinesMutex;
QHash<QString, std::shared_ptr<Pipeline>>& pipelines()
{
    static QHash<QString, std::shared_ptr<Pipeline>> running;
    return running;
}

std::shared_ptr<Pipeline> pipelineFor(const QString& mode)
{
    if (auto found = pipelines().value(mode))
        return found;
    QFile file(modesDirectory + mode + QStringLiteral(".mode"));
    if (!file.open(QIODevice::ReadOnly))
        return nullptr;
    const QString command = ApertiumPassageTranslator::nullFlushCommand(QString::fromUtf8(file.readAll()));
    if (command.isEmpty())
        return nullptr;
    auto made = std::make_shared<Pipeline>(command);
    pipelines().insert(mode, made);
    return made;
}

QStringList toSpanish(const QString& source)
{
    if (source == QLatin1String("en"))
        return {QStringLiteral("eng-spa")};
    if (source == QLatin1String("fr"))
        return {QStringLiteral("fr-es")};
    if (source == QLatin1String("it"))
        return {QStringLiteral("ita-spa")};
    if (source == QLatin1String("pt"))
        return {QStringLiteral("pt-es")};
    return {};
}

QStringList fromSpanish(const QString& target)
{
    if (target == QLatin1String("en"))
        return {QStringLiteral("spa-eng")};
    if (target == QLatin1String("fr"))
        return {QStringLiteral("es-fr")};
    if (target == QLatin1String("it"))
        return {QStringLiteral("spa-ita")};
    if (target == QLatin1String("pt"))
        return {QStringLiteral("es-pt_BR")};
    return {};
}

} // namespace

QStringList ApertiumPassageTranslator::route(const QString& source, const QString& target)
{
    if (source == target || (source != QLatin1String("en") && target != QLatin1String("en")))
        return {};
    if (source == QLatin1String("es"))
        return fromSpanish(target);
    if (target == QLatin1String("es"))
        return toSpanish(source);
    const QStringList first = toSpanish(source), second = fromSpanish(target);
    if (first.isEmpty() || second.isEmpty())
        return {};
    return first + second;
}

bool ApertiumPassageTranslator::isAvailable(const QString& source, const QString& target)
{
    const QStringList modes = route(source, target);
    if (modes.isEmpty() || QStandardPaths::findExecutable(QStringLiteral("apertium")).isEmpty())
        return false;
    for (const QString& mode : modes) {
        if (!QFileInfo::exists(modesDirectory + mode + QStringLiteral(".mode")))
            return false;
    }
    return true;
}

std::optional<QString> ApertiumPassageTranslator::translate(const QString& text, const QString& source,
                                                            const QString& target)
{
    if (!isAvailable(source, target))
        return std::nullopt;
    std::lock_guard lock(pipelinesMutex);
    // Between the modes of a route the text stays in the stream format.
    QByteArray current = toStream(text);
    for (const QString& mode : route(source, target)) {
        const std::shared_ptr<Pipeline> pipeline = pipelineFor(mode);
        if (!pipeline)
            return std::nullopt;
        std::optional<QByteArray> answer = pipeline->translate(current);
        // One that had died since the last passage is started again at once.
        if (!answer && !pipeline->lastFailureWasTimeout())
            answer = pipeline->translate(current);
        if (!answer)
            return std::nullopt;
        current = *answer;
    }
    const QString translated = fromStream(current).trimmed();
    if (translated.isEmpty())
        return std::nullopt;
    return translated;
}

QString ApertiumPassageTranslator::nullFlushCommand(const QString& modeFileContents)
{
    const QString pipeline = modeFileContents.trimmed();
    if (pipeline.isEmpty() || pipeline.contains(QLatin1Char('\n')))
        return {};
    QStringList programs;
    for (const QString& part : pipeline.split(QLatin1Char('|'))) {
        const QString program = part.trimmed();
        const qsizetype space = program.indexOf(QLatin1Char(' '));
        const QString name = space < 0 ? program : program.left(space);
        const QString arguments = space < 0 ? QString() : program.mid(space);
        programs.append(name + QStringLiteral(" -z") + arguments);
    }
    // $1: the generator's marking of unknown words ("-n": none); $2: the tagger's ambiguity option.
    return programs.join(QStringLiteral(" | "))
        .replace(QStringLiteral("$1"), QStringLiteral("-n"))
        .replace(QStringLiteral("$2"), QString());
}

QByteArray ApertiumPassageTranslator::toStream(const QString& text)
{
    QString stream;
    stream.reserve(text.size() + 8);
    for (const QChar c : text) {
        if (c == QLatin1Char('\0'))
            continue;
        if (c == QLatin1Char('\n') || c == QLatin1Char('\r') || c == QLatin1Char('\t')) {
            stream += QLatin1Char('[');
            stream += c;
            stream += QLatin1Char(']');
            continue;
        }
        if (reserved.contains(c))
            stream += QLatin1Char('\\');
        stream += c;
    }
    stream += QStringLiteral("[]");
    return stream.toUtf8();
}

QString ApertiumPassageTranslator::fromStream(const QByteArray& stream)
{
    const QString text = QString::fromUtf8(stream);
    QString plain;
    plain.reserve(text.size());
    bool escaped = false;
    for (const QChar c : text) {
        if (escaped) {
            plain += c;
            escaped = false;
        } else if (c == QLatin1Char('\\')) {
            escaped = true;
        } else if (c != QLatin1Char('[') && c != QLatin1Char(']')) {
            plain += c;
        }
    }
    // A line break comes back as its block followed by the blank the generator puts after it.
    return plain.replace(QStringLiteral("\n "), QStringLiteral("\n"));
}

QList<qint64> ApertiumPassageTranslator::runningProcessGroups()
{
    std::lock_guard lock(pipelinesMutex);
    QList<qint64> groups;
    for (const auto& pipeline : std::as_const(pipelines())) {
        if (pipeline->processGroup() > 0)
            groups.append(pipeline->processGroup());
    }
    return groups;
}

void ApertiumPassageTranslator::stopAll()
{
    std::lock_guard lock(pipelinesMutex);
    pipelines().clear();
}

} // namespace tolvane
