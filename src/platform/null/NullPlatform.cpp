// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/null/NullPlatform.h"

#include "platform/null/MemoryPreferenceStore.h"

namespace tolvane {

namespace {
const QString noDesktop = QStringLiteral("No desktop is available in this session.");
}

Result<void> NullAccessibilityService::openSystemSettings()
{
    return Error{noDesktop};
}

Result<void> NullScreenTextRecognizer::openCaptureSettings()
{
    return Error{noDesktop};
}

Result<void> NullGlobalHotkeyService::registerHotkey(quint32, quint32, HotkeyIdentifier)
{
    return Error{noDesktop};
}

Result<void> NullGlobalHotkeyService::startModifierMonitor(ModifierHandler)
{
    return Error{noDesktop};
}

QList<ScreenInfo> NullScreenService::screens() const
{
    const QRectF frame(0, 0, 1440, 900);
    return {ScreenInfo{frame, frame, 1.0}};
}

void NullScreenTextRecognizer::recognizeStrip(QRectF, QStringList, Completion completion)
{
    completion(Error{QStringLiteral("Screen capture is not available in this session.")});
}

LanguageHypotheses NullLanguageRecognizer::recognize(const QString&, const QStringList& candidates) const
{
    LanguageHypotheses result;
    for (const QString& code : candidates)
        result.probability.insert(code, code == QLatin1String("en") ? 1.0 : 0.0);
    if (candidates.contains(QLatin1String("en")))
        result.dominant = QStringLiteral("en");
    return result;
}

Result<void> NullTranslationEngine::prepare(const QString& sourceCode, const QString& targetCode)
{
    return Error{
        QStringLiteral("No translation is available for %1 → %2 in this session.").arg(sourceCode, targetCode)};
}

Result<QString> NullTranslationEngine::translate(const QString&, const QString& sourceCode, const QString& targetCode)
{
    return prepare(sourceCode, targetCode).error();
}

Result<WordTranslation> NullTranslationEngine::lookUpWord(const QString&, const QString& sourceCode,
                                                          const QString& targetCode)
{
    return prepare(sourceCode, targetCode).error();
}

void NullNotificationCenter::add(const NotificationRequest&, Completion completion)
{
    if (completion)
        completion(QStringLiteral("Notifications are not available in this session."));
}

void NullNotificationCenter::requestAuthorization(std::function<void(bool, const QString&)> completion)
{
    completion(false, QStringLiteral("Notifications are not available in this session."));
}

PlatformServices createNullPlatform()
{
    PlatformServices services;
    services.name = QStringLiteral("null");
    services.preferences = std::make_unique<MemoryPreferenceStore>();
    services.accessibility = std::make_unique<NullAccessibilityService>();
    services.hotkeys = std::make_unique<NullGlobalHotkeyService>();
    services.eventMonitor = std::make_unique<NullEventMonitor>();
    services.screens = std::make_unique<NullScreenService>();
    services.textRecognizer = std::make_unique<NullScreenTextRecognizer>();
    services.languageRecognizer = std::make_unique<NullLanguageRecognizer>();
    services.lexicalTagger = std::make_unique<NullLexicalTagger>();
    services.transliterator = std::make_unique<NullTransliterator>();
    services.spellChecker = std::make_unique<NullSpellChecker>();
    services.keyReleases = std::make_unique<NullKeyReleaseMonitor>();
    services.speech = std::make_unique<NullSpeechSynthesizer>();
    services.translationEngine = std::make_unique<NullTranslationEngine>();
    services.notifications = std::make_unique<NullNotificationCenter>();
    services.workspace = std::make_unique<NullWorkspace>();
    services.updates = std::make_unique<NullUpdateChecker>();
    return services;
}

} // namespace tolvane
