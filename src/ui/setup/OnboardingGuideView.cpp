// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/setup/OnboardingGuideView.h"

#include "core/hotkeys/HotkeyManager.h"
#include "core/hotkeys/KeyNames.h"
#include "core/setup/OnboardingTexts.h"
#include "core/setup/PermissionManager.h"
#include "core/setup/Preferences.h"
#include "core/setup/SettingsChoices.h"
#include "core/support/PlatformWording.h"
#include "core/translation/LanguageTable.h"
#include "ui/HotkeyKeycaps.h"
#include "ui/components/PlainLabel.h"
#include "ui/components/StepProgressDots.h"
#include "ui/components/TextStyle.h"
#include "ui/setup/WelcomeTranslationDemo.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QEvent>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <cmath>
#include <optional>

namespace tolvane {

namespace Texts = OnboardingTexts;

namespace {

constexpr int windowWidth = 600;
constexpr int pageHeight = 560;
const QString emojiFamily = QStringLiteral("Noto Color Emoji");

// The guide's small drawings, named after what they show.
enum class Symbol {
    bubbleFilled,
    bubble,
    pointerRays,
    stackPlus,
    stackFilled,
    checkCircleFilled,
    exclamationCircleFilled,
    exclamationCircle,
    check,
    quote,
    trayWindow,
    lightbulb,
};

QPixmap symbolPixmap(Symbol symbol, int size, const QColor& color, qreal dpr)
{
    QPixmap pixmap(QSize(size, size) * dpr);
    pixmap.setDevicePixelRatio(dpr);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    p.scale(size / 24.0, size / 24.0); // drawn on a 24 × 24 grid
    const QPen line(color, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    const auto letter = [&](const QRectF& box, const QString& text, const QColor& c, qreal px) {
        QFont f(QStringLiteral("DejaVu Sans"));
        f.setBold(true);
        f.setPixelSize(int(px));
        p.setFont(f);
        p.setPen(c);
        p.drawText(box, Qt::AlignCenter, text);
    };
    const auto bubblePath = [] {
        QPainterPath b;
        b.addRoundedRect(QRectF(2, 3, 20, 14), 4.5, 4.5);
        QPainterPath tail;
        tail.moveTo(6, 16);
        tail.lineTo(5, 21.5);
        tail.lineTo(11, 16.5);
        tail.closeSubpath();
        return b.united(tail);
    };
    const auto circle = [&](bool filled) {
        if (filled) {
            p.setPen(Qt::NoPen);
            p.setBrush(color);
        } else {
            p.setPen(line);
            p.setBrush(Qt::NoBrush);
        }
        p.drawEllipse(QRectF(2.5, 2.5, 19, 19));
    };
    const auto stack = [&](bool filled) {
        p.setPen(line);
        p.setBrush(Qt::NoBrush);
        p.drawRoundedRect(QRectF(6, 2.5, 12, 2), 1, 1);
        p.drawRoundedRect(QRectF(4, 6, 16, 2), 1, 1);
        p.setBrush(filled ? QBrush(color) : Qt::NoBrush);
        p.drawRoundedRect(QRectF(2.5, 10, 19, 11.5), 2.5, 2.5);
    };
    switch (symbol) {
    case Symbol::bubbleFilled:
        p.fillPath(bubblePath(), color);
        letter(QRectF(2, 3, 20, 14), QStringLiteral("A"), Qt::white, 10);
        break;
    case Symbol::bubble:
        p.setPen(line);
        p.drawPath(bubblePath());
        letter(QRectF(2, 3, 20, 14), QStringLiteral("A"), color, 9);
        break;
    case Symbol::pointerRays: {
        QPainterPath arrow;
        arrow.moveTo(9, 9);
        arrow.lineTo(9, 22);
        arrow.lineTo(12.2, 19);
        arrow.lineTo(14.6, 23);
        arrow.lineTo(16.6, 22);
        arrow.lineTo(14.3, 18);
        arrow.lineTo(18.6, 18);
        arrow.closeSubpath();
        p.fillPath(arrow, color);
        p.setPen(line);
        p.drawLine(QPointF(9, 2), QPointF(9, 5));
        p.drawLine(QPointF(2, 9), QPointF(5, 9));
        p.drawLine(QPointF(3.8, 3.8), QPointF(5.8, 5.8));
        p.drawLine(QPointF(14.2, 3.8), QPointF(12.2, 5.8));
        break;
    }
    case Symbol::stackPlus:
        stack(false);
        p.drawLine(QPointF(12, 12.5), QPointF(12, 19));
        p.drawLine(QPointF(8.75, 15.75), QPointF(15.25, 15.75));
        break;
    case Symbol::stackFilled:
        stack(true);
        break;
    case Symbol::checkCircleFilled:
    case Symbol::exclamationCircleFilled:
    case Symbol::exclamationCircle: {
        const bool filled = symbol != Symbol::exclamationCircle;
        circle(filled);
        const QColor mark = filled ? QColor(Qt::white) : color;
        if (symbol == Symbol::checkCircleFilled) {
            p.setPen(QPen(mark, 2.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
            p.setBrush(Qt::NoBrush);
            p.drawPolyline(QList<QPointF>{{7.5, 12.5}, {10.7, 15.6}, {16.5, 8.8}});
        } else {
            p.setPen(QPen(mark, 2.4, Qt::SolidLine, Qt::RoundCap));
            p.drawLine(QPointF(12, 7), QPointF(12, 13.5));
            p.drawPoint(QPointF(12, 17));
        }
        break;
    }
    case Symbol::check:
        p.setPen(QPen(color, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.drawPolyline(QList<QPointF>{{4, 12.5}, {9.5, 18}, {20, 6}});
        break;
    case Symbol::quote:
        letter(QRectF(1, 0, 9, 14), QStringLiteral("“"), color, 16);
        p.setPen(line);
        p.drawLine(QPointF(11, 6), QPointF(22, 6));
        p.drawLine(QPointF(11, 11), QPointF(22, 11));
        p.drawLine(QPointF(3, 16), QPointF(22, 16));
        p.drawLine(QPointF(3, 21), QPointF(16, 21));
        break;
    case Symbol::trayWindow:
        p.setPen(line);
        p.setBrush(Qt::NoBrush);
        p.drawRoundedRect(QRectF(2.5, 4, 19, 16), 2.5, 2.5);
        p.fillRect(QRectF(2.5, 4, 19, 4.5), color);
        break;
    case Symbol::lightbulb: {
        p.setPen(Qt::NoPen);
        p.setBrush(color);
        p.drawEllipse(QRectF(5, 1.5, 14, 14));
        p.drawRoundedRect(QRectF(8.5, 12, 7, 5.5), 1.5, 1.5);
        p.setPen(line);
        p.drawLine(QPointF(9, 19.5), QPointF(15, 19.5));
        p.drawLine(QPointF(10, 22.2), QPointF(14, 22.2));
        break;
    }
    }
    return pixmap;
}

// Every label of the guide is made by symbolLabel() or textLabel(): Qt::PlainText, never markup.
QLabel* symbolLabel(Symbol symbol, int size, const QColor& color, QWidget* parent)
{
    QLabel* label = pictureLabel(parent);
    label->setPixmap(symbolPixmap(symbol, size, color, parent ? parent->devicePixelRatioF() : 1.0));
    label->setFixedSize(size, size);
    label->setAlignment(Qt::AlignCenter);
    return label;
}

QLabel* textLabel(const QString& text, QWidget* parent, TextStyle style = TextStyle::body,
                  std::optional<QFont::Weight> weight = std::nullopt, bool secondary = false)
{
    QLabel* label = plainLabel(text, parent);
    label->setFont(textStyleFont(style, weight));
    if (secondary)
        label->setForegroundRole(QPalette::PlaceholderText);
    label->setAccessibleName(text);
    return label;
}

QColor accentColor(const QWidget* w)
{
    return w->palette().color(QPalette::Highlight);
}

// Symbols in the accent colour follow the palette when the appearance changes.
const char* const accentSymbolProperty = "tolvaneAccentSymbol";

QLabel* accentSymbol(Symbol symbol, int size, QWidget* parent)
{
    QLabel* label = symbolLabel(symbol, size, accentColor(parent), parent);
    label->setProperty(accentSymbolProperty, QPoint(int(symbol), size));
    return label;
}
const QColor green(0x34, 0xC7, 0x59);
const QColor orange(0xFF, 0x95, 0x00);
const QColor red(0xFF, 0x3B, 0x30);
const QColor yellow(0xFF, 0xCC, 0x00);

// A symbol beside a text, the symbol aligned with the text's first line.
QWidget* symbolRow(Symbol symbol, QWidget* content, QWidget* parent)
{
    auto* row = new QWidget(parent);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    layout->addWidget(accentSymbol(symbol, 20, row), 0, Qt::AlignTop);
    content->setParent(row);
    layout->addWidget(content, 1);
    return row;
}

// The column of a step's page, and its title block when it has a title: a title and a text.
QVBoxLayout* pageLayout(QWidget* page, int spacing, const QString& title = {}, const QString& text = {})
{
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(40, 28, 40, 12);
    layout->setSpacing(spacing);
    if (title.isEmpty())
        return layout;
    layout->addWidget(textLabel(title, page, TextStyle::title1, QFont::Bold));
    if (!text.isEmpty())
        layout->addWidget(textLabel(text, page, TextStyle::body, std::nullopt, true));
    layout->addSpacing(8);
    return layout;
}

} // namespace

// One learning language: its flag (or code) and name, marked when it is the one chosen.
class LanguageRow final : public QAbstractButton
{
public:
    LanguageRow(const LanguageOption& option, QWidget* parent)
        : QAbstractButton(parent)
        , m_option(option)
    {
        // A plain button, so that a press from the accessibility bus is a click like any other.
        setAccessibleName(option.name);
        setFocusPolicy(Qt::StrongFocus);
        setCursor(Qt::PointingHandCursor);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    }
    const LanguageOption& option() const { return m_option; }
    bool isChosen() const { return m_chosen; }
    void setChosen(bool chosen)
    {
        if (chosen == m_chosen)
            return;
        m_chosen = chosen;
        setAccessibleDescription(chosen ? QStringLiteral("Chosen") : QString());
        update();
    }
    QSize sizeHint() const override { return {220, 34}; }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter p(this);
        p.setRenderHint(QPainter::Antialiasing);
        const QColor accent = palette().color(QPalette::Highlight);
        const QRectF box = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
        QColor fill = m_chosen ? accent : palette().color(QPalette::PlaceholderText);
        fill.setAlphaF(m_chosen ? 0.16f : (underMouse() ? 0.12f : 0.06f));
        p.setPen(m_chosen ? QPen(accent, 1.5) : Qt::NoPen);
        p.setBrush(fill);
        p.drawRoundedRect(box, 8, 8);

        const QRectF flagBox(10, (height() - 22) / 2.0, 28, 22);
        if (OnboardingGuideView::canDrawFlags()) {
            QFont emoji(emojiFamily);
            emoji.setPixelSize(18);
            p.setFont(emoji);
            p.setPen(palette().color(QPalette::WindowText)); // without a pen no glyph is drawn
            p.drawText(flagBox, Qt::AlignCenter, m_option.flag);
        } else {
            // Without a colour emoji font the flag would be an empty box: the code reads better.
            p.setFont(textStyleFont(TextStyle::caption, QFont::Bold));
            p.setPen(Qt::NoPen);
            QColor chip = palette().color(QPalette::PlaceholderText);
            chip.setAlphaF(0.25f);
            p.setBrush(chip);
            p.drawRoundedRect(flagBox.adjusted(1, 2, -1, -2), 4, 4);
            p.setPen(palette().color(QPalette::WindowText));
            p.drawText(flagBox, Qt::AlignCenter, labelCode(m_option.code));
        }
        p.setFont(textStyleFont(TextStyle::body, m_chosen ? QFont::DemiBold : QFont::Normal));
        p.setPen(palette().color(QPalette::WindowText));
        p.drawText(QRectF(46, 0, width() - 46 - 30, height()), Qt::AlignVCenter | Qt::AlignLeft, m_option.name);
        if (m_chosen) {
            const QPixmap mark = symbolPixmap(Symbol::checkCircleFilled, 16, accent, devicePixelRatioF());
            p.drawPixmap(QPointF(width() - 26, (height() - 16) / 2.0), mark);
        }
    }
    void enterEvent(QEnterEvent* event) override
    {
        QAbstractButton::enterEvent(event);
        update();
    }
    void leaveEvent(QEvent* event) override
    {
        QAbstractButton::leaveEvent(event);
        update();
    }

private:
    LanguageOption m_option;
    bool m_chosen = false;
};

bool OnboardingGuideView::canDrawFlags()
{
    static const bool can = [] {
        if (!QFontDatabase::families().contains(emojiFamily))
            return false;
        // A regional indicator letter: fonts with colour flags have them.
        return QFontMetricsF(QFont(emojiFamily)).inFontUcs4(0x1F1EB);
    }();
    return can;
}

OnboardingGuideView::OnboardingGuideView(OnboardingGuide::Services services,
                                         AccessibilityPermissionManager& accessibility,
                                         ScreenRecordingPermissionManager& screenRecording, QWidget* parent)
    : QWidget(parent, Qt::Window)
    , m_guide(services)
    , m_hotkeys(services.hotkeys)
    , m_preferences(services.preferences)
    , m_accessibility(accessibility)
    , m_screenRecording(screenRecording)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(Texts::windowTitle);
    setAccessibleName(Texts::windowTitle);
    setObjectName(QStringLiteral("setup-guide"));

    m_pages = new QStackedWidget(this);
    m_pages->addWidget(buildWelcome(services.scheduler));
    m_pages->addWidget(buildLanguage());
    m_pages->addWidget(buildHotkey());
    m_pages->addWidget(buildReminders());
    m_pages->addWidget(buildSummary());
    m_pages->setFixedSize(windowWidth, pageHeight);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_pages);
    layout->addWidget(buildNavigation());
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(&m_guide, &OnboardingGuide::changed, this, &OnboardingGuideView::render);
    connect(&m_guide, &OnboardingGuide::finished, this, &QWidget::close);
    connect(&m_hotkeys, &HotkeyManager::currentKeyCodeChanged, this, &OnboardingGuideView::render);
    connect(&m_hotkeys, &HotkeyManager::currentModifiersChanged, this, &OnboardingGuideView::render);
    connect(&m_hotkeys, &HotkeyManager::registrationErrorChanged, this, &OnboardingGuideView::render);
    for (PermissionManager* permission :
         std::initializer_list<PermissionManager*>{&m_accessibility, &m_screenRecording}) {
        connect(permission, &PermissionManager::isGrantedChanged, this, &OnboardingGuideView::renderPermissions);
        connect(permission, &PermissionManager::settingsMessageChanged, this, &OnboardingGuideView::renderPermissions);
    }
    connect(&m_preferences, &Preferences::changed, this, [this](const QString& key) {
        if (key == PreferenceKey::notificationIntervalHours)
            render();
    });
    render();
    renderPermissions();
}

OnboardingGuideView::~OnboardingGuideView()
{
    // The guide goes before the widgets that show it: nothing it reports on its way out may reach
    // them.
    disconnect(&m_guide, nullptr, this, nullptr);
}

QString OnboardingGuideView::currentHotkeyDisplay() const
{
    return hotkeyDisplayString(m_hotkeys.currentKeyCode(), m_hotkeys.currentModifiers());
}

QWidget* OnboardingGuideView::buildWelcome(Scheduler& scheduler)
{
    auto* page = new QWidget;
    QVBoxLayout* layout = pageLayout(page, 8);
    layout->addWidget(accentSymbol(Symbol::bubbleFilled, 52, page), 0, Qt::AlignHCenter);
    auto* title = textLabel(Texts::welcomeTitle, page, TextStyle::largeTitle, QFont::Bold);
    title->setAlignment(Qt::AlignHCenter);
    layout->addWidget(title);
    auto* subtitle = textLabel(Texts::welcomeSubtitle, page, TextStyle::title3, std::nullopt, true);
    subtitle->setAlignment(Qt::AlignHCenter);
    layout->addWidget(subtitle);
    layout->addSpacing(6);
    m_demo = new WelcomeTranslationDemo(scheduler, page);
    layout->addWidget(m_demo, 0, Qt::AlignHCenter);
    layout->addSpacing(6);
    layout->addWidget(textLabel(Texts::welcomeParagraph, page));
    layout->addSpacing(4);
    layout->addWidget(symbolRow(Symbol::pointerRays, textLabel(Texts::featureHover, nullptr), page));
    layout->addWidget(symbolRow(Symbol::bubble, textLabel(Texts::featureInstant, nullptr), page));
    layout->addWidget(symbolRow(Symbol::stackPlus, textLabel(Texts::featureDeck, nullptr), page));
    layout->addStretch(1);
    return page;
}

QWidget* OnboardingGuideView::buildLanguage()
{
    auto* page = new QWidget;
    QVBoxLayout* layout = pageLayout(page, 6, Texts::languageTitle, Texts::languageText);
    for (const LanguageOption& option : languageOptions()) {
        auto* row = new LanguageRow(option, page);
        connect(row, &QAbstractButton::clicked, this, [this, row] {
            m_guide.chooseLanguage(row->option().code);
            render(); // a tap while another runs is ignored: put the marks back
        });
        m_languageRows.append(row);
        layout->addWidget(row);
    }
    layout->addSpacing(8);

    m_downloadStatus = new QWidget(page);
    auto* status = new QHBoxLayout(m_downloadStatus);
    status->setContentsMargins(0, 0, 0, 0);
    status->setSpacing(8);
    m_downloadProgress = new QProgressBar(m_downloadStatus);
    m_downloadProgress->setRange(0, 0);
    m_downloadProgress->setTextVisible(false);
    m_downloadProgress->setFixedSize(80, 8);
    m_downloadProgress->setAccessibleName(Texts::downloading);
    m_downloadSymbol = pictureLabel(m_downloadStatus);
    m_downloadSymbol->setFixedSize(16, 16);
    m_downloadText = textLabel(QString(), m_downloadStatus);
    m_downloadText->setWordWrap(false);
    status->addWidget(m_downloadProgress);
    status->addWidget(m_downloadSymbol);
    status->addWidget(m_downloadText, 1);
    layout->addWidget(m_downloadStatus);
    m_downloadError = textLabel(QString(), page, TextStyle::callout, std::nullopt, true);
    m_downloadError->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(m_downloadError);
    layout->addStretch(1);
    return page;
}

QWidget* OnboardingGuideView::buildHotkey()
{
    auto* page = new QWidget;
    QVBoxLayout* layout = pageLayout(page, 10, Texts::hotkeyTitle, Texts::hotkeyText);
    m_keycaps = new HotkeyKeycaps(currentHotkeyDisplay(), 22, page);
    layout->addWidget(m_keycaps, 0, Qt::AlignHCenter);
    layout->addSpacing(6);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    m_changeHotkey = new QPushButton(Texts::changeHotkey, page);
    m_cancelCapture = new QPushButton(Texts::cancel, page);
    m_cancelCapture->setAccessibleName(Texts::cancel);
    buttons->addWidget(m_changeHotkey);
    buttons->addWidget(m_cancelCapture);
    buttons->addStretch(1);
    layout->addLayout(buttons);
    OnboardingHotkeyCaptureCoordinator& capture = m_guide.captureCoordinator();
    connect(m_changeHotkey, &QPushButton::clicked, this, [&capture] {
        // A second press while capturing cancels, like the Cancel button.
        if (capture.isCapturing())
            capture.stopCapture();
        else
            capture.startCapture();
    });
    connect(m_cancelCapture, &QPushButton::clicked, this, [&capture] { capture.stopCapture(); });

    m_validation = textLabel(QString(), page, TextStyle::callout);
    m_validation->setAlignment(Qt::AlignHCenter);
    QPalette warn = m_validation->palette();
    warn.setColor(QPalette::WindowText, orange);
    m_validation->setPalette(warn);
    layout->addWidget(m_validation);

    const HotkeyCombination standard;
    const QString standardKeys = keysOnThisPlatform(hotkeyDisplayString(standard.keyCode, standard.modifiers));
    auto* hint = textLabel(Texts::hotkeyHint(standardKeys), page, TextStyle::callout, std::nullopt, true);
    hint->setAlignment(Qt::AlignHCenter);
    layout->addWidget(hint);
    layout->addStretch(1);
    return page;
}

QWidget* OnboardingGuideView::buildReminders()
{
    auto* page = new QWidget;
    QVBoxLayout* layout = pageLayout(page, 10, Texts::remindersTitle, Texts::remindersText);
    auto* row = new QHBoxLayout;
    auto* label = textLabel(Texts::reminderFrequency, page);
    label->setWordWrap(false);
    m_frequency = new QComboBox(page);
    m_frequency->setAccessibleName(Texts::reminderFrequency);
    for (const ReminderFrequencyChoice& frequency : reminderFrequencyChoices())
        m_frequency->addItem(frequency.title);
    label->setBuddy(m_frequency);
    row->addWidget(label);
    row->addWidget(m_frequency);
    row->addStretch(1);
    layout->addLayout(row);
    connect(m_frequency, &QComboBox::activated, this, [this](int index) { m_guide.setReminderFrequencyIndex(index); });
    layout->addWidget(textLabel(onThisPlatform(Texts::remindersNote), page, TextStyle::callout, std::nullopt, true));
    layout->addStretch(1);
    return page;
}

QWidget* OnboardingGuideView::buildSummary()
{
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(40, 22, 40, 8);
    layout->setSpacing(9);
    auto* top = new QHBoxLayout;
    top->setSpacing(10);
    top->addWidget(symbolLabel(Symbol::check, 26, green, page));
    top->addWidget(textLabel(Texts::summaryTitle, page, TextStyle::title1, QFont::Bold), 1);
    layout->addLayout(top);
    layout->addSpacing(2);

    // A sentence with the hotkey's keycaps in its middle.
    const auto keycapSentence = [&](Symbol symbol, const QString& before, const QString& after) {
        auto* content = new QWidget;
        auto* line = new QHBoxLayout(content);
        line->setContentsMargins(0, 0, 0, 0);
        line->setSpacing(5);
        auto* first = textLabel(before, content);
        first->setWordWrap(false);
        auto* caps = new HotkeyKeycaps(currentHotkeyDisplay(), 11, content);
        m_keycapSentences.append({content, caps, before, after});
        // The end of the sentence wraps, so a long hotkey or a long translation of the words never
        // pushes it past the window's edge.
        auto* last = textLabel(after.trimmed(), content);
        line->addWidget(first);
        line->addWidget(caps);
        line->addWidget(last, 1);
        layout->addWidget(symbolRow(symbol, content, page));
    };
    keycapSentence(Symbol::pointerRays, Texts::hoverBefore, Texts::hoverAfter);
    keycapSentence(Symbol::quote, Texts::selectBefore, Texts::selectAfter);
    layout->addWidget(symbolRow(Symbol::stackFilled, textLabel(Texts::savedAsFlashcards, nullptr), page));
    layout->addWidget(symbolRow(Symbol::trayWindow, textLabel(onThisPlatform(Texts::trayIcon), nullptr), page));

    auto* tip = new QFrame(page);
    tip->setAutoFillBackground(true);
    QPalette tipPalette = tip->palette();
    QColor tipFill = yellow;
    tipFill.setAlphaF(0.14f);
    tipPalette.setColor(QPalette::Window, tipFill);
    tip->setPalette(tipPalette);
    auto* tipLayout = new QHBoxLayout(tip);
    tipLayout->setContentsMargins(10, 8, 10, 8);
    tipLayout->setSpacing(10);
    tipLayout->addWidget(symbolLabel(Symbol::lightbulb, 18, yellow.darker(110), tip), 0, Qt::AlignTop);
    tipLayout->addWidget(textLabel(onThisPlatform(Texts::tip), tip, TextStyle::callout), 1);
    layout->addWidget(tip);
    layout->addSpacing(2);

    // The two permissions, each with its state and its action.
    const auto permissionRow = [&](QLabel*& symbol, QLabel*& status, const QString& purpose, const QString& action,
                                   auto onAction) {
        auto* row = new QHBoxLayout;
        row->setSpacing(10);
        symbol = pictureLabel(page);
        symbol->setFixedSize(18, 18);
        row->addWidget(symbol, 0, Qt::AlignTop);
        auto* texts = new QVBoxLayout;
        texts->setSpacing(1);
        status = textLabel(QString(), page, TextStyle::headline);
        texts->addWidget(status);
        texts->addWidget(textLabel(purpose, page, TextStyle::callout, std::nullopt, true));
        row->addLayout(texts, 1);
        auto* button = new QPushButton(onThisPlatform(action), page);
        connect(button, &QPushButton::clicked, this, onAction);
        row->addWidget(button, 0, Qt::AlignVCenter);
        layout->addLayout(row);
    };
    permissionRow(m_accessibilitySymbol, m_accessibilityStatus, Texts::accessibilityPurpose, Texts::request,
                  [this] { m_accessibility.requestAccess(); });
    permissionRow(m_screenRecordingSymbol, m_screenRecordingStatus, Texts::screenRecordingPurpose, Texts::openSettings,
                  [this] { m_screenRecording.openSystemSettings(); });
    m_permissionMessage = textLabel(QString(), page, TextStyle::subheadline, std::nullopt, true);
    layout->addWidget(m_permissionMessage);
    m_withoutAccessibility =
        textLabel(onThisPlatform(Texts::withoutAccessibility), page, TextStyle::subheadline, std::nullopt, true);
    layout->addWidget(m_withoutAccessibility);
    layout->addStretch(1);

    m_start = new QPushButton(Texts::startUsing, page);
    m_start->setDefault(true);
    m_start->setMinimumHeight(34);
    m_start->setFont(textStyleFont(TextStyle::headline));
    connect(m_start, &QPushButton::clicked, this, [this] { m_guide.finish(); });
    layout->addWidget(m_start);
    paintAccents();
    return page;
}

QWidget* OnboardingGuideView::buildNavigation()
{
    auto* bar = new QWidget(this);
    bar->setFixedWidth(windowWidth);
    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(24, 10, 24, 16);
    m_back = new QPushButton(Texts::back, bar);
    m_primary = new QPushButton(Texts::getStarted, bar);
    m_primary->setDefault(true);
    m_dots = new StepProgressDots(OnboardingGuide::stepCount, bar);
    // Both buttons keep their place when hidden, so the dots stay centred.
    for (QPushButton* button : {m_back, m_primary}) {
        QSizePolicy policy = button->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        button->setSizePolicy(policy);
        button->setMinimumWidth(110);
    }
    layout->addWidget(m_back);
    layout->addStretch(1);
    layout->addWidget(m_dots);
    layout->addStretch(1);
    layout->addWidget(m_primary);
    connect(m_back, &QPushButton::clicked, this, [this] { m_guide.goBack(); });
    connect(m_primary, &QPushButton::clicked, this, [this] { m_guide.goForward(); });
    return bar;
}

void OnboardingGuideView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_start)
        paintAccents();
}

void OnboardingGuideView::paintAccents()
{
    // The prominent button wears the accent; so do the symbols marked as following it.
    QPalette startPalette = m_start->palette();
    startPalette.setColor(QPalette::Button, accentColor(this));
    startPalette.setColor(QPalette::ButtonText, Qt::white);
    m_start->setPalette(startPalette);
    const qreal dpr = devicePixelRatioF();
    for (QLabel* label : findChildren<QLabel*>()) {
        const QVariant marked = label->property(accentSymbolProperty);
        if (marked.isValid()) {
            const QPoint symbol = marked.toPoint();
            label->setPixmap(symbolPixmap(Symbol(symbol.x()), symbol.y(), accentColor(this), dpr));
        }
    }
    renderPermissions();
}

void OnboardingGuideView::render()
{
    const int step = m_guide.currentStep();
    m_pages->setCurrentIndex(step);
    m_dots->setCurrent(step);
    m_back->setVisible(m_guide.showsBack());
    m_primary->setVisible(step < OnboardingGuide::summary);
    m_primary->setText(step == OnboardingGuide::welcome ? Texts::getStarted : Texts::continueButton);
    m_primary->setEnabled(m_guide.canContinue());

    // Language: the chosen row is marked once a language was picked in this guide.
    const QString chosen = m_guide.hasSelectedLanguage() ? m_preferences.targetLanguage() : QString();
    for (LanguageRow* row : std::as_const(m_languageRows))
        row->setChosen(row->option().code == chosen);
    const qreal dpr = devicePixelRatioF();
    m_downloadProgress->setVisible(m_guide.isDownloadingModel());
    m_downloadSymbol->setVisible(!m_guide.isDownloadingModel());
    if (m_guide.isDownloadingModel()) {
        m_downloadText->setText(Texts::downloading);
    } else if (m_guide.modelReady()) {
        m_downloadSymbol->setPixmap(symbolPixmap(Symbol::checkCircleFilled, 16, green, dpr));
        m_downloadText->setText(Texts::modelReady);
    } else if (m_guide.downloadError()) {
        m_downloadSymbol->setPixmap(symbolPixmap(Symbol::exclamationCircleFilled, 16, red, dpr));
        m_downloadText->setText(Texts::downloadFailed);
    } else {
        m_downloadSymbol->setVisible(false);
        m_downloadText->clear();
    }
    m_downloadText->setAccessibleName(m_downloadText->text());
    m_downloadStatus->setVisible(m_guide.hasSelectedLanguage());
    m_downloadError->setText(m_guide.downloadError().value_or(QString()));
    m_downloadError->setAccessibleName(m_downloadError->text());
    m_downloadError->setVisible(m_guide.downloadError().has_value());

    // Hotkey.
    const QString display = currentHotkeyDisplay();
    // The caps keep the symbols; what is read aloud names the keys as this desktop does.
    m_keycaps->setDisplayString(display);
    m_keycaps->setAccessibleName(keysOnThisPlatform(display));
    for (const KeycapSentence& sentence : std::as_const(m_keycapSentences)) {
        sentence.keycaps->setDisplayString(display);
        sentence.keycaps->setAccessibleName(keysOnThisPlatform(display));
        sentence.line->setAccessibleName(sentence.before + QLatin1Char(' ') + keysOnThisPlatform(display) +
                                         sentence.after);
    }
    const bool capturing = m_guide.captureCoordinator().isCapturing();
    m_changeHotkey->setText(capturing ? Texts::pressCombo : Texts::changeHotkey);
    m_changeHotkey->setAccessibleName(m_changeHotkey->text());
    m_cancelCapture->setVisible(capturing);
    QString message = keysOnThisPlatform(m_guide.captureCoordinator().validationMessageText());
    if (message.isEmpty())
        message = keysOnThisPlatform(m_hotkeys.registrationErrorText());
    m_validation->setText(message);
    m_validation->setAccessibleName(message);
    m_validation->setVisible(!message.isEmpty());

    // Reminders.
    m_frequency->setCurrentIndex(m_guide.reminderFrequencyIndex());
}

void OnboardingGuideView::renderPermissions()
{
    const qreal dpr = devicePixelRatioF();
    const auto show = [&](QLabel* symbol, QLabel* status, const QString& name, bool granted) {
        symbol->setPixmap(granted ? symbolPixmap(Symbol::checkCircleFilled, 18, green, dpr)
                                  : symbolPixmap(Symbol::exclamationCircle, 18, orange, dpr));
        status->setText(name + (granted ? Texts::granted : Texts::notGranted));
        status->setAccessibleName(status->text());
    };
    show(m_accessibilitySymbol, m_accessibilityStatus, Texts::accessibility, m_accessibility.isGranted());
    show(m_screenRecordingSymbol, m_screenRecordingStatus, Texts::screenRecording, m_screenRecording.isGranted());
    m_withoutAccessibility->setVisible(!m_accessibility.isGranted());
    QStringList messages;
    for (const QString& m : {m_accessibility.settingsMessage(), m_screenRecording.settingsMessage()}) {
        if (!m.isEmpty())
            messages.append(m);
    }
    m_permissionMessage->setText(messages.join(QLatin1Char('\n')));
    m_permissionMessage->setVisible(!messages.isEmpty());
}

} // namespace tolvane
