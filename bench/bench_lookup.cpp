// SPDX-License-Identifier: GPL-3.0-or-later
// The look-up as the user feels it. An X client that starts Tolvane (a private profile) and a GTK 3
// window of words, then for each word moves the pointer there, presses the hotkey with XTest and
// waits until the word card is mapped and painted. Run inside the virtual desktop:
//     scripts/virtual-desktop -- build/release/bench/bench_lookup [ROUNDS]
// Prints: the first look-up, p50, p95 and max over 100 different words; Tolvane's resident memory
// after start-up with the pair loaded and its growth over ROUNDS × 100 look-ups (10 by default);
// and the time of a 30-word passage through Apertium (English to Spanish), in this process.
#include "BenchSupport.h"
#include "platform/linux/translation/ApertiumPassageTranslator.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QHash>
#include <QPoint>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <optional>
#include <vector>

using namespace tolvane;
using SteadyClock = std::chrono::steady_clock;

namespace {

const char* const words[] = {
    "house",  "water",   "bread",   "apple",  "window",  "garden",  "river",  "mountain", "street",  "city",
    "school", "teacher", "student", "book",   "paper",   "pencil",  "table",  "chair",    "door",    "kitchen",
    "summer", "winter",  "spring",  "autumn", "morning", "evening", "night",  "friend",   "family",  "mother",
    "father", "brother", "sister",  "child",  "woman",   "man",     "doctor", "hospital", "money",   "market",
    "bank",   "office",  "letter",  "music",  "song",    "picture", "camera", "train",    "station", "airport",
    "bridge", "forest",  "flower",  "tree",   "grass",   "stone",   "sand",   "beach",    "island",  "ocean",
    "cloud",  "rain",    "snow",    "wind",   "storm",   "sun",     "moon",   "star",     "horse",   "dog",
    "cat",    "bird",    "fish",    "cow",    "chicken", "egg",     "milk",   "cheese",   "butter",  "sugar",
    "salt",   "coffee",  "tea",     "wine",   "beer",    "shirt",   "shoe",   "hat",      "coat",    "dress",
    "heart",  "hand",    "head",    "face",   "eye",     "mouth",   "nose",   "ear",      "foot",    "voice",
};
constexpr int wordCount = int(sizeof words / sizeof *words);

double percentile(std::vector<double> values, double q)
{
    std::sort(values.begin(), values.end());
    return values[std::size_t(q * double(values.size() - 1))];
}

long residentKilobytes(qint64 pid)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(pid));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').value(0).toLong();
    }
    return -1;
}

class Desktop
{
public:
    Desktop()
        : m_display(XOpenDisplay(nullptr))
    {
        if (!m_display)
            return;
        m_root = DefaultRootWindow(m_display);
        XSelectInput(m_display, m_root, SubstructureNotifyMask);
        m_pidAtom = XInternAtom(m_display, "_NET_WM_PID", False);
        m_control = XKeysymToKeycode(m_display, XK_Control_L);
        m_alt = XKeysymToKeycode(m_display, XK_Alt_L);
        m_space = XKeysymToKeycode(m_display, XK_space);
    }
    ~Desktop()
    {
        if (m_display)
            XCloseDisplay(m_display);
    }
    bool ok() const { return m_display != nullptr; }

    void movePointer(int x, int y)
    {
        XTestFakeMotionEvent(m_display, -1, x, y, CurrentTime);
        XSync(m_display, False);
    }
    void pressHotkey()
    {
        XTestFakeKeyEvent(m_display, m_control, True, CurrentTime);
        XTestFakeKeyEvent(m_display, m_alt, True, CurrentTime);
        XTestFakeKeyEvent(m_display, m_space, True, CurrentTime);
        XSync(m_display, False);
    }
    void releaseHotkey()
    {
        XTestFakeKeyEvent(m_display, m_space, False, CurrentTime);
        XTestFakeKeyEvent(m_display, m_alt, False, CurrentTime);
        XTestFakeKeyEvent(m_display, m_control, False, CurrentTime);
        XSync(m_display, False);
    }

