// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/setup/SettingsWindow.h"

#include "core/hotkeys/HotkeyCaptureCoordinator.h"
#include "core/hotkeys/HotkeyCaptureTexts.h"
#include "core/hotkeys/HotkeyManager.h"
#include "core/hotkeys/KeyNames.h"
#include "core/setup/PermissionManager.h"
#include "core/setup/Preferences.h"
#include "core/setup/SettingsChoices.h"
#include "core/support/Logging.h"
#include "core/support/PlatformWording.h"
#include "core/support/Scheduler.h"
#include "ui/HotkeyKeycaps.h"
#include "ui/components/PlainLabel.h"
#include "ui/components/SectionCard.h"
#include "ui/components/StatusBadge.h"
#include "ui/setup/PermissionRow.h"
#include "ui/setup/SetupSymbols.h"
#include "ui/setup/SetupTexts.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>

#include <cmath>
#include <variant>

TOLVANE_DEFINE_LOG(lcSettingsWindow, "SettingsWindow")

namespace tolvane {

namespace {

QLabel* warningLabel(QWidget* parent)
{
    auto* label = plainLabel(QString(), parent);
    QPalette p = label->palette();
    p.setColor(QPalette::WindowText, StatusBadge::offColor().darker(115));
    label->setPalette(p);
    label->setHidden(true);
    return label;
}

void showMessage(QLabel* label, const QString& text)
{
    label->setText(text);
    label->setAccessibleName(text);
    label->setHidden(text.isEmpty());
}

SectionCard* section(const QString& title, SetupSymbol symbol, QColor tint, QWidget* parent)
{
    auto* card = new SectionCard(title, setupSymbolIcon(symbol), tint, parent);
    card->setAccessibleName(title);
    return card;
}

QVBoxLayout* contentOf(SectionCard* section)
{
    return section->contentLayout();
}

// A value a hand edit left that the stepper cannot show as it is: one log line, the file untouched.
void noteUnshowableDuration(const Preferences& preferences, const QString& key, int shown)
{
    const auto stored = preferences.objectForKey(key);
    if (!stored)
        return;
    const bool number = std::holds_alternative<double>(*stored) || std::holds_alternative<qint64>(*stored);
    const double value = preferences.doubleForKey(key);
    if (number && std::isfinite(value) && value >= OverlayDurationStepper::minimumSeconds &&
        value <= OverlayDurationStepper::maximumSeconds)
        return;
    qCInfo(lcSettingsWindow).noquote() << QStringLiteral("%1 holds a value outside 1…10 seconds or not a number; "
                                                         "showing %2 and leaving the file as it is")
                                              .arg(key)
                                              .arg(shown);
}

} // namespace

SettingsWindow::SettingsWindow(SettingsWindowServices services, QWidget* parent)
    : QWidget(parent, Qt::Window)
    , m_services(std::move(services))
    , m_capture(std::make_unique<HotkeyCaptureCoordinator>(m_services.eventMonitor, m_services.hotkeys,
                                                           m_services.hotkeyService))
{
    setWindowTitle(SetupTexts::settingsTitle());
    setObjectName(QStringLiteral("settings"));
    resize(defaultSize);

    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(14, 14, 14, 14);
    column->setSpacing(14);
    column->addWidget(buildHotkeySection());
    column->addWidget(buildAppearanceSection());
    column->addWidget(buildPassageSection());
    column->addWidget(buildAccessibilitySection());
    column->addWidget(buildOcrSection());
    column->addWidget(buildDurationSection());
    column->addWidget(buildNotificationSection());
    if (m_services.offersUpdateChecks)
        column->addWidget(buildUpdatesSection());
    column->addWidget(buildStartAtLoginSection());
    column->addStretch(1);

    // The content follows the window's width, so wrapped captions get the height they need.
    auto* scroll = new QScrollArea(this);
    scroll->setWidget(content);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setFrameShape(QFrame::NoFrame);
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(scroll);
    setMinimumWidth(contentWidth - 80);

    // Every bound control hears of every change of its key, whoever made it.
    connect(&m_services.preferences, &Preferences::changed, this, &SettingsWindow::refresh);
    refreshAll();
}

SettingsWindow::~SettingsWindow() = default;

void SettingsWindow::styleSegments()
{
    // One control of three segments, the chosen one in the accent colour. A style sheet reads the
    // palette when it is set, so it is set again whenever the appearance changes.
    m_segments->setStyleSheet(QStringLiteral(
        "QPushButton { border: 1px solid palette(mid); background: palette(button); color: palette(button-text);"
        " padding: 4px 10px; }"
        "QPushButton:checked { background: palette(highlight); color: palette(highlighted-text);"
        " border-color: palette(highlight); }"));
}

void SettingsWindow::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange && m_segments)
        styleSegments();
    QWidget::changeEvent(event);
}

