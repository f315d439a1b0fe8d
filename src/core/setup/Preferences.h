// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/setup/AppearanceMode.h"
#include "core/setup/PreferenceKeys.h"
#include "core/translation/LanguageTable.h"
#include "platform/PreferenceStore.h"

#include <QList>
#include <QObject>
#include <QString>

#include <optional>

namespace tolvane {

// A lookup hotkey: a virtual key code and a modifier mask (Command 256, Shift 512, Option 2048,
// Control 4096). Key code 4294967295 marks a combination of modifier keys alone.
//
// The default is Ctrl+Alt+Space (Space with Control and Option). Alt+Space opens the window menu
// on GNOME, Cinnamon, MATE, Xfce and openbox and KRunner on KDE Plasma, so the grab fails on a
// first start there. Ctrl+Alt+Space is bound by none of them as Debian 12 ships them: the
// gsettings schemas org.gnome.desktop.wm.keybindings, org.gnome.mutter(.wayland).keybindings,
// org.gnome.shell.keybindings, org.gnome.settings-daemon.plugins.media-keys,
// org.cinnamon.desktop.keybindings.*, org.mate.Marco.*; KDE's kglobalaccel service files and
// KWin's built-in bindings; Xfce's xfce4-keyboard-shortcuts.xml; openbox's rc.xml; LXQt's
// globalkeyshortcuts.conf. Their only Space bindings are Alt+Space, Super+Space, Shift+Super+Space.
struct HotkeyCombination
{
    quint32 keyCode = 49;
    quint32 modifiers = 4096 | 2048;

    static constexpr quint32 modifierOnlyKeyCode = 4294967295u;
    bool isModifierOnly() const { return keyCode == modifierOnlyKeyCode; }
    friend bool operator==(const HotkeyCombination&, const HotkeyCombination&) = default;
};

// Typed access to the preference store. Values are read at the moment of use and never cached,
// so a change made anywhere takes effect at the next read. Each reader applies its own default.
class Preferences final : public QObject
{
    Q_OBJECT
public:
    static constexpr double defaultWordOverlayDurationSeconds = 5.0;
    static constexpr double defaultPassageOverlayDurationSeconds = 3.0;
    static constexpr double defaultNotificationIntervalHours = 4.0;
    static inline const QString defaultTargetLanguage = defaultTargetLanguageCode();

    explicit Preferences(PreferenceStore& store, QObject* parent = nullptr);

    PreferenceStore& store() const { return m_store; }

    // The two registered defaults, set once at start-up before anything reads them.
    void registerStartupDefaults();
    // Logs one line naming the keys whose stored value has a type their reader cannot use.
    void reportMistypedValues() const;

    // Store access with the usual conversions: absent gives false, 0, 0.0 or nothing.
    std::optional<PreferenceValue> objectForKey(const QString& key) const;
    bool boolForKey(const QString& key) const;
    qint64 integerForKey(const QString& key) const;
    double doubleForKey(const QString& key) const;
    std::optional<QString> stringForKey(const QString& key) const;
    std::optional<QList<qint64>> arrayForKey(const QString& key) const;

    void setBool(const QString& key, bool value);
    void setInteger(const QString& key, qint64 value);
    void setDouble(const QString& key, double value);
    void setString(const QString& key, const QString& value);
    void setIntegerArray(const QString& key, const QList<qint64>& value);
    void removeObject(const QString& key);

    // Readers of the settings, each with its default and its rule for absent or invalid values.
    bool translationHelperEnabled() const;
    QString targetLanguage() const;
    // The stored code only: new cards carry no language when none was ever chosen.
    std::optional<QString> storedTargetLanguage() const;
    bool onboardingComplete() const;
    bool axWordLookupEnabled() const;
    bool ocrFallbackEnabled() const;
    bool passageAutoSaveEnabled() const;
    double wordOverlayDurationSeconds() const;
    // Ten times the reading time, never under a minute.
    double wordOverlayMaximumHoldSeconds() const;
    double passageOverlayDurationSeconds() const;
    double notificationIntervalHours() const;
    double notificationIntervalSeconds() const;
    bool notificationPermissionGranted() const;
    HotkeyCombination customHotkey() const;
    AppearanceMode appearanceMode() const;
    qint64 successfulWordLookupCount() const;
    QList<qint64> shownLookupMilestones() const;

Q_SIGNALS:
    // Every bound control and every listener hears of a change through this one signal.
    void changed(const QString& key);

private:
    double positiveDouble(const QString& key, double fallback) const;

    PreferenceStore& m_store;
};

} // namespace tolvane
