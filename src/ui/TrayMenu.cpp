// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/TrayMenu.h"

#include "core/setup/Preferences.h"
#include "core/translation/LanguageTable.h"
#include "ui/AppIcon.h"
#include "ui/setup/SetupTexts.h"

#include <QAction>
#include <QActionGroup>
#include <QCursor>
#include <QKeySequence>
#include <QMenu>
#include <QSystemTrayIcon>

namespace tolvane {

namespace {
const QString titleText = QStringLiteral("Tolvane");
} // namespace

TrayMenu::TrayMenu(Preferences& preferences, QObject* parent)
    : QObject(parent)
    , m_preferences(preferences)
    , m_menu(std::make_unique<QMenu>())
    , m_icon(new QSystemTrayIcon(trayIcon(), this))
{
    m_icon->setToolTip(titleText);
    m_menu->setTitle(titleText);

    m_enabled = m_menu->addAction(SetupTexts::enabled());
    m_enabled->setCheckable(true);
    connect(m_enabled, &QAction::triggered, this, [this](bool on) {
        // Read at the next hotkey press; nothing else needs telling.
        m_preferences.setBool(PreferenceKey::translationHelperEnabled, on);
        refresh();
    });

    m_languages = m_menu->addMenu(SetupTexts::targetLanguage());
    m_languageGroup = new QActionGroup(this);
    m_languageGroup->setExclusive(true);
    for (const LanguageOption& language : languageOptions()) {
        QAction* choice = m_languages->addAction(language.name);
        choice->setCheckable(true);
        choice->setData(language.code);
        m_languageGroup->addAction(choice);
    }
    connect(m_languageGroup, &QActionGroup::triggered, this, [this](QAction* choice) {
        m_preferences.setString(PreferenceKey::targetLanguage, choice->data().toString());
    });

    m_menu->addSeparator();
    m_review = windowItem(SetupTexts::openReviewDeck(), QStringLiteral("review"));
    m_stats = windowItem(SetupTexts::usageStats(), QStringLiteral("stats"));
    m_guide = windowItem(SetupTexts::setupGuide(), QStringLiteral("guide"));
    m_settings = windowItem(SetupTexts::settingsItem(), QStringLiteral("settings"));

    m_updatesSeparator = m_menu->addSeparator();
    m_updates = m_menu->addAction(SetupTexts::checkForUpdates());
    connect(m_updates, &QAction::triggered, this, [this] {
        if (m_actions.checkForUpdates)
            m_actions.checkForUpdates();
    });
    m_share = m_menu->addAction(SetupTexts::shareTolvane());
    connect(m_share, &QAction::triggered, this, [this] {
        if (m_actions.share)
            m_actions.share();
    });

    m_menu->addSeparator();
    QAction* quit = m_menu->addAction(SetupTexts::quit());
    quit->setShortcut(QKeySequence::Quit);
    quit->setShortcutVisibleInContextMenu(true);
    connect(quit, &QAction::triggered, this, &TrayMenu::quitRequested);

    connect(m_menu.get(), &QMenu::aboutToShow, this, [this] {
        refresh();
        // Until the guide is finished, every visit to the menu offers it.
        if (!m_preferences.onboardingComplete() && hasWindow(QStringLiteral("guide")))
            openWindow(QStringLiteral("guide"));
    });

    m_icon->setContextMenu(m_menu.get());
    // A left click opens the menu too: the tray icon has nothing else to do.
    connect(m_icon, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger)
            m_menu->popup(QCursor::pos());
    });
    refresh();
}

TrayMenu::~TrayMenu() = default;

QAction* TrayMenu::windowItem(const QString& text, const QString& window)
{
    QAction* item = m_menu->addAction(text);
    connect(item, &QAction::triggered, this, [this, window] { openWindow(window); });
    return item;
}

bool TrayMenu::hasWindow(const QString& name) const
{
    return m_actions.hasWindow && m_actions.hasWindow(name);
}

void TrayMenu::openWindow(const QString& name)
{
    if (m_actions.openWindow)
        m_actions.openWindow(name);
}

void TrayMenu::setActions(TrayMenuActions actions)
{
    m_actions = std::move(actions);
    refresh();
}

void TrayMenu::setCheckForUpdates(std::function<void()> check)
{
    m_actions.checkForUpdates = std::move(check);
    refresh();
}

void TrayMenu::refresh()
{
    const bool enabled = m_preferences.translationHelperEnabled();
    m_enabled->setChecked(enabled);
    m_enabled->setText(enabled ? SetupTexts::enabled() : SetupTexts::disabled());

    const QString language = m_preferences.targetLanguage();
    for (QAction* choice : m_languageGroup->actions())
        choice->setChecked(choice->data().toString() == language);
    // A hand-edited code that is no language of the table: no choice is ticked.
    if (!findLanguageOption(language) && m_languageGroup->checkedAction()) {
        m_languageGroup->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
        m_languageGroup->checkedAction()->setChecked(false);
        m_languageGroup->setExclusionPolicy(QActionGroup::ExclusionPolicy::Exclusive);
    }

    m_review->setVisible(hasWindow(QStringLiteral("review")));
    m_stats->setVisible(hasWindow(QStringLiteral("stats")));
    m_guide->setVisible(hasWindow(QStringLiteral("guide")));
    m_settings->setVisible(hasWindow(QStringLiteral("settings")));
    m_updates->setVisible(bool(m_actions.checkForUpdates));
    m_share->setVisible(bool(m_actions.share));
    m_updatesSeparator->setVisible(m_updates->isVisible() || m_share->isVisible());
}

void TrayMenu::show()
{
    m_icon->show();
}

} // namespace tolvane
