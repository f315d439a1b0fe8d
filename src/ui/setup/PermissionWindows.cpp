// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/setup/PermissionWindows.h"

#include "core/setup/PermissionManager.h"
#include "ui/components/PlainLabel.h"
#include "ui/components/StatusBadge.h"
#include "ui/setup/SetupSymbols.h"
#include "ui/setup/SetupTexts.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLinearGradient>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace tolvane {

namespace {

constexpr int contentWidth = 440;

// The header's picture: a white symbol on a rounded square filled with a gradient of the tint.
class SymbolTile final : public QWidget
{
public:
    SymbolTile(QColor tint, SetupSymbol symbol, QWidget* parent)
        : QWidget(parent)
        , m_tint(tint)
        , m_symbol(symbol)
    {
        setFixedSize(34, 34);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        QLinearGradient gradient(0, 0, 0, height());
        gradient.setColorAt(0, m_tint.lighter(125));
        gradient.setColorAt(1, m_tint);
        painter.setPen(Qt::NoPen);
        painter.setBrush(gradient);
        painter.drawRoundedRect(QRectF(rect()), 8, 8);
        painter.setPen(Qt::white);
        drawSetupSymbol(painter, m_symbol, QRectF(rect()).adjusted(7, 7, -7, -7));
    }

private:
    QColor m_tint;
    SetupSymbol m_symbol;
};

QVBoxLayout* windowLayout(QWidget* window, const QString& title, const QString& header, QColor tint, SetupSymbol symbol)
{
    window->setWindowTitle(title);
    auto* column = new QVBoxLayout(window);
    column->setContentsMargins(24, 22, 24, 22);
    column->setSpacing(12);
    // The window is as large as its content and no larger.
    column->setSizeConstraint(QLayout::SetFixedSize);
    auto* top = new QHBoxLayout;
    top->setSpacing(12);
    top->addWidget(new SymbolTile(tint, symbol, window));
    QLabel* heading = plainLabel(header, window);
    QFont bold = heading->font();
    bold.setPointSizeF(bold.pointSizeF() * 1.3);
    bold.setWeight(QFont::Bold);
    heading->setFont(bold);
    top->addWidget(heading, 1);
    column->addLayout(top);
    return column;
}

// Every label here comes from plainLabel() or captionLabel(): Qt::PlainText.
QLabel* widthLimited(QLabel* label)
{
    label->setFixedWidth(contentWidth);
    return label;
}

// What to do instead when the desktop has no settings window to open; hidden while there is one.
QLabel* settingsMessageLabel(PermissionManager& manager, QWidget* window)
{
    QLabel* label = widthLimited(plainLabel(manager.settingsMessage(), window));
    label->setHidden(manager.settingsMessage().isEmpty());
    QObject::connect(&manager, &PermissionManager::settingsMessageChanged, label, [label](const QString& message) {
        label->setText(message);
        label->setHidden(message.isEmpty());
    });
    return label;
}

} // namespace

AccessibilityPermissionWindow::AccessibilityPermissionWindow(AccessibilityPermissionManager& manager, QWidget* parent)
    : QWidget(parent, Qt::Window)
{
    setObjectName(QStringLiteral("accessibility-permission"));
    QVBoxLayout* column =
        windowLayout(this, SetupTexts::accessibilityPermissionTitle(), SetupTexts::accessibilityHeader(),
                     QColor(0x0A, 0x84, 0xFF), SetupSymbol::accessibility);
    column->addWidget(widthLimited(plainLabel(SetupTexts::accessibilityWhy(), this)));
    column->addWidget(widthLimited(plainLabel(SetupTexts::accessibilityOnlyThat(), this)));
    m_status = new StatusBadge(SetupTexts::accessibilityGranted(), SetupTexts::accessibilityNotGranted(), this);
    column->addWidget(m_status);
    auto* request = new QPushButton(SetupTexts::requestAccessibility(), this);
    request->setDefault(true);
    column->addWidget(request, 0, Qt::AlignLeft);
    column->addWidget(widthLimited(captionLabel(SetupTexts::requestAccessibilityCaption(), this)));
    auto* open = new QPushButton(SetupTexts::openAccessibilitySettings(), this);
    column->addWidget(open, 0, Qt::AlignLeft);
    column->addWidget(settingsMessageLabel(manager, this));
    column->addWidget(widthLimited(captionLabel(SetupTexts::afterGranting(), this)));

    connect(request, &QPushButton::clicked, &manager, &PermissionManager::requestAccess);
    connect(open, &QPushButton::clicked, &manager, &PermissionManager::openSystemSettings);
    connect(&manager, &PermissionManager::isGrantedChanged, m_status, &StatusBadge::setOn);
    m_status->setOn(manager.isGranted());
}

ScreenRecordingPermissionWindow::ScreenRecordingPermissionWindow(ScreenRecordingPermissionManager& manager,
                                                                 QWidget* parent)
    : QWidget(parent, Qt::Window)
{
    setObjectName(QStringLiteral("screen-recording-permission"));
    QVBoxLayout* column =
        windowLayout(this, SetupTexts::screenRecordingPermissionTitle(), SetupTexts::screenRecordingHeader(),
                     QColor(0xAF, 0x52, 0xDE), SetupSymbol::viewfinder);
    column->addWidget(widthLimited(plainLabel(SetupTexts::screenRecordingWhy(), this)));
    column->addWidget(widthLimited(plainLabel(SetupTexts::screenRecordingOnlyThat(), this)));
    m_status = new StatusBadge(SetupTexts::screenRecordingGranted(), SetupTexts::screenRecordingNotGranted(), this);
    column->addWidget(m_status);
    m_alwaysGranted = widthLimited(plainLabel(SetupTexts::screenRecordingAlwaysGranted(), this));
    column->addWidget(m_alwaysGranted);
    auto* open = new QPushButton(SetupTexts::openScreenRecordingSettings(), this);
    column->addWidget(open, 0, Qt::AlignLeft);
    column->addWidget(settingsMessageLabel(manager, this));
    m_restartCaption = widthLimited(captionLabel(SetupTexts::screenRecordingRestart(), this));
    column->addWidget(m_restartCaption);

    connect(open, &QPushButton::clicked, &manager, &PermissionManager::requestAccess);
    connect(&manager, &PermissionManager::isGrantedChanged, this, &ScreenRecordingPermissionWindow::setGranted);
    setGranted(manager.isGranted());
}

void ScreenRecordingPermissionWindow::setGranted(bool granted)
{
    m_status->setOn(granted);
    // Capture needs no grant on X11; elsewhere a grant may need a restart to take effect.
    const bool x11 = QGuiApplication::platformName() == QLatin1String("xcb");
    m_alwaysGranted->setVisible(granted && x11);
    m_restartCaption->setVisible(!(granted && x11));
}

} // namespace tolvane