void SettingsWindow::hideEvent(QHideEvent* event)
{
    // A capture must not keep listening to keys once its window is gone.
    if (m_capture->isCapturing())
        m_capture->stopCapture();
    QWidget::hideEvent(event);
}

QWidget* SettingsWindow::buildHotkeySection()
{
    SectionCard* box = section(SetupTexts::hotkeySection(), SetupSymbol::keyboard, QColor(0x0A, 0x84, 0xFF), this);
    auto* row = new QHBoxLayout;
    row->addWidget(plainLabel(SetupTexts::lookupHotkey(), box));
    row->addStretch(1);
    m_keycaps = new HotkeyKeycaps(box);
    row->addWidget(m_keycaps);
    m_captureButton = new QPushButton(box);
    row->addWidget(m_captureButton);
    contentOf(box)->addLayout(row);
    m_captureHint = captionLabel(QString(), box);
    contentOf(box)->addWidget(m_captureHint);
    m_validationMessage = warningLabel(box);
    contentOf(box)->addWidget(m_validationMessage);
    m_registrationError = warningLabel(box);
    contentOf(box)->addWidget(m_registrationError);

    connect(m_captureButton, &QPushButton::clicked, this, [this] {
        if (m_capture->isCapturing())
            m_capture->stopCapture();
        else
            m_capture->startCapture();
    });
    connect(m_capture.get(), &HotkeyCaptureCoordinator::isCapturingChanged, this, &SettingsWindow::refreshHotkey);
    connect(m_capture.get(), &HotkeyCaptureCoordinator::validationMessageChanged, this, &SettingsWindow::refreshHotkey);
    connect(m_capture.get(), &HotkeyCaptureCoordinator::pendingConflictChanged, this,
            &SettingsWindow::showPendingConflict);
    connect(&m_services.hotkeys, &HotkeyManager::currentKeyCodeChanged, this, &SettingsWindow::refreshHotkey);
    connect(&m_services.hotkeys, &HotkeyManager::currentModifiersChanged, this, &SettingsWindow::refreshHotkey);
    connect(&m_services.hotkeys, &HotkeyManager::registrationErrorChanged, this, &SettingsWindow::refreshHotkey);
    return box;
}

void SettingsWindow::refreshHotkey()
{
    const HotkeyManager& hotkeys = m_services.hotkeys;
    const QString display = hotkeyDisplayString(hotkeys.currentKeyCode(), hotkeys.currentModifiers());
    m_keycaps->setDisplayString(display);
    m_keycaps->setAccessibleName(keysOnThisPlatform(display));
    const bool capturing = m_capture->isCapturing();
    m_captureButton->setText(capturing ? HotkeyCaptureTexts::capturingButton() : HotkeyCaptureTexts::changeButton());
    m_captureButton->setDefault(capturing);
    m_captureHint->setText(
        keysOnThisPlatform(capturing ? HotkeyCaptureTexts::capturingHint() : HotkeyCaptureTexts::idleHint()));
    showMessage(m_validationMessage, keysOnThisPlatform(m_capture->validationMessageText()));
    showMessage(m_registrationError, hotkeys.registrationErrorText());
}

