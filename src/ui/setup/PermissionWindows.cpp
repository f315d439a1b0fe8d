// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/setup/PermissionWindows.h"

#include "core/setup/AccessibilityPermissionManager.h"
#include "core/setup/ScreenRecordingPermissionManager.h"
#include "ui/components/StatusBadge.h"
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
    SymbolTile(QColor tint, QString symbol, QWidget* parent)
        : QWidget(parent)
        , m_tint(tint)
        , m_symbol(std::move(symbol))
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
        painter.setPen(QPen(Qt::white, 2.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(Qt::NoBrush);
        const QRectF r = QRectF(rect()).adjusted(9, 8, -9, -8);
        if (m_symbol == QLatin1String("accessibility")) {
            // A person with open arms.
            painter.setBrush(Qt::white);
            painter.drawEllipse(QPointF(r.center().x(), r.top() + 2), 2.2, 2.2);
            painter.setBrush(Qt::NoBrush);
            painter.drawLine(QPointF(r.left(), r.top() + 7), QPointF(r.right(), r.top() + 7));
            painter.drawLine(QPointF(r.center().x(), r.top() + 7), QPointF(r.center().x(), r.top() + 12));
            painter.drawLine(QPointF(r.center().x(), r.top() + 12), QPointF(r.left() + 3, r.bottom()));
            painter.drawLine(QPointF(r.center().x(), r.top() + 12), QPointF(r.right() - 3, r.bottom()));
        } else {
            // A viewfinder's corners around a line of text.
            const qreal c = 4;
            painter.drawPolyline(QPolygonF{{r.left(), r.top() + c}, r.topLeft(), {r.left() + c, r.top()}});
            painter.drawPolyline(QPolygonF{{r.right() - c, r.top()}, r.topRight(), {r.right(), r.top() + c}});
            painter.drawPolyline(QPolygonF{{r.left(), r.bottom() - c}, r.bottomLeft(), {r.left() + c, r.bottom()}});
            painter.drawPolyline(QPolygonF{{r.right() - c, r.bottom()}, r.bottomRight(), {r.right(), r.bottom() - c}});
            painter.drawLine(QPointF(r.left() + 4, r.center().y() - 2), QPointF(r.right() - 4, r.center().y() - 2));
            painter.drawLine(QPointF(r.left() + 4, r.center().y() + 2), QPointF(r.right() - 7, r.center().y() + 2));
        }
    }

private:
    QColor m_tint;
    QString m_symbol;
};

QLabel* paragraph(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

QLabel* captionLabel(const QString& text, QWidget* parent)
{
    QLabel* label = paragraph(text, parent);
    QFont small = label->font();
    small.setPointSizeF(small.pointSizeF() * 0.9);
    label->setFont(small);
    label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}

QVBoxLayout* windowLayout(QWidget* window, const QString& title, const QString& header, QColor tint,
                          const QString& symbol)
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
    QLabel* heading = paragraph(header, window);
    QFont bold = heading->font();
    bold.setPointSizeF(bold.pointSizeF() * 1.3);
    bold.setWeight(QFont::Bold);
    heading->setFont(bold);
    top->addWidget(heading, 1);
    column->addLayout(top);
    return column;
}

QLabel* widthLimited(QLabel* label)
{
    label->setFixedWidth(contentWidth);
    return label;
}

} // namespace

