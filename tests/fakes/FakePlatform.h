// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Recording fakes of every platform interface. Each keeps what it was asked and answers what the
// test set up; none touches the desktop.

#include "core/support/Scheduler.h"
#include "fakes/FakeKeyReleaseMonitor.h"
#include "platform/PlatformServices.h"
#include "platform/null/MemoryPreferenceStore.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QPair>

namespace tolvane {

// Counts the opening; an error text makes it fail with that text.
inline Result<void> openedSettings(int& openings, const QString& error)
{
    ++openings;
    if (!error.isEmpty())
        return Error{error};
    return {};
}

class FakeAccessibleElement final : public AccessibleElement
{
public:
    QMap<QString, QString> attributes;
    std::optional<TextRange> range; // nothing: the element can place points, but none is on a character
    bool rangeRejected = false;     // the element cannot place points at all
    std::optional<QString> selection;
    mutable QStringList attributeQueries;

    std::optional<QString> attribute(const QString& name) const override
    {
        attributeQueries.append(name);
        if (auto it = attributes.constFind(name); it != attributes.cend())
            return *it;
        return std::nullopt;
    }
    Result<std::optional<TextRange>> rangeForPosition(QPointF) const override
    {
        if (rangeRejected)
            return Error{QStringLiteral("The element cannot place points in its text.")};
        return range;
    }
    std::optional<QString> selectedText() const override { return selection; }
};

class FakeAccessibilityService final : public AccessibilityService
{
public:
    AccessibleElementPtr elementUnderPointer;
    AccessibleElementPtr focused;
    bool trusted = true;
    int trustRequests = 0;
    bool grantOnRequest = false; // a request switches access on
    QString settingsError;       // non-empty: opening the settings fails with it
    int settingsOpened = 0;
    QList<QPointF> pointsAsked;

    AccessibleElementPtr elementAtPoint(QPointF point) override
    {
        pointsAsked.append(point);
        return elementUnderPointer;
    }
    AccessibleElementPtr focusedElement() override { return focused; }
    bool isTrusted() const override { return trusted; }
    bool requestTrust() override
    {
        ++trustRequests;
        if (grantOnRequest)
            trusted = true;
        return trusted;
    }
    Result<void> openSystemSettings() override { return openedSettings(settingsOpened, settingsError); }
};

class FakeGlobalHotkeyService final : public GlobalHotkeyService
{
public:
    struct Registration
    {
        quint32 keyCode;
        quint32 modifiers;
        HotkeyIdentifier identifier;
    };
    QList<Registration> registered; // currently held
    QList<Registration> attempts;   // every call, in order
    QList<HotkeyIdentifier> unregistered;
    // Combinations another client holds: registering them fails.
    QList<QPair<quint32, quint32>> takenByOthers;
    EventHandler handler;
    ModifierHandler modifierHandler;
    bool modifierMonitorFails = false;

    Result<void> registerHotkey(quint32 keyCode, quint32 modifiers, HotkeyIdentifier identifier) override
    {
        attempts.append({keyCode, modifiers, identifier});
        if (takenByOthers.contains(qMakePair(keyCode, modifiers)))
            return Error{QStringLiteral("The combination is held by another application.")};
        registered.append({keyCode, modifiers, identifier});
        return {};
    }
    void unregisterHotkey(HotkeyIdentifier identifier) override
    {
        unregistered.append(identifier);
        registered.removeIf([&](const Registration& r) { return r.identifier == identifier; });
    }
    void setEventHandler(EventHandler h) override { handler = std::move(h); }
    Result<void> startModifierMonitor(ModifierHandler h) override
    {
        if (modifierMonitorFails)
            return Error{QStringLiteral("The modifier monitor could not start.")};
        modifierHandler = std::move(h);
        return {};
    }
    void stopModifierMonitor() override { modifierHandler = nullptr; }

    // Test side: the desktop reports an event.
    void press(HotkeyIdentifier id)
    {
        if (handler)
            handler(id, HotkeyEventKind::pressed);
    }
    void release(HotkeyIdentifier id)
    {
        if (handler)
            handler(id, HotkeyEventKind::released);
    }
    void modifiersChanged(quint32 mask)
    {
        if (modifierHandler)
            modifierHandler(mask);
    }
};

class FakeEventMonitor final : public EventMonitor
{
public:
    QHash<Token, KeyHandler> keyMonitors;
    QHash<Token, ClickHandler> clickMonitors;
    QHash<Token, ClickHandler> keyPressMonitors;

    Token addLocalKeyMonitor(KeyHandler handler) override
    {
        keyMonitors.insert(++m_next, std::move(handler));
        return m_next;
    }
    Token addClickMonitor(ClickHandler handler) override
    {
        clickMonitors.insert(++m_next, std::move(handler));
        return m_next;
    }
    Token addKeyPressMonitor(ClickHandler handler) override
    {
        keyPressMonitors.insert(++m_next, std::move(handler));
        return m_next;
    }
    void removeMonitor(Token token) override
    {
        keyMonitors.remove(token);
        clickMonitors.remove(token);
        keyPressMonitors.remove(token);
    }
    void activateApplication() override { ++activations; }
    int monitorCount() const { return int(keyMonitors.size() + clickMonitors.size() + keyPressMonitors.size()); }
    int activations = 0;