void SettingsWindow::showPendingConflict()
{
    const auto& pending = m_capture->pendingConflict();
    if (!pending) {
        if (m_conflictDialog)
            m_conflictDialog->close();
        return;
    }
    if (m_conflictDialog)
        return;
    auto* dialog = new QMessageBox(QMessageBox::Warning, HotkeyCaptureTexts::conflictTitle(),
                                   keysOnThisPlatform(pending->conflict.reasons.join(QStringLiteral("\n\n"))),
                                   QMessageBox::NoButton, this);
    dialog->setTextFormat(Qt::PlainText);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QPushButton* useAnyway = dialog->addButton(HotkeyCaptureTexts::useAnyway(), QMessageBox::AcceptRole);
    dialog->addButton(HotkeyCaptureTexts::chooseDifferent(), QMessageBox::RejectRole);
    m_conflictDialog = dialog;
    connect(dialog, &QMessageBox::finished, this, [this, dialog, useAnyway] {
        if (!m_capture->pendingConflict())
            return;
        if (dialog->clickedButton() == useAnyway)
            m_capture->confirmPendingConflict();
        else
            m_capture->dismissPendingConflict();
    });
    dialog->open();
}

QWidget* SettingsWindow::buildAppearanceSection()
{
    SectionCard* box =
        section(SetupTexts::appearanceSection(), SetupSymbol::appearance, QColor(0x5E, 0x5C, 0xE6), this);
    auto* segments = new QWidget(box);
    segments->setAccessibleName(SetupTexts::appearanceSection());
    auto* row = new QHBoxLayout(segments);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    m_segments = segments;
    styleSegments();
    m_appearance = new QButtonGroup(this);
    m_appearance->setExclusive(true);
    const QList<AppearanceChoice>& choices = appearanceChoices();
    for (qsizetype i = 0; i < choices.size(); ++i) {
        auto* button = new QPushButton(choices.at(i).title, segments);
        button->setCheckable(true);
        button->setAccessibleName(choices.at(i).title);
        button->setAccessibleDescription(SetupTexts::appearanceSection());
        m_appearance->addButton(button, int(i));
        row->addWidget(button);
    }
    contentOf(box)->addWidget(segments);
    contentOf(box)->addWidget(captionLabel(SetupTexts::appearanceCaption(), box));

    connect(m_appearance, &QButtonGroup::idClicked, this, [this](int id) {
        // The application applies the appearance whenever the key changes (here or by hand).
        m_services.preferences.setString(PreferenceKey::appearanceMode, rawValue(appearanceChoices().at(id).mode));
    });
    m_refreshers.insert(PreferenceKey::appearanceMode, [this] {
        const AppearanceMode mode = m_services.preferences.appearanceMode();
        const QList<AppearanceChoice>& all = appearanceChoices();
        for (qsizetype i = 0; i < all.size(); ++i) {
            if (all.at(i).mode == mode)
                m_appearance->button(int(i))->setChecked(true);
        }
    });
    return box;
}

QWidget* SettingsWindow::buildPassageSection()
{
    SectionCard* box = section(SetupTexts::passageSection(), SetupSymbol::quote, QColor(0x30, 0xB0, 0xC7), this);
    m_passageAutoSave = new QCheckBox(SetupTexts::passageAutoSave(), box);
    contentOf(box)->addWidget(m_passageAutoSave);
    contentOf(box)->addWidget(captionLabel(SetupTexts::passageAutoSaveCaption(), box));
    connect(m_passageAutoSave, &QCheckBox::toggled, this,
            [this](bool on) { m_services.preferences.setBool(PreferenceKey::passageAutoSaveEnabled, on); });
    m_refreshers.insert(PreferenceKey::passageAutoSaveEnabled, [this] {
        const QSignalBlocker quiet(m_passageAutoSave);
        m_passageAutoSave->setChecked(m_services.preferences.passageAutoSaveEnabled());
    });
    return box;
}