    // Waits for a window of the process to be mapped, then for it to show more than its
    // background. Returns the milliseconds since `since`, or nothing on time-out.
    std::optional<double> waitForCard(qint64 pid, SteadyClock::time_point since, int timeoutMs)
    {
        Window card = 0;
        while (!card) {
            if (elapsedMs(since) > timeoutMs)
                return std::nullopt;
            while (XPending(m_display)) {
                XEvent event;
                XNextEvent(m_display, &event);
                if (event.type == MapNotify && event.xmap.override_redirect && processOf(event.xmap.window) == pid)
                    card = event.xmap.window;
            }
            if (!card)
                waitForEvent(1);
        }
        m_card = card;
        while (elapsedMs(since) <= timeoutMs) {
            if (painted(card))
                return elapsedMs(since);
            QThread::usleep(200);
        }
        return std::nullopt;
    }
    // Waits for the card to be unmapped (or gives up quietly).
    void waitForHidden(int timeoutMs)
    {
        const auto since = SteadyClock::now();
        while (elapsedMs(since) < timeoutMs) {
            while (XPending(m_display)) {
                XEvent event;
                XNextEvent(m_display, &event);
                if (event.type == UnmapNotify && event.xunmap.window == m_card)
                    return;
            }
            waitForEvent(5);
        }
    }

private:
    static double elapsedMs(SteadyClock::time_point since)
    {
        return std::chrono::duration<double, std::milli>(SteadyClock::now() - since).count();
    }
    void waitForEvent(int ms)
    {
        fd_set set;
        FD_ZERO(&set);
        FD_SET(ConnectionNumber(m_display), &set);
        timeval timeout{0, ms * 1000};
        select(ConnectionNumber(m_display) + 1, &set, nullptr, nullptr, &timeout);
    }
    qint64 processOf(Window window)
    {
        Atom type;
        int format;
        unsigned long count, after;
        unsigned char* data = nullptr;
        qint64 pid = -1;
        if (XGetWindowProperty(m_display, window, m_pidAtom, 0, 1, False, XA_CARDINAL, &type, &format, &count, &after,
                               &data) == Success &&
            data && count == 1)
            pid = qint64(*reinterpret_cast<unsigned long*>(data));
        if (data)
            XFree(data);
        return pid;
    }
    // Text on the card: a good number of different colours in its middle band.
    bool painted(Window card)
    {
        XWindowAttributes attributes;
        if (!XGetWindowAttributes(m_display, card, &attributes) || attributes.map_state != IsViewable)
            return false;
        // From the root window: the screen as the user sees it, clipped to the screen.
        int x = 0, y = 0;
        Window child;
        XTranslateCoordinates(m_display, card, m_root, 0, 0, &x, &y, &child);
        const int screenWidth = DisplayWidth(m_display, DefaultScreen(m_display));
        const int screenHeight = DisplayHeight(m_display, DefaultScreen(m_display));
        const int left = std::max(0, x), top = std::max(0, y + attributes.height / 4);
        const int width = std::min(x + attributes.width, screenWidth) - left;
        const int height = std::min(y + attributes.height * 3 / 4, screenHeight) - top;
        if (width <= 0 || height <= 0)
            return false;
        XImage* image = XGetImage(m_display, m_root, left, top, unsigned(width), unsigned(height), AllPlanes, ZPixmap);
        if (!image)
            return false;
        QHash<unsigned long, int> colours;
        for (int row = 0; row < image->height; row += 2)
            for (int column = 0; column < image->width; column += 2)
                ++colours[XGetPixel(image, column, row)];
        XDestroyImage(image);
        return colours.size() > 12;
    }

    Display* m_display = nullptr;
    Window m_root = 0;
    Window m_card = 0;
    Atom m_pidAtom = 0;
    KeyCode m_control = 0, m_alt = 0, m_space = 0;
};

