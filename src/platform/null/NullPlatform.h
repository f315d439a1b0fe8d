// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/PlatformServices.h"

namespace tolvane {

// Services that do nothing and refuse politely: for headless runs, where there is no desktop to
// read from or draw on. Preferences live in memory.
PlatformServices createNullPlatform();

class NullAccessibilityService final : public AccessibilityService
{
public:
    AccessibleElementPtr elementAtPoint(QPointF) override { return nullptr; }
    AccessibleElementPtr focusedElement() override { return nullptr; }
    bool isTrusted() const override { return false; }
    bool requestTrust() override { return false; }
    Result<void> openSystemSettings() override;
};

class NullGlobalHotkeyService final : public GlobalHotkeyService
{
public:
    Result<void> registerHotkey(quint32, quint32, HotkeyIdentifier) override;
    void unregisterHotkey(HotkeyIdentifier) override {}
    void setEventHandler(EventHandler) override {}
    Result<void> startModifierMonitor(ModifierHandler) override;
    void stopModifierMonitor() override {}
};

class NullEventMonitor final : public EventMonitor
{
public:
    Token addLocalKeyMonitor(KeyHandler) override { return ++m_next; }
    Token addClickMonitor(ClickHandler) override { return ++m_next; }
    Token addKeyPressMonitor(ClickHandler) override { return ++m_next; }
    void removeMonitor(Token) override {}
    void activateApplication() override {}

private:
    Token m_next = 0;
};

class NullScreenService final : public ScreenService
{
public:
    QList<ScreenInfo> screens() const override;
    QPointF pointerLocation() const override { return {}; }
};

class NullScreenTextRecognizer final : public ScreenTextRecognizer
{
public:
    bool isCaptureGranted() const override { return false; }
    bool requestCaptureAccess() override { return false; }
    Result<void> openCaptureSettings() override;
    void recognizeStrip(QRectF, QStringList, Completion completion) override;
};

// Says English to everything; the recogniser proper is language data, not platform.
class NullLanguageRecognizer final : public LanguageRecognizer
{
public:
    LanguageHypotheses recognize(const QString& text, const QStringList& candidates) const override;
};

class NullLexicalTagger final : public LexicalTagger
{
public:
    std::optional<LexicalClass> lexicalClass(const QString&, qsizetype, qsizetype) const override
    {
        return std::nullopt;
    }
};

class NullTransliterator final : public Transliterator
{
public:
    std::optional<QString> pinyin(const QString&) const override { return std::nullopt; }
    std::optional<QString> hiragana(const QString&) const override { return std::nullopt; }
};

class NullSpellChecker final : public SpellChecker
{
public:
    bool isCorrect(const QString&) const override { return true; }
    QStringList suggestions(const QString&) const override { return {}; }
};

class NullKeyReleaseMonitor final : public KeyReleaseMonitor
{
public:
    Token addMonitor(Handler) override { return 0; }
    void removeMonitor(Token) override {}
};

class NullSpeechSynthesizer final : public SpeechSynthesizer
{
public:
    void speak(const QString&, const QString&) override {}
    void stop() override {}
    bool hasVoice(const QString&) const override { return false; }
};

class NullTranslationEngine final : public TranslationEngine
{
public:
    LanguageAvailability availability(const QString&, const QString&) const override
    {
        return LanguageAvailability::unsupported;
    }
    Result<void> prepare(const QString& sourceCode, const QString& targetCode) override;
    Result<QString> translate(const QString&, const QString& sourceCode, const QString& targetCode) override;
    Result<WordTranslation> lookUpWord(const QString&, const QString& sourceCode, const QString& targetCode) override;
};

class NullNotificationCenter final : public NotificationCenter
{
public:
    void setDelegate(NotificationCenterDelegate*) override {}
    void setCategories(const QList<NotificationCategory>&) override {}
    void add(const NotificationRequest&, Completion completion) override;
    void pendingRequests(std::function<void(QList<NotificationRequest>)> completion) override { completion({}); }
    void removePendingRequests(const QStringList&) override {}
    void deliveredNotifications(std::function<void(QList<DeliveredNotification>)> completion) override
    {
        completion({});
    }
    void removeDeliveredNotifications(const QStringList&) override {}
    void authorizationStatus(std::function<void(NotificationAuthorization)> completion) override
    {
        completion(NotificationAuthorization::denied);
    }
    void requestAuthorization(std::function<void(bool, const QString&)> completion) override;
};

class NullWorkspace final : public Workspace
{
public:
    bool openUrl(const QUrl&) override { return false; }
    QString frontmostApplicationName() const override { return {}; }
};

class NullUpdateChecker final : public UpdateChecker
{
public:
    bool canCheckForUpdates() const override { return false; }
    void checkForUpdates() override {}
};

} // namespace tolvane