QWidget* SettingsWindow::buildAccessibilitySection()
{
    SectionCard* box =
        section(SetupTexts::accessibilitySection(), SetupSymbol::accessibility, QColor(0x0A, 0x84, 0xFF), this);
    m_wordHover = new QCheckBox(SetupTexts::wordHoverLookup(), box);
    contentOf(box)->addWidget(m_wordHover);
    contentOf(box)->addWidget(captionLabel(SetupTexts::wordHoverCaption(), box));
    contentOf(box)->addWidget(new PermissionRow(SetupTexts::accessibilityName(), m_services.accessibility, box));
    connect(m_wordHover, &QCheckBox::toggled, this,
            [this](bool on) { m_services.preferences.setBool(PreferenceKey::axWordLookupEnabled, on); });
    m_refreshers.insert(PreferenceKey::axWordLookupEnabled, [this] {
        const QSignalBlocker quiet(m_wordHover);
        m_wordHover->setChecked(m_services.preferences.axWordLookupEnabled());
    });
    return box;
}

QWidget* SettingsWindow::buildOcrSection()
{
    SectionCard* box = section(SetupTexts::ocrSection(), SetupSymbol::viewfinder, QColor(0xAF, 0x52, 0xDE), this);
    m_ocrFallback = new QCheckBox(SetupTexts::ocrFallback(), box);
    contentOf(box)->addWidget(m_ocrFallback);
    contentOf(box)->addWidget(captionLabel(SetupTexts::ocrCaption(), box));
    m_ocrLockedNote = plainLabel(SetupTexts::ocrLockedNote(), box);
    contentOf(box)->addWidget(m_ocrLockedNote);
    contentOf(box)->addWidget(new PermissionRow(SetupTexts::screenRecordingName(), m_services.screenRecording, box));
    connect(m_ocrFallback, &QCheckBox::toggled, this,
            [this](bool on) { m_services.preferences.setBool(PreferenceKey::ocrFallbackEnabled, on); });
    connect(&m_services.screenRecording, &PermissionManager::isGrantedChanged, this, &SettingsWindow::refreshOcrLock);
    m_refreshers.insert(PreferenceKey::ocrFallbackEnabled, [this] {
        const QSignalBlocker quiet(m_ocrFallback);
        m_ocrFallback->setChecked(m_services.preferences.ocrFallbackEnabled());
    });
    return box;
}

void SettingsWindow::refreshOcrLock()
{
    const bool granted = m_services.screenRecording.isGranted();
    m_ocrFallback->setEnabled(granted);
    m_ocrLockedNote->setHidden(granted);
}

QSpinBox* SettingsWindow::durationStepper(const QString& name, const QString& key)
{
    auto* stepper = new QSpinBox(this);
    stepper->setRange(OverlayDurationStepper::minimumSeconds, OverlayDurationStepper::maximumSeconds);
    stepper->setSingleStep(1);
    stepper->setSuffix(OverlayDurationStepper::suffix);
    stepper->setAccessibleName(name);
    stepper->setMinimumWidth(96);
    // Typing "1" on the way to "10" must not store 1.
    stepper->setKeyboardTracking(false);
    connect(stepper, &QSpinBox::valueChanged, this,
            [this, key](int seconds) { m_services.preferences.setDouble(key, double(seconds)); });
    return stepper;
}