// The passage benchmark: 30 words through the running English-Spanish pipeline.
void benchPassages()
{
    if (!ApertiumPassageTranslator::isAvailable(QStringLiteral("en"), QStringLiteral("es"))) {
        std::printf("passage: Apertium's English-Spanish pair is not installed\n");
        return;
    }
    QStringList passages;
    for (int i = 0; i < 21; ++i) {
        QStringList thirty;
        for (int w = 0; w < 30; ++w)
            thirty.append(QString::fromLatin1(words[(i * 7 + w * 3) % wordCount]));
        passages.append(QStringLiteral("The ") +
                        thirty.join(QStringLiteral(" and the ")).section(QLatin1Char(' '), 0, 29) + QLatin1Char('.'));
    }
    QElapsedTimer first;
    first.start();
    ApertiumPassageTranslator::translate(passages.first(), QStringLiteral("en"), QStringLiteral("es"));
    const double startMs = double(first.nsecsElapsed()) / 1e6;
    std::vector<double> times;
    for (int i = 1; i < passages.size(); ++i) {
        QElapsedTimer t;
        t.start();
        ApertiumPassageTranslator::translate(passages.at(i), QStringLiteral("en"), QStringLiteral("es"));
        times.push_back(double(t.nsecsElapsed()) / 1e6);
    }
    std::printf("passage of 30 words, English to Spanish: first (pipeline start) %.1f ms; then n=%zu p50 %.1f ms  "
                "p95 %.1f ms  max %.1f ms\n",
                startMs, times.size(), percentile(times, 0.5), percentile(times, 0.95),
                *std::max_element(times.begin(), times.end()));
    ApertiumPassageTranslator::stopAll();
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    // A card that goes away between two requests is not worth dying for.
    XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 10;
    Desktop desktop;
    if (!desktop.ok()) {
        std::fprintf(stderr, "bench_lookup: needs an X11 display (run it in scripts/virtual-desktop)\n");
        return 1;
    }
    const QString buildDirectory = QCoreApplication::applicationDirPath() + QStringLiteral("/..");
    const QString tolvane = buildDirectory + QStringLiteral("/src/tolvane");
    // Built with the benchmarks when the tests are not.
    const QString wordsWindow = buildDirectory + QStringLiteral("/tests/gtk_words_window");
    if (!QFile::exists(tolvane) || !QFile::exists(wordsWindow)) {
        std::fprintf(stderr, "bench_lookup: build tolvane and gtk_words_window first\n");
        return 1;
    }

    // A profile of its own: Ctrl+Alt+Space (the window manager keeps Alt+Space), a card that goes
    // 50 ms after the release, so that look-ups follow each other quickly.
    QTemporaryDir profile;
    QDir().mkpath(profile.path() + QStringLiteral("/config/Tolvane"));
    QFile preferences(profile.path() + QStringLiteral("/config/Tolvane/preferences.json"));
    preferences.open(QIODevice::WriteOnly);
    preferences.write(R"({"customHotkeyKeyCode":49,"customHotkeyModifiers":6144,"wordOverlayDurationSeconds":0.05,)"
                      R"("onboardingComplete":true})");
    preferences.close();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), profile.path() + QStringLiteral("/config"));
    environment.insert(QStringLiteral("XDG_DATA_HOME"), profile.path() + QStringLiteral("/data"));
    environment.insert(QStringLiteral("TOLVANE_INSTANCE_NAME"),
                       QStringLiteral("tolvane-bench-%1").arg(app.applicationPid()));
    environment.insert(QStringLiteral("OMP_THREAD_LIMIT"), QStringLiteral("1"));
    environment.insert(QStringLiteral("GSETTINGS_BACKEND"), QStringLiteral("memory"));

    QStringList text;
    for (const char* word : words)
        text.append(QString::fromLatin1(word));
    QProcess window;
    window.start(wordsWindow, {QStringLiteral("--title"), QStringLiteral("Bench words"), text.join(QLatin1Char(' '))});
    QHash<QString, QPoint> points;
    QElapsedTimer waited;
    waited.start();
    bool ready = false;
    while (!ready && waited.elapsed() < 20000) {
        if (!window.canReadLine() && !window.waitForReadyRead(200))
            continue;
        while (window.canReadLine()) {
            const QStringList parts = QString::fromUtf8(window.readLine()).trimmed().split(QLatin1Char(' '));
            if (parts.size() == 1 && parts.first() == QLatin1String("ready"))
                ready = true;
            else if (parts.size() == 4)
                points.insert(parts[1], QPoint(parts[2].toInt(), parts[3].toInt()));
        }
    }
    if (!ready) {
        std::fprintf(stderr, "bench_lookup: the words window did not come up\n");
        return 1;
    }

    QProcess app_;
    app_.setProcessEnvironment(environment);
    app_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    app_.setStandardOutputFile(QProcess::nullDevice());
    app_.start(tolvane, {});
    if (!app_.waitForStarted(5000)) {
        std::fprintf(stderr, "bench_lookup: Tolvane did not start\n");
        return 1;
    }
    const qint64 pid = app_.processId();
    // Start-up, then the pair, tagger, recogniser and card prepared in the background.
    QThread::sleep(4);
    const long idleKb = residentKilobytes(pid);

    std::vector<double> latencies;
    std::optional<double> firstLookUp;
    long afterFirstRoundKb = -1;
    int timeouts = 0;
    for (int round = 0; round < rounds; ++round) {
        for (int i = 0; i < wordCount; ++i) {
            const QPoint point = points.value(QString::fromLatin1(words[i]));
            desktop.movePointer(point.x(), point.y());
            QThread::msleep(5);
            const auto pressed = SteadyClock::now();
            desktop.pressHotkey();
            const std::optional<double> shown = desktop.waitForCard(pid, pressed, 3000);
            desktop.releaseHotkey();
            if (!shown) {
                if (++timeouts == 3 && latencies.empty()) {
                    std::fprintf(stderr, "bench_lookup: no card appeared for the first words; giving up\n");
                    break;
                }
            } else {
                if (!firstLookUp)
                    firstLookUp = shown;
                else if (round == 0)
                    latencies.push_back(*shown);
            }
            desktop.waitForHidden(1000);
            QThread::msleep(20);
        }
        if (round == 0)
            afterFirstRoundKb = residentKilobytes(pid);
    }
    const long afterAllKb = residentKilobytes(pid);

    if (firstLookUp)
        std::printf("first look-up (press to card mapped and painted): %.1f ms\n", *firstLookUp);
    if (!latencies.empty())
        std::printf("look-ups of %zu different words: p50 %.1f ms  p95 %.1f ms  max %.1f ms  (%d timed out)\n",
                    latencies.size(), percentile(latencies, 0.5), percentile(latencies, 0.95),
                    *std::max_element(latencies.begin(), latencies.end()), timeouts);
    std::printf("resident memory: idle after start-up %ld kB; after %d look-ups %ld kB; after %d look-ups %ld kB "
                "(growth beyond the first round: %ld kB)\n",
                idleKb, wordCount, afterFirstRoundKb, rounds * wordCount, afterAllKb, afterAllKb - afterFirstRoundKb);

    ::kill(pid_t(pid), SIGTERM);
    app_.waitForFinished(5000);
    window.kill();
    window.waitForFinished(3000);
    benchPassages();
    return 0;
}
