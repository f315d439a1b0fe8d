// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/setup/Preferences.h"

#include "core/support/Logging.h"

#include <QStringList>

#include <cmath>
#include <limits>

TOLVANE_DEFINE_LOG(lcPreferences, "Preferences")

namespace tolvane {

namespace {

template <typename... Fs> struct Overloaded : Fs...
{
    using Fs::operator()...;
};
template <typename... Fs> Overloaded(Fs...) -> Overloaded<Fs...>;

// Doubles that do not fit an integer read as 0 rather than as undefined behaviour.
qint64 truncatedInteger(double value)
{
    if (!std::isfinite(value) || value >= 9.2e18 || value <= -9.2e18)
        return 0;
    return static_cast<qint64>(value);
}

bool textMeansTrue(const QString& text)
{
    const QString t = text.trimmed().toLower();
    if (t == QLatin1String("yes") || t == QLatin1String("true"))
        return true;
    bool isNumber = false;
    const double number = t.toDouble(&isNumber);
    return isNumber && number != 0.0;
}

enum class Kind { boolean, integer, real, text, integerArray };

struct KeyRule
{
    QLatin1String key;
    Kind kind;
};

// The type each known key must hold to be used by its reader.
constexpr KeyRule keyRules[] = {
    {PreferenceKey::translationHelperEnabled, Kind::boolean},
    {PreferenceKey::targetLanguage, Kind::text},
    {PreferenceKey::onboardingComplete, Kind::boolean},
    {PreferenceKey::axWordLookupEnabled, Kind::boolean},
    {PreferenceKey::ocrFallbackEnabled, Kind::boolean},
    {PreferenceKey::passageAutoSaveEnabled, Kind::boolean},
    {PreferenceKey::wordOverlayDurationSeconds, Kind::real},
    {PreferenceKey::passageOverlayDurationSeconds, Kind::real},
    {PreferenceKey::notificationIntervalHours, Kind::real},
    {PreferenceKey::notificationPermissionGranted, Kind::boolean},
    {PreferenceKey::customHotkeyKeyCode, Kind::integer},
    {PreferenceKey::customHotkeyModifiers, Kind::integer},
    {PreferenceKey::appearanceMode, Kind::text},
    {PreferenceKey::successfulWordLookupCount, Kind::integer},
    {PreferenceKey::shownLookupMilestones, Kind::integerArray},
};

bool holdsKind(const PreferenceValue& value, Kind kind)
{
    switch (kind) {
    case Kind::boolean:
        return std::holds_alternative<bool>(value);
    case Kind::integer:
        return std::holds_alternative<qint64>(value);
    case Kind::real:
        return std::holds_alternative<double>(value) || std::holds_alternative<qint64>(value);
    case Kind::text:
        return std::holds_alternative<QString>(value);
    case Kind::integerArray:
        return std::holds_alternative<QList<qint64>>(value);
    }
    return false;
}

std::optional<quint32> hotkeyField(const std::optional<PreferenceValue>& value, quint32 fallback, bool* outOfRange)
{
    if (!value || !std::holds_alternative<qint64>(*value))
        return fallback;
    const qint64 stored = std::get<qint64>(*value);
    if (stored < 0 || stored > qint64(std::numeric_limits<quint32>::max())) {
        *outOfRange = true;
        return std::nullopt;
    }
    return quint32(stored);
}

} // namespace

Preferences::Preferences(PreferenceStore& store, QObject* parent)
    : QObject(parent)
    , m_store(store)
{
    connect(&m_store, &PreferenceStore::valueChanged, this, &Preferences::changed);
}

void Preferences::registerStartupDefaults()
{
    m_store.registerDefaults({
        {PreferenceKey::axWordLookupEnabled, PreferenceValue(true)},
        {PreferenceKey::ocrFallbackEnabled, PreferenceValue(true)},
    });
}

void Preferences::reportMistypedValues() const
{
    QStringList mistyped;
    for (const KeyRule& rule : keyRules) {
        const auto value = m_store.object(rule.key);
        if (value && !holdsKind(*value, rule.kind))
            mistyped.append(rule.key);
    }
    if (!mistyped.isEmpty())
        qCWarning(lcPreferences).noquote()
            << "Ignoring values of the wrong type, using defaults for:" << mistyped.join(QStringLiteral(", "));
}

std::optional<PreferenceValue> Preferences::objectForKey(const QString& key) const
{
    return m_store.object(key);
}

bool Preferences::boolForKey(const QString& key) const
{
    const auto value = m_store.object(key);
    if (!value)
        return false;
    return std::visit(Overloaded{
                          [](bool b) { return b; },
                          [](qint64 i) { return i != 0; },
                          [](double d) { return d != 0.0; },
                          [](const QString& s) { return textMeansTrue(s); },
                          [](const QList<qint64>&) { return false; },
                      },
                      *value);
}

qint64 Preferences::integerForKey(const QString& key) const
{
    const auto value = m_store.object(key);
    if (!value)
        return 0;
    return std::visit(Overloaded{
                          [](bool b) { return qint64(b ? 1 : 0); },
                          [](qint64 i) { return i; },
                          [](double d) { return truncatedInteger(d); },
                          [](const QString& s) { return truncatedInteger(s.trimmed().toDouble()); },
                          [](const QList<qint64>&) { return qint64(0); },
                      },
                      *value);
}

double Preferences::doubleForKey(const QString& key) const
{
    const auto value = m_store.object(key);
    if (!value)
        return 0.0;
    return std::visit(Overloaded{
                          [](bool b) { return b ? 1.0 : 0.0; },
                          [](qint64 i) { return double(i); },
                          [](double d) { return d; },
                          [](const QString& s) { return s.trimmed().toDouble(); },
                          [](const QList<qint64>&) { return 0.0; },
                      },
                      *value);
}

std::optional<QString> Preferences::stringForKey(const QString& key) const
{
    const auto value = m_store.object(key);
    if (!value)
        return std::nullopt;
    return std::visit(Overloaded{
                          [](bool b) -> std::optional<QString> { return QString::number(b ? 1 : 0); },
                          [](qint64 i) -> std::optional<QString> { return QString::number(i); },
                          [](double d) -> std::optional<QString> { return QString::number(d); },
                          [](const QString& s) -> std::optional<QString> { return s; },
                          [](const QList<qint64>&) -> std::optional<QString> { return std::nullopt; },
                      },
                      *value);
}

std::optional<QList<qint64>> Preferences::arrayForKey(const QString& key) const
{
    const auto value = m_store.object(key);
    if (!value || !std::holds_alternative<QList<qint64>>(*value))
        return std::nullopt;
    return std::get<QList<qint64>>(*value);
}

void Preferences::setBool(const QString& key, bool value)
{
    m_store.set(key, value);
}

void Preferences::setInteger(const QString& key, qint64 value)
{
    m_store.set(key, value);
}

void Preferences::setDouble(const QString& key, double value)
{
    if (!std::isfinite(value)) {
        qCWarning(lcPreferences).noquote() << "Refusing to store a non-finite number for" << key;
        return;
    }
    m_store.set(key, value);
}

void Preferences::setString(const QString& key, const QString& value)
{
    m_store.set(key, value);
}

void Preferences::setIntegerArray(const QString& key, const QList<qint64>& value)
{
    m_store.set(key, value);
}

void Preferences::removeObject(const QString& key)
{
    m_store.remove(key);
}

bool Preferences::translationHelperEnabled() const
{
    // Only a stored Boolean false switches look-ups off; anything else leaves them on.
    const auto value = m_store.object(PreferenceKey::translationHelperEnabled);
    return !(value && std::holds_alternative<bool>(*value) && !std::get<bool>(*value));
}

QString Preferences::targetLanguage() const
{
    return storedTargetLanguage().value_or(defaultTargetLanguage);
}

std::optional<QString> Preferences::storedTargetLanguage() const
{
    const auto value = m_store.object(PreferenceKey::targetLanguage);
    if (!value || !std::holds_alternative<QString>(*value))
        return std::nullopt;
    return std::get<QString>(*value);
}

bool Preferences::onboardingComplete() const
{
    return boolForKey(PreferenceKey::onboardingComplete);
}

bool Preferences::axWordLookupEnabled() const
{
    return boolForKey(PreferenceKey::axWordLookupEnabled);
}

bool Preferences::ocrFallbackEnabled() const
{
    return boolForKey(PreferenceKey::ocrFallbackEnabled);
}

bool Preferences::passageAutoSaveEnabled() const
{
    return boolForKey(PreferenceKey::passageAutoSaveEnabled);
}

double Preferences::positiveDouble(const QString& key, double fallback) const
{
    const double value = doubleForKey(key);
    return (std::isfinite(value) && value > 0) ? value : fallback;
}

double Preferences::wordOverlayDurationSeconds() const
{
    return positiveDouble(PreferenceKey::wordOverlayDurationSeconds, defaultWordOverlayDurationSeconds);
}

double Preferences::wordOverlayMaximumHoldSeconds() const
{
    return std::max(60.0, 10.0 * wordOverlayDurationSeconds());
}

double Preferences::passageOverlayDurationSeconds() const
{
    return positiveDouble(PreferenceKey::passageOverlayDurationSeconds, defaultPassageOverlayDurationSeconds);
}

double Preferences::notificationIntervalHours() const
{
    return positiveDouble(PreferenceKey::notificationIntervalHours, defaultNotificationIntervalHours);
}

double Preferences::notificationIntervalSeconds() const
{
    return notificationIntervalHours() * 3600.0;
}

bool Preferences::notificationPermissionGranted() const
{
    return boolForKey(PreferenceKey::notificationPermissionGranted);
}

HotkeyCombination Preferences::customHotkey() const
{
    const HotkeyCombination fallback;
    bool outOfRange = false;
    const auto keyCode = hotkeyField(m_store.object(PreferenceKey::customHotkeyKeyCode), fallback.keyCode, &outOfRange);
    const auto modifiers =
        hotkeyField(m_store.object(PreferenceKey::customHotkeyModifiers), fallback.modifiers, &outOfRange);
    // A value that cannot be represented makes the whole combination meaningless.
    if (outOfRange)
        return fallback;
    return HotkeyCombination{*keyCode, *modifiers};
}

AppearanceMode Preferences::appearanceMode() const
{
    const auto value = m_store.object(PreferenceKey::appearanceMode);
    if (!value || !std::holds_alternative<QString>(*value))
        return AppearanceMode::system;
    return appearanceModeFromRawValue(std::get<QString>(*value));
}

qint64 Preferences::successfulWordLookupCount() const
{
    return integerForKey(PreferenceKey::successfulWordLookupCount);
}

QList<qint64> Preferences::shownLookupMilestones() const
{
    return arrayForKey(PreferenceKey::shownLookupMilestones).value_or(QList<qint64>{});
}

} // namespace tolvane