QWidget* SettingsWindow::buildDurationSection()
{
    SectionCard* box = section(SetupTexts::durationSection(), SetupSymbol::timer, QColor(0xFF, 0x95, 0x00), this);
    contentOf(box)->addWidget(captionLabel(SetupTexts::durationCaption(), box));
    m_wordDuration = durationStepper(SetupTexts::wordDuration(), PreferenceKey::wordOverlayDurationSeconds);
    m_passageDuration = durationStepper(SetupTexts::passageDuration(), PreferenceKey::passageOverlayDurationSeconds);
    auto* form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    form->addRow(plainLabel(SetupTexts::wordDuration(), box), m_wordDuration);
    form->addRow(plainLabel(SetupTexts::passageDuration(), box), m_passageDuration);
    contentOf(box)->addLayout(form);
    m_refreshers.insert(PreferenceKey::wordOverlayDurationSeconds, [this] {
        const QSignalBlocker quiet(m_wordDuration);
        m_wordDuration->setValue(
            OverlayDurationStepper::displayedSeconds(m_services.preferences.wordOverlayDurationSeconds()));
        noteUnshowableDuration(m_services.preferences, PreferenceKey::wordOverlayDurationSeconds,
                               m_wordDuration->value());
    });
    m_refreshers.insert(PreferenceKey::passageOverlayDurationSeconds, [this] {
        const QSignalBlocker quiet(m_passageDuration);
        m_passageDuration->setValue(
            OverlayDurationStepper::displayedSeconds(m_services.preferences.passageOverlayDurationSeconds()));
        noteUnshowableDuration(m_services.preferences, PreferenceKey::passageOverlayDurationSeconds,
                               m_passageDuration->value());
    });
    return box;
}

QWidget* SettingsWindow::buildNotificationSection()
{
    SectionCard* box = section(SetupTexts::notificationsSection(), SetupSymbol::bell, QColor(0xFF, 0x3B, 0x30), this);
    m_reminderFrequency = new QComboBox(box);
    m_reminderFrequency->setAccessibleName(SetupTexts::reminderFrequency());
    for (const ReminderFrequencyChoice& choice : reminderFrequencyChoices())
        m_reminderFrequency->addItem(choice.title, choice.hours);
    auto* form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    form->addRow(plainLabel(SetupTexts::reminderFrequency(), box), m_reminderFrequency);
    contentOf(box)->addLayout(form);

    auto* permission = new QHBoxLayout;
    m_notificationBadge =
        new StatusBadge(SetupTexts::notificationsPermitted(), SetupTexts::notificationsNotPermitted(), box);
    permission->addWidget(m_notificationBadge);
    permission->addStretch(1);
    m_openNotificationSettings = new QPushButton(SetupTexts::openNotificationSettings(), box);
    permission->addWidget(m_openNotificationSettings);
    contentOf(box)->addLayout(permission);
    m_notificationMessage = plainLabel(QString(), box);
    m_notificationMessage->setHidden(true);
    contentOf(box)->addWidget(m_notificationMessage);

    connect(m_reminderFrequency, &QComboBox::activated, this, [this](int index) {
        const QList<ReminderFrequencyChoice>& choices = reminderFrequencyChoices();
        if (index < 0 || index >= choices.size())
            return; // the hand-edited interval, shown as it is
        m_services.preferences.setDouble(PreferenceKey::notificationIntervalHours, choices.at(index).hours);
        // Plan again once this change has settled, so the new spacing applies at once.
        QPointer<SettingsWindow> self(this);
        m_services.scheduler.post([self] {
            if (self && self->m_services.rescheduleReminders)
                self->m_services.rescheduleReminders();
        });
    });
    connect(m_openNotificationSettings, &QPushButton::clicked, this, [this] {
        const QString message = m_services.openNotificationSettings ? m_services.openNotificationSettings() : QString();
        showMessage(m_notificationMessage, message);
        if (!message.isEmpty())
            qCInfo(lcSettingsWindow).noquote() << message;
    });
    m_refreshers.insert(PreferenceKey::notificationIntervalHours, [this] { refreshReminderFrequency(); });
    m_refreshers.insert(PreferenceKey::notificationPermissionGranted, [this] {
        const bool permitted = m_services.preferences.notificationPermissionGranted();
        m_notificationBadge->setOn(permitted);
        m_openNotificationSettings->setHidden(permitted);
        if (permitted)
            m_notificationMessage->setHidden(true);
    });
    return box;
}