    // Test side. Returns true when a monitor swallowed the key.
    bool sendKey(const KeyEvent& event)
    {
        // A handler may remove monitors (its own included) while the event is delivered.
        bool swallowed = false;
        const auto monitors = keyMonitors;
        for (auto it = monitors.cbegin(); it != monitors.cend(); ++it) {
            if (keyMonitors.contains(it.key()))
                swallowed = it.value()(event) || swallowed;
        }
        return swallowed;
    }
    void click()
    {
        // A handler may remove monitors (its own included) while the click is delivered.
        const auto monitors = clickMonitors;
        for (const auto& handler : monitors)
            handler();
    }

private:
    Token m_next = 0;
};

class FakeScreenService final : public ScreenService
{
public:
    QList<ScreenInfo> screenList{ScreenInfo{QRectF(0, 0, 1440, 900), QRectF(0, 0, 1440, 875), 2.0}};
    QPointF pointer{400, 300};

    QList<ScreenInfo> screens() const override { return screenList; }
    QPointF pointerLocation() const override { return pointer; }
};

class FakeScreenTextRecognizer final : public ScreenTextRecognizer
{
public:
    bool granted = true;
    int accessRequests = 0;
    int settingsOpened = 0;
    QString settingsError; // non-empty: opening the settings fails with it
    QList<QPair<QRectF, QStringList>> requests;
    QList<Completion> completions; // held until the test answers
    bool isCaptureGranted() const override { return granted; }
    bool requestCaptureAccess() override
    {
        ++accessRequests;
        return granted;
    }
    Result<void> openCaptureSettings() override { return openedSettings(settingsOpened, settingsError); }
    void recognizeStrip(QRectF strip, QStringList languages, Completion completion) override
    {
        requests.append({strip, languages});
        completions.append(std::move(completion));
    }
    void answer(int index, Result<RecognizedText> result) { completions.at(index)(std::move(result)); }
};

class FakeLanguageRecognizer final : public LanguageRecognizer
{
public:
    // Answers by exact text; anything else is English.
    QHash<QString, LanguageHypotheses> answers;
    mutable QList<QPair<QString, QStringList>> queries;

    LanguageHypotheses recognize(const QString& text, const QStringList& candidates) const override
    {
        queries.append({text, candidates});
        if (auto it = answers.constFind(text); it != answers.cend())
            return *it;
        LanguageHypotheses english;
        english.dominant = QStringLiteral("en");
        for (const QString& c : candidates)
            english.probability.insert(c, c == QLatin1String("en") ? 1.0 : 0.0);
        return english;
    }
};

class FakeLexicalTagger final : public LexicalTagger
{
public:
    QHash<QString, LexicalClass> classes; // by word
    std::optional<LexicalClass> lexicalClass(const QString& sentence, qsizetype start, qsizetype length) const override
    {
        if (auto it = classes.constFind(sentence.mid(start, length)); it != classes.cend())
            return *it;
        return std::nullopt;
    }
};

class FakeTransliterator final : public Transliterator
{
public:
    QHash<QString, QString> pinyinReadings;
    QHash<QString, QString> hiraganaReadings;
    std::optional<QString> pinyin(const QString& text) const override { return find(pinyinReadings, text); }
    std::optional<QString> hiragana(const QString& text) const override { return find(hiraganaReadings, text); }

private:
    static std::optional<QString> find(const QHash<QString, QString>& table, const QString& text)
    {
        if (auto it = table.constFind(text); it != table.cend())
            return *it;
        return std::nullopt;
    }
};

class FakeSpellChecker final : public SpellChecker
{
public:
    QStringList knownWords;
    QHash<QString, QStringList> suggestionTable;
    mutable int suggestionCalls = 0;
    bool isCorrect(const QString& word) const override { return knownWords.contains(word, Qt::CaseInsensitive); }
    QStringList suggestions(const QString& word) const override
    {
        ++suggestionCalls;
        return suggestionTable.value(word);
    }
};

class FakeSpeechSynthesizer final : public SpeechSynthesizer
{
public:
    QList<QPair<QString, QString>> spoken; // text, locale
    int stops = 0;
    QStringList voicelessLocales; // locales without a voice
    void speak(const QString& text, const QString& locale) override { spoken.append({text, locale}); }
    void stop() override { ++stops; }
    bool hasVoice(const QString& locale) const override { return !voicelessLocales.contains(locale); }
};

class FakeTranslationEngine final : public TranslationEngine
{
public:
    LanguageAvailability availabilityAnswer = LanguageAvailability::installed;
    QHash<QString, QString> translations; // by source text
    QString prepareError;                 // non-empty: prepare fails with it
    QList<QPair<QString, QString>> prepared;
    QList<QString> translated;

