// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/speech/DesktopSpeechSynthesizer.h"

#include "core/support/Logging.h"

#include <QFileInfo>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include <espeak-ng/speak_lib.h>
#include <libspeechd.h>

TOLVANE_DEFINE_LOG(lcSpeech, "DesktopSpeechSynthesizer")

namespace tolvane {

namespace {

// Where Debian's espeak-ng keeps one dictionary per language.
const QString espeakDataDirectory = QStringLiteral("/usr/lib/x86_64-linux-gnu/espeak-ng-data/");

QString languageOf(const QString& localeCode)
{
    return localeCode.section(QLatin1Char('-'), 0, 0).section(QLatin1Char('_'), 0, 0).toLower();
}

QString espeakDictionary(const QString& localeCode)
{
    const QString language = languageOf(localeCode);
    return language == QLatin1String("zh") ? QStringLiteral("cmn") : language;
}

struct Request
{
    QString text;
    QString locale; // empty: only stop
};

} // namespace

struct DesktopSpeechSynthesizer::State
{
    std::mutex mutex;
    std::condition_variable wake;
    std::optional<Request> pending;
    bool quit = false;
    bool finished = false;
    std::condition_variable finishedSignal;

    // Worker thread only.
    SPDConnection* dispatcher = nullptr;
    bool dispatcherTried = false;
    bool espeakReady = false;
    bool espeakTried = false;

    void run();
    void perform(const Request& request);
    bool speakThroughDispatcher(const Request& request);
    void speakThroughEspeak(const Request& request);
};

void DesktopSpeechSynthesizer::State::run()
{
    for (;;) {
        Request request;
        {
            std::unique_lock lock(mutex);
            wake.wait(lock, [this] { return quit || pending.has_value(); });
            if (quit)
                break;
            request = std::move(*pending);
            pending.reset();
        }
        perform(request);
    }
    if (dispatcher) {
        spd_cancel(dispatcher);
        spd_close(dispatcher);
    }
    if (espeakReady) {
        espeak_Cancel();
        espeak_Terminate();
    }
    std::lock_guard lock(mutex);
    finished = true;
    finishedSignal.notify_all();
}

void DesktopSpeechSynthesizer::State::perform(const Request& request)
{
    // Nothing was ever said: there is nothing to stop, and no reason to open a sound device.
    if (request.locale.isEmpty() && !dispatcher && !espeakReady)
        return;
    if (!dispatcherTried) {
        dispatcherTried = true;
        char* error = nullptr;
        // No autospawn: a desktop without the service gets espeak-ng rather than a wait.
        dispatcher = spd_open2("tolvane", "main", nullptr, SPD_MODE_THREADED, nullptr, 0, &error);
        if (!dispatcher)
            qCInfo(lcSpeech).noquote() << "speech-dispatcher is not running; speaking with espeak-ng"
                                       << (error ? QString::fromUtf8(error) : QString());
        free(error);
    }
    if (dispatcher) {
        spd_cancel(dispatcher);
        if (request.locale.isEmpty() || speakThroughDispatcher(request))
            return;
        // The service went away: speak locally from now on.
        spd_close(dispatcher);
        dispatcher = nullptr;
    }
    speakThroughEspeak(request);
}

bool DesktopSpeechSynthesizer::State::speakThroughDispatcher(const Request& request)
{
    const QByteArray language = languageOf(request.locale).toUtf8();
    spd_set_language(dispatcher, language.constData());
    if (language == "zh")
        spd_set_synthesis_voice(dispatcher, "cmn-latn-pinyin");
    const QByteArray text = request.text.toUtf8();
    if (spd_say(dispatcher, SPD_TEXT, text.constData()) < 0) {
        qCWarning(lcSpeech) << "speech-dispatcher refused the text; speaking with espeak-ng";
        return false;
    }
    return true;
}

void DesktopSpeechSynthesizer::State::speakThroughEspeak(const Request& request)
{
    if (!espeakTried) {
        espeakTried = true;
        espeakReady = espeak_Initialize(AUDIO_OUTPUT_PLAYBACK, 0, nullptr, 0) > 0;
        if (!espeakReady)
            qCWarning(lcSpeech) << "espeak-ng cannot play sound here; words are not spoken";
    }
    if (!espeakReady)
        return;
    espeak_Cancel();
    if (request.locale.isEmpty())
        return;
    const QByteArray voice = DesktopSpeechSynthesizer::espeakVoice(request.locale).toUtf8();
    if (espeak_SetVoiceByName(voice.constData()) != EE_OK) {
        qCWarning(lcSpeech) << "espeak-ng has no voice" << voice;
        return;
    }
    const QByteArray text = request.text.toUtf8();
    espeak_Synth(text.constData(), size_t(text.size()) + 1, 0, POS_CHARACTER, 0, espeakCHARS_UTF8, nullptr, nullptr);
}

DesktopSpeechSynthesizer::DesktopSpeechSynthesizer(KanaReading kana)
    : m_state(std::make_shared<State>())
    , m_kana(std::move(kana))
{
    std::thread([state = m_state] { state->run(); }).detach();
}

DesktopSpeechSynthesizer::~DesktopSpeechSynthesizer()
{
    std::unique_lock lock(m_state->mutex);
    m_state->quit = true;
    m_state->wake.notify_all();
    // A hung speech service must not hold the end of the process; the thread keeps its own state.
    m_state->finishedSignal.wait_for(lock, std::chrono::milliseconds(300), [this] { return m_state->finished; });
}

void DesktopSpeechSynthesizer::speak(const QString& text, const QString& localeCode)
{
    QString spoken = text;
    if (languageOf(localeCode) == QLatin1String("ja") && m_kana) {
        if (auto kana = m_kana(text))
            spoken = *kana;
    }
    std::lock_guard lock(m_state->mutex);
    m_state->pending = Request{spoken, localeCode};
    m_state->wake.notify_all();
}

void DesktopSpeechSynthesizer::stop()
{
    std::lock_guard lock(m_state->mutex);
    m_state->pending = Request{};
    m_state->wake.notify_all();
}

bool DesktopSpeechSynthesizer::hasVoice(const QString& localeCode) const
{
    // espeak-ng speaks every language it has a dictionary for; speech-dispatcher's usual module is
    // espeak-ng too.
    const QString dictionary = espeakDictionary(localeCode);
    return !dictionary.isEmpty() && QFileInfo::exists(espeakDataDirectory + dictionary + QStringLiteral("_dict"));
}

QString DesktopSpeechSynthesizer::espeakVoice(const QString& localeCode)
{
    const QString language = languageOf(localeCode);
    if (language == QLatin1String("zh"))
        return QStringLiteral("cmn-latn-pinyin");
    if (localeCode.compare(QLatin1String("pt-BR"), Qt::CaseInsensitive) == 0)
        return QStringLiteral("pt-BR");
    if (language == QLatin1String("en"))
        return QStringLiteral("en-us");
    return language;
}

} // namespace tolvane