void SettingsWindow::refreshReminderFrequency()
{
    const QSignalBlocker quiet(m_reminderFrequency);
    const qsizetype choiceCount = reminderFrequencyChoices().size();
    while (m_reminderFrequency->count() > choiceCount)
        m_reminderFrequency->removeItem(m_reminderFrequency->count() - 1);
    const double hours = m_services.preferences.notificationIntervalHours();
    int index = reminderFrequencyIndex(hours);
    if (index < 0) {
        // What is in effect, though no choice offers it; choosing a choice replaces it.
        m_reminderFrequency->addItem(otherReminderFrequencyTitle(hours), hours);
        index = m_reminderFrequency->count() - 1;
    }
    m_reminderFrequency->setCurrentIndex(index);
}

void SettingsWindow::refresh(const QString& key)
{
    const auto refresher = m_refreshers.constFind(key);
    if (refresher != m_refreshers.cend())
        (*refresher)();
}

void SettingsWindow::refreshAll()
{
    for (const auto& refresher : std::as_const(m_refreshers))
        refresher();
    refreshHotkey();
    refreshOcrLock();
}

QWidget* SettingsWindow::buildUpdatesSection()
{
    SectionCard* box = section(SetupTexts::updatesSection(), SetupSymbol::arrowDown, QColor(0x5A, 0xC8, 0xFA), this);
    m_automaticUpdateChecks = new QCheckBox(SetupTexts::automaticUpdateChecks(), box);
    contentOf(box)->addWidget(m_automaticUpdateChecks);
    contentOf(box)->addWidget(captionLabel(SetupTexts::automaticUpdateChecksCaption(), box));
    connect(m_automaticUpdateChecks, &QCheckBox::toggled, this,
            [this](bool on) { m_services.preferences.setBool(PreferenceKey::automaticallyCheckForUpdates, on); });
    m_refreshers.insert(PreferenceKey::automaticallyCheckForUpdates, [this] {
        const QSignalBlocker quiet(m_automaticUpdateChecks);
        m_automaticUpdateChecks->setChecked(
            m_services.preferences.boolForKey(PreferenceKey::automaticallyCheckForUpdates));
    });
    return box;
}

QWidget* SettingsWindow::buildStartAtLoginSection()
{
    SectionCard* box = section(SetupTexts::startAtLoginSection(), SetupSymbol::power, QColor(0x34, 0xC7, 0x59), this);
    if (!m_services.autostart)
        m_services.autostart = Autostart::forThisUser();
    m_startAtLogin = new QCheckBox(SetupTexts::startAtLogin(), box);
    m_startAtLogin->setChecked(m_services.autostart->isEnabled());
    m_startAtLoginMessage = captionLabel(QString(), box);
    m_startAtLoginMessage->setAccessibleName(QStringLiteral("Start at login message"));
    m_startAtLoginMessage->hide();
    contentOf(box)->addWidget(m_startAtLogin);
    contentOf(box)->addWidget(captionLabel(SetupTexts::startAtLoginCaption(), box));
    contentOf(box)->addWidget(m_startAtLoginMessage);
    connect(m_startAtLogin, &QCheckBox::toggled, this, [this](bool on) {
        const Result<void> done = m_services.autostart->setEnabled(on);
        m_startAtLoginMessage->setVisible(!done.ok());
        if (done.ok())
            return;
        // The switch shows what is on disk, and the message says why it did not change.
        m_startAtLoginMessage->setText(done.error().message);
        const QSignalBlocker quiet(m_startAtLogin);
        m_startAtLogin->setChecked(m_services.autostart->isEnabled());
    });
    return box;
}

} // namespace tolvane
