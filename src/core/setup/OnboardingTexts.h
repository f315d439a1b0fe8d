// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// Every text the first-run guide shows, in one place. Texts that name the platform go through
// onThisPlatform() where they are used.
namespace tolvane::OnboardingTexts {

inline const QString windowTitle = QStringLiteral("Setup Guide");

inline const QString back = QStringLiteral("Back");
inline const QString getStarted = QStringLiteral("Get Started");
inline const QString continueButton = QStringLiteral("Continue");
inline QString stepOf(int current, int total)
{
    return QStringLiteral("Step %1 of %2").arg(current + 1).arg(total);
}

inline const QString welcomeTitle = QStringLiteral("Welcome to Tolvane");
inline const QString welcomeSubtitle = QStringLiteral("Learn a language by going about your day.");
inline const QString welcomeParagraph =
    QStringLiteral("Let your curiosity work for you. When you encounter a word you don't know, Tolvane gives you the "
                   "meaning without pulling you away from what you're doing.");
inline const QString featureHover = QStringLiteral("Hover over a word or select a passage, then press your hotkey.");
inline const QString featureInstant = QStringLiteral("See an instant translation without switching apps.");
inline const QString featureDeck = QStringLiteral("Build a personal word deck and get reminders to review it.");

inline const QString demoSentenceBefore = QStringLiteral("The view from here is ");
inline const QString demoWord = QStringLiteral("wonderful");
inline const QString demoSentenceAfter = QStringLiteral(".");
inline const QString demoTranslation = QStringLiteral("La vista desde aquí es maravillosa.");

inline const QString languageTitle = QStringLiteral("Choose your learning language");
inline const QString languageText =
    QStringLiteral("Tolvane will translate English into this language when you look up words.");
inline const QString downloading = QStringLiteral("Downloading language model…");
inline const QString modelReady = QStringLiteral("Language model ready");
inline const QString downloadFailed = QStringLiteral("Download failed");

inline const QString hotkeyTitle = QStringLiteral("Your lookup hotkey");
inline const QString hotkeyText =
    QStringLiteral("Press this hotkey when hovering over a word, or with text selected, to trigger a translation.");
inline const QString changeHotkey = QStringLiteral("Change Hotkey…");
inline const QString pressCombo = QStringLiteral("Press a modifier combo…");
inline const QString cancel = QStringLiteral("Cancel");
// defaultKeys: the default combination in this desktop's key names ("Ctrl+Alt+Space").
inline QString hotkeyHint(const QString& defaultKeys)
{
    return QStringLiteral("The default (") + defaultKeys +
           QStringLiteral(") works great. Add a modifier so normal typing still works.");
}

inline const QString remindersTitle = QStringLiteral("Flashcard reminders");
inline const QString remindersText =
    QStringLiteral("Tolvane saves every looked-up word as a flashcard and sends periodic reminders to review them.");
inline const QString reminderFrequency = QStringLiteral("Reminder frequency");
inline const QString remindersNote = QStringLiteral("You can change this any time in Settings.");

inline const QString summaryTitle = QStringLiteral("You're set up");
inline const QString hoverBefore = QStringLiteral("Hover over any word and press");
inline const QString hoverAfter = QStringLiteral(" to see its translation.");
inline const QString selectBefore = QStringLiteral("Select a sentence and press");
inline const QString selectAfter = QStringLiteral(" to translate the whole passage.");
inline const QString savedAsFlashcards =
    QStringLiteral("Looked-up words are saved as flashcards. You'll get reminders to review them.");
inline const QString trayIcon = QStringLiteral("Click the Tolvane icon in the menu bar to review your flashcard list.");
inline const QString tip = QStringLiteral(
    "Word lookups on small text occasionally misread a character. If a result looks wrong, move your cursor slightly "
    "and press the hotkey again. Wrong entries can be deleted from the Review Deck.");
inline const QString accessibility = QStringLiteral("Accessibility");
inline const QString accessibilityPurpose = QStringLiteral("Required for word hover and selected-text lookup.");
inline const QString screenRecording = QStringLiteral("Screen Recording");
inline const QString screenRecordingPurpose =
    QStringLiteral("Optional OCR fallback for text Accessibility cannot read.");
inline const QString granted = QStringLiteral(" granted");
inline const QString notGranted = QStringLiteral(" not granted");
inline const QString request = QStringLiteral("Request");
inline const QString openSettings = QStringLiteral("Open Settings");
inline const QString withoutAccessibility = QStringLiteral(
    "You can continue without Accessibility, but word hover lookup will not work until it is granted. You can change "
    "either permission later in Tolvane Settings.");
inline const QString startUsing = QStringLiteral("Start using Tolvane");

} // namespace tolvane::OnboardingTexts