    LanguageAvailability availability(const QString&, const QString&) const override { return availabilityAnswer; }
    Result<void> prepare(const QString& source, const QString& target) override
    {
        prepared.append({source, target});
        if (!prepareError.isEmpty())
            return Error{prepareError};
        return {};
    }
    Result<QString> translate(const QString& text, const QString&, const QString&) override
    {
        translated.append(text);
        if (auto it = translations.constFind(text); it != translations.cend())
            return *it;
        return Error{QStringLiteral("No translation for ") + text};
    }
    // One sense of the comma-separated translation.
    Result<WordTranslation> lookUpWord(const QString& word, const QString& source, const QString& target) override
    {
        const Result<QString> gloss = translate(word, source, target);
        if (!gloss.ok())
            return gloss.error();
        return WordTranslation{word, word, {}, {{{}, gloss.value().split(QStringLiteral(", "))}}};
    }
};

class FakeNotificationCenter final : public NotificationCenter
{
public:
    NotificationCenterDelegate* delegate = nullptr;
    QList<NotificationCategory> categories;
    QList<NotificationRequest> pending;
    QList<DeliveredNotification> delivered;
    QStringList removedPending;
    QStringList removedDelivered;
    NotificationAuthorization authorization = NotificationAuthorization::authorized;
    QString addError; // non-empty: add fails with it
    int authorizationRequests = 0;

    void setDelegate(NotificationCenterDelegate* d) override { delegate = d; }
    void setCategories(const QList<NotificationCategory>& c) override { categories = c; }
    // When set, additions and the pending list are answered later, on this scheduler, as a real
    // centre does.
    Scheduler* answerLater = nullptr;
    std::function<void(int additions)> afterAdd; // called after every completed addition
    int additions = 0;

    void add(const NotificationRequest& request, Completion completion) override
    {
        later([this, request, completion] {
            if (addError.isEmpty()) {
                pending.removeIf([&](const NotificationRequest& r) { return r.identifier == request.identifier; });
                pending.append(request);
            }
            if (completion)
                completion(addError);
            ++additions;
            if (afterAdd)
                afterAdd(additions);
        });
    }
    void pendingRequests(std::function<void(QList<NotificationRequest>)> completion) override
    {
        later([this, completion] { completion(pending); });
    }
    void removePendingRequests(const QStringList& ids) override
    {
        removedPending += ids;
        pending.removeIf([&](const NotificationRequest& r) { return ids.contains(r.identifier); });
    }
    void deliveredNotifications(std::function<void(QList<DeliveredNotification>)> completion) override
    {
        completion(delivered);
    }
    void removeDeliveredNotifications(const QStringList& ids) override
    {
        removedDelivered += ids;
        delivered.removeIf([&](const DeliveredNotification& d) { return ids.contains(d.identifier); });
    }
    void authorizationStatus(std::function<void(NotificationAuthorization)> completion) override
    {
        completion(authorization);
    }
    void requestAuthorization(std::function<void(bool, const QString&)> completion) override
    {
        ++authorizationRequests;
        completion(authorization == NotificationAuthorization::authorized, QString());
    }

private:
    void later(std::function<void()> answer)
    {
        if (answerLater)
            answerLater->post(std::move(answer));
        else
            answer();
    }
};

class FakeWorkspace final : public Workspace
{
public:
    QList<QUrl> opened;
    QString frontmost = QStringLiteral("TextEdit");
    bool openUrl(const QUrl& url) override
    {
        opened.append(url);
        return true;
    }
    QString frontmostApplicationName() const override { return frontmost; }
};

class FakeUpdateChecker final : public UpdateChecker
{
public:
    bool available = true;
    int checks = 0;
    bool canCheckForUpdates() const override { return available; }
    void checkForUpdates() override { ++checks; }
};

// A full set of fakes, with typed pointers to each for the test to steer.
struct FakePlatform
{
    FakePlatform();
    PlatformServices services;
    MemoryPreferenceStore* preferences;
    FakeAccessibilityService* accessibility;
    FakeGlobalHotkeyService* hotkeys;
    FakeEventMonitor* eventMonitor;
    FakeKeyReleaseMonitor* keyReleases;
    FakeScreenService* screens;
    FakeScreenTextRecognizer* textRecognizer;
    FakeLanguageRecognizer* languageRecognizer;
    FakeLexicalTagger* lexicalTagger;
    FakeTransliterator* transliterator;
    FakeSpellChecker* spellChecker;
    FakeSpeechSynthesizer* speech;
    FakeTranslationEngine* translationEngine;
    FakeNotificationCenter* notifications;
    FakeWorkspace* workspace;
    FakeUpdateChecker* updates;
};

} // namespace tolvane
