// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QString>

#include <QFileDialog>
#include <QMenu>

namespace tolvane {

struct VantorSharePayload;

// The desktop has no share picker; this small menu at the pointer stands in for one. It offers
// the message and the picture unchanged: "Copy Image" puts both on the clipboard (an application
// takes the form it understands), "Copy Text" the message alone, "Save Image…" writes the picture
// as a PNG file. At most one menu is open: a second share replaces the first.
class SharePresenter final : public QObject
{
    Q_OBJECT
public:
    explicit SharePresenter(QObject* parent = nullptr);
    ~SharePresenter() override;

    // The one presenter kept by owner (the application's composition root), made on first use, so
    // that every share button of the application replaces the same menu.
    static SharePresenter& sharedBy(QObject& owner);

    void present(const QString& text, const QImage& image);
    void present(const VantorSharePayload& payload);
    // At a given place on the screen, in logical pixels (tests and keyboard-opened shares).
    void presentAt(const QString& text, const QImage& image, const QPoint& globalPosition);

    // The menu on screen, if any.
    QMenu* menu() const { return m_menu; }

    // The texts of the menu's entries.
    static QString copyImageTitle();
    static QString copyTextTitle();
    static QString saveImageTitle();

    // Writes the picture as a PNG, atomically; a failure leaves any earlier file as it was.
    static bool savePicture(const QImage& image, const QString& path);

private:
    void chooseSaveDestination(const QImage& image);

    QPointer<QMenu> m_menu;
    QPointer<QFileDialog> m_saveDialog;
};

} // namespace tolvane
