// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/AppearanceApplier.h"

#include "core/setup/Preferences.h"

#include <QApplication>
#include <QStyle>
#include <QStyleFactory>

namespace tolvane {

AppearanceApplier::AppearanceApplier()
    : m_desktopStyle(QApplication::style() ? QApplication::style()->name() : QString())
    , m_desktopPalette(QApplication::palette())
{}

void AppearanceApplier::applyFrom(const Preferences& preferences)
{
    apply(preferences.appearanceMode());
}

void AppearanceApplier::apply(AppearanceMode mode)
{
    switch (mode) {
    case AppearanceMode::light:
        // Fusion draws every control from the palette, so a forced palette is honoured everywhere.
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
        QApplication::setPalette(lightPalette());
        break;
    case AppearanceMode::dark:
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
        QApplication::setPalette(darkPalette());
        break;
    case AppearanceMode::system:
        if (!m_desktopStyle.isEmpty())
            QApplication::setStyle(QStyleFactory::create(m_desktopStyle));
        QApplication::setPalette(m_desktopPalette);
        break;
    }
}

QPalette AppearanceApplier::lightPalette()
{
    QPalette p;
    p.setColor(QPalette::Window, QColor(0xEC, 0xEC, 0xEC));
    p.setColor(QPalette::WindowText, QColor(0x1D, 0x1D, 0x1F));
    p.setColor(QPalette::Base, Qt::white);
    p.setColor(QPalette::AlternateBase, QColor(0xF5, 0xF5, 0xF7));
    p.setColor(QPalette::Text, QColor(0x1D, 0x1D, 0x1F));
    p.setColor(QPalette::Button, QColor(0xFA, 0xFA, 0xFA));
    p.setColor(QPalette::ButtonText, QColor(0x1D, 0x1D, 0x1F));
    p.setColor(QPalette::PlaceholderText, QColor(0x86, 0x86, 0x8B));
    p.setColor(QPalette::ToolTipBase, Qt::white);
    p.setColor(QPalette::ToolTipText, QColor(0x1D, 0x1D, 0x1F));
    p.setColor(QPalette::Highlight, QColor(0x00, 0x7A, 0xFF));
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::Link, QColor(0x00, 0x66, 0xCC));
    p.setColor(QPalette::Disabled, QPalette::Text, QColor(0xA0, 0xA0, 0xA5));
    p.setColor(QPalette::Disabled, QPalette::WindowText, QColor(0xA0, 0xA0, 0xA5));
    p.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(0xA0, 0xA0, 0xA5));
    return p;
}

QPalette AppearanceApplier::darkPalette()
{
    QPalette p;
    p.setColor(QPalette::Window, QColor(0x2B, 0x2B, 0x2D));
    p.setColor(QPalette::WindowText, QColor(0xF5, 0xF5, 0xF7));
    p.setColor(QPalette::Base, QColor(0x1E, 0x1E, 0x20));
    p.setColor(QPalette::AlternateBase, QColor(0x32, 0x32, 0x35));
    p.setColor(QPalette::Text, QColor(0xF5, 0xF5, 0xF7));
    p.setColor(QPalette::Button, QColor(0x3A, 0x3A, 0x3C));
    p.setColor(QPalette::ButtonText, QColor(0xF5, 0xF5, 0xF7));
    p.setColor(QPalette::PlaceholderText, QColor(0x8E, 0x8E, 0x93));
    p.setColor(QPalette::ToolTipBase, QColor(0x3A, 0x3A, 0x3C));
    p.setColor(QPalette::ToolTipText, QColor(0xF5, 0xF5, 0xF7));
    p.setColor(QPalette::Highlight, QColor(0x0A, 0x84, 0xFF));
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::Link, QColor(0x41, 0x9C, 0xFF));
    p.setColor(QPalette::Disabled, QPalette::Text, QColor(0x6E, 0x6E, 0x73));
    p.setColor(QPalette::Disabled, QPalette::WindowText, QColor(0x6E, 0x6E, 0x73));
    p.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(0x6E, 0x6E, 0x73));
    return p;
}

} // namespace tolvane