AccessibilityPermissionWindow::AccessibilityPermissionWindow(AccessibilityPermissionManager& manager, QWidget* parent)
    : QWidget(parent, Qt::Window)
{
    setObjectName(QStringLiteral("accessibility-permission"));
    QVBoxLayout* column =
        windowLayout(this, SetupTexts::accessibilityPermissionTitle(), SetupTexts::accessibilityHeader(),
                     QColor(0x0A, 0x84, 0xFF), QStringLiteral("accessibility"));
    column->addWidget(widthLimited(paragraph(SetupTexts::accessibilityWhy(), this)));
    column->addWidget(widthLimited(paragraph(SetupTexts::accessibilityOnlyThat(), this)));
    m_status = new StatusBadge(SetupTexts::accessibilityGranted(), SetupTexts::accessibilityNotGranted(), this);
    column->addWidget(m_status);
    auto* request = new QPushButton(SetupTexts::requestAccessibility(), this);
    request->setDefault(true);
    column->addWidget(request, 0, Qt::AlignLeft);
    column->addWidget(widthLimited(captionLabel(SetupTexts::requestAccessibilityCaption(), this)));
    auto* open = new QPushButton(SetupTexts::openAccessibilitySettings(), this);
    column->addWidget(open, 0, Qt::AlignLeft);
    m_settingsMessage = widthLimited(paragraph(QString(), this));
    m_settingsMessage->setHidden(true);
    column->addWidget(m_settingsMessage);
    column->addWidget(widthLimited(captionLabel(SetupTexts::afterGranting(), this)));

    connect(request, &QPushButton::clicked, &manager, &AccessibilityPermissionManager::requestAccess);
    connect(open, &QPushButton::clicked, &manager, &AccessibilityPermissionManager::openSystemSettings);
    connect(&manager, &AccessibilityPermissionManager::isTrustedChanged, this,
            &AccessibilityPermissionWindow::setTrusted);
    connect(&manager, &AccessibilityPermissionManager::settingsMessageChanged, this,
            &AccessibilityPermissionWindow::setSettingsMessage);
    setTrusted(manager.isTrusted());
    setSettingsMessage(manager.settingsMessage());
}

void AccessibilityPermissionWindow::setTrusted(bool trusted)
{
    m_status->setOn(trusted);
}

void AccessibilityPermissionWindow::setSettingsMessage(const QString& message)
{
    m_settingsMessage->setText(message);
    m_settingsMessage->setHidden(message.isEmpty());
}

ScreenRecordingPermissionWindow::ScreenRecordingPermissionWindow(ScreenRecordingPermissionManager& manager,
                                                                 QWidget* parent)
    : QWidget(parent, Qt::Window)
{
    setObjectName(QStringLiteral("screen-recording-permission"));
    QVBoxLayout* column =
        windowLayout(this, SetupTexts::screenRecordingPermissionTitle(), SetupTexts::screenRecordingHeader(),
                     QColor(0xAF, 0x52, 0xDE), QStringLiteral("text.viewfinder"));
    column->addWidget(widthLimited(paragraph(SetupTexts::screenRecordingWhy(), this)));
    column->addWidget(widthLimited(paragraph(SetupTexts::screenRecordingOnlyThat(), this)));
    m_status = new StatusBadge(SetupTexts::screenRecordingGranted(), SetupTexts::screenRecordingNotGranted(), this);
    column->addWidget(m_status);
    m_alwaysGranted = widthLimited(paragraph(SetupTexts::screenRecordingAlwaysGranted(), this));
    column->addWidget(m_alwaysGranted);
    auto* open = new QPushButton(SetupTexts::openScreenRecordingSettings(), this);
    column->addWidget(open, 0, Qt::AlignLeft);
    m_settingsMessage = widthLimited(paragraph(QString(), this));
    m_settingsMessage->setHidden(true);
    column->addWidget(m_settingsMessage);
    m_restartCaption = widthLimited(captionLabel(SetupTexts::screenRecordingRestart(), this));
    column->addWidget(m_restartCaption);

    connect(open, &QPushButton::clicked, &manager, &ScreenRecordingPermissionManager::requestAccess);
    connect(&manager, &ScreenRecordingPermissionManager::isGrantedChanged, this,
            &ScreenRecordingPermissionWindow::setGranted);
    connect(&manager, &ScreenRecordingPermissionManager::settingsMessageChanged, this,
            &ScreenRecordingPermissionWindow::setSettingsMessage);
    setGranted(manager.isGranted());
    setSettingsMessage(manager.settingsMessage());
}

void ScreenRecordingPermissionWindow::setGranted(bool granted)
{
    m_status->setOn(granted);
    // Capture needs no grant on X11; elsewhere a grant may need a restart to take effect.
    const bool x11 = QGuiApplication::platformName() == QLatin1String("xcb");
    m_alwaysGranted->setVisible(granted && x11);
    m_restartCaption->setVisible(!(granted && x11));
}

void ScreenRecordingPermissionWindow::setSettingsMessage(const QString& message)
{
    m_settingsMessage->setText(message);
    m_settingsMessage->setHidden(message.isEmpty());
}

} // namespace tolvane
