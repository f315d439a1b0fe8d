// SPDX-License-Identifier: GPL-3.0-or-later
// libFuzzer target for the preferences file: whatever bytes preferences.json holds, loading it
// keeps them (set aside whole, or copied before a rewrite), the values it keeps survive writing
// and reading again, and every typed reader answers with a value its callers can use.
#include "FuzzSupport.h"
#include "core/setup/Preferences.h"
#include "platform/linux/JsonFilePreferenceStore.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cmath>
#include <cstdint>
#include <cstdlib>

using namespace tolvane;
using tolvane::fuzz::require;

namespace {

const QLatin1String knownKeys[] = {
    PreferenceKey::translationHelperEnabled,
    PreferenceKey::targetLanguage,
    PreferenceKey::onboardingComplete,
    PreferenceKey::axWordLookupEnabled,
    PreferenceKey::ocrFallbackEnabled,
    PreferenceKey::passageAutoSaveEnabled,
    PreferenceKey::wordOverlayDurationSeconds,
    PreferenceKey::passageOverlayDurationSeconds,
    PreferenceKey::notificationIntervalHours,
    PreferenceKey::notificationPermissionGranted,
    PreferenceKey::customHotkeyKeyCode,
    PreferenceKey::customHotkeyModifiers,
    PreferenceKey::appearanceMode,
    PreferenceKey::successfulWordLookupCount,
    PreferenceKey::shownLookupMilestones,
    PreferenceKey::automaticallyCheckForUpdates,
    PreferenceKey::lastUpdateCheckDate,
    PreferenceKey::skippedUpdateVersion,
    PreferenceKey::updateReminderDate,
};

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Written and read again, the values a file gave must come back with the same types.
void requireStableRoundTrip(const QMap<QString, PreferenceValue>& values)
{
    QMap<QString, PreferenceValue> writable = values;
    writable.removeIf([](const auto& it) {
        const double* d = std::get_if<double>(&it.value());
        return d && !std::isfinite(*d);
    });
    const JsonFilePreferenceStore::Parsed again =
        JsonFilePreferenceStore::parse(JsonFilePreferenceStore::serialize(values));
    require(again.error.isEmpty() && again.ignoredKeys.isEmpty() && again.values == writable);
}

void readEverything(const Preferences& prefs, const QStringList& storedKeys)
{
    QStringList keys = storedKeys;
    for (const QLatin1String key : knownKeys)
        keys.append(key);
    for (const QString& key : keys) {
        (void)prefs.objectForKey(key);
        (void)prefs.boolForKey(key);
        (void)prefs.integerForKey(key);
        (void)prefs.doubleForKey(key);
        (void)prefs.stringForKey(key);
        (void)prefs.arrayForKey(key);
    }
    prefs.reportMistypedValues();
    (void)prefs.translationHelperEnabled();
    require(!prefs.targetLanguage().isEmpty());
    (void)prefs.onboardingComplete();
    (void)prefs.axWordLookupEnabled();
    (void)prefs.ocrFallbackEnabled();
    (void)prefs.passageAutoSaveEnabled();
    // Timers are built from these: each must be a positive number, never NaN or zero.
    for (const double seconds : {prefs.wordOverlayDurationSeconds(), prefs.passageOverlayDurationSeconds(),
                                 prefs.notificationIntervalHours(), prefs.notificationIntervalSeconds()})
        require(seconds > 0);
    require(prefs.wordOverlayMaximumHoldSeconds() >= 60);
    (void)prefs.notificationPermissionGranted();
    (void)prefs.customHotkey();
    const AppearanceMode mode = prefs.appearanceMode();
    require(mode == AppearanceMode::system || mode == AppearanceMode::light || mode == AppearanceMode::dark);
    (void)prefs.successfulWordLookupCount();
    (void)prefs.shownLookupMilestones();
}

// The values a file gave, held as the file store holds them once loaded.
class LoadedStore final : public MemoryPreferenceStore
{
public:
    explicit LoadedStore(QMap<QString, PreferenceValue> values) { replaceStoredValues(std::move(values)); }
};

// The store's own loading: what it keeps is what the text says, and nothing the user wrote is
// lost: a file it cannot use whole is kept beside the one in use.
void loadFromFile(const QByteArray& bytes, const JsonFilePreferenceStore::Parsed& parsed)
{
    const QDir dir(fuzz::workDirectory("preferences")->path());
    const QString path = dir.filePath(QStringLiteral("preferences.json"));
    {
        QFile file(path);
        require(file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size());
    }
    {
        JsonFilePreferenceStore store(path);
        const QStringList copies = dir.entryList({QStringLiteral("preferences.json.corrupt-*")}, QDir::Files);
        if (!parsed.error.isEmpty() || !parsed.ignoredKeys.isEmpty())
            require(copies.size() == 1 && readFile(dir.filePath(copies.first())) == bytes);
        if (!parsed.error.isEmpty()) {
            require(!QFile::exists(path) && store.storedValues().isEmpty());
        } else if (!parsed.ignoredKeys.isEmpty()) {
            // The file in use is rewritten with the values that were kept.
            require(JsonFilePreferenceStore::parse(readFile(path)).values == store.storedValues());
        } else {
            require(copies.isEmpty() && store.storedValues() == parsed.values);
        }
    }
    for (const QString& name : dir.entryList(QDir::Files | QDir::Hidden))
        QFile::remove(dir.filePath(name));
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    // The store logs every broken file it meets; millions of such lines say nothing here.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    new QCoreApplication(*argc, *argv);
    require(fuzz::workDirectory("preferences")->isValid());
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const JsonFilePreferenceStore::Parsed parsed = JsonFilePreferenceStore::parse(bytes);
    if (parsed.error.isEmpty())
        requireStableRoundTrip(parsed.values);
    {
        LoadedStore store(parsed.values);
        Preferences prefs(store);
        prefs.registerStartupDefaults();
        readEverything(prefs, parsed.values.keys());
    }
    // Going through a real file costs a file watcher, whose teardown waits on the kernel for
    // milliseconds; one input in eight (by length, so a crash reproduces) takes that path.
    if (size % 8 == 0)
        loadFromFile(bytes, parsed);
    return 0;
}
