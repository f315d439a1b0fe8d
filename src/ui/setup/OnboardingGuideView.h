// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/setup/OnboardingGuide.h"

#include <QList>
#include <QWidget>

class QComboBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QStackedWidget;

namespace tolvane {

class AccessibilityPermissionManager;
class HotkeyKeycaps;
class LanguageRow;
class ScreenRecordingPermissionManager;
class StepProgressDots;
class WelcomeTranslationDemo;

// The first-run guide's window, "Setup Guide": welcome, learning language, hotkey, reminders and
// a summary with the two permissions, with the step dots and the buttons under every step. A new
// view (and so a new guide) is made each time the window opens; it deletes itself when closed.
class OnboardingGuideView final : public QWidget
{
    Q_OBJECT
public:
    OnboardingGuideView(OnboardingGuide::Services services, AccessibilityPermissionManager& accessibility,
                        ScreenRecordingPermissionManager& screenRecording, QWidget* parent = nullptr);
    ~OnboardingGuideView() override;

    OnboardingGuide& guide() { return m_guide; }
    WelcomeTranslationDemo* demo() const { return m_demo; }

    // Whether a colour emoji font can draw the flags; otherwise the rows show the language codes.
    static bool canDrawFlags();

protected:
    void changeEvent(QEvent* event) override;

private:
    void paintAccents();
    QWidget* buildWelcome(Scheduler& scheduler);
    QWidget* buildLanguage();
    QWidget* buildHotkey();
    QWidget* buildReminders();
    QWidget* buildSummary();
    QWidget* buildNavigation();
    void render();
    void renderPermissions();
    QString currentHotkeyDisplay() const;

    OnboardingGuide m_guide;
    HotkeyManager& m_hotkeys;
    Preferences& m_preferences;
    AccessibilityPermissionManager& m_accessibility;
    ScreenRecordingPermissionManager& m_screenRecording;

    QStackedWidget* m_pages = nullptr;
    WelcomeTranslationDemo* m_demo = nullptr;
    QList<LanguageRow*> m_languageRows;
    QWidget* m_downloadStatus = nullptr;
    QProgressBar* m_downloadProgress = nullptr;
    // Every label is Qt::PlainText: textLabel() and pictureLabel() make them so.
    QLabel* m_downloadSymbol = nullptr;
    QLabel* m_downloadText = nullptr;
    QLabel* m_downloadError = nullptr;
    HotkeyKeycaps* m_keycaps = nullptr;
    QPushButton* m_changeHotkey = nullptr;
    QPushButton* m_cancelCapture = nullptr;
    QLabel* m_validation = nullptr;
    QComboBox* m_frequency = nullptr;
    struct KeycapSentence
    {
        QWidget* line;
        HotkeyKeycaps* keycaps;
        QString before;
        QString after;
    };
    QList<KeycapSentence> m_keycapSentences;
    QLabel* m_accessibilityStatus = nullptr;
    QLabel* m_accessibilitySymbol = nullptr;
    QLabel* m_screenRecordingStatus = nullptr;
    QLabel* m_screenRecordingSymbol = nullptr;
    QLabel* m_permissionMessage = nullptr;
    QLabel* m_withoutAccessibility = nullptr;
    StepProgressDots* m_dots = nullptr;
    QPushButton* m_back = nullptr;
    QPushButton* m_start = nullptr;
    QPushButton* m_primary = nullptr;
};

} // namespace tolvane
