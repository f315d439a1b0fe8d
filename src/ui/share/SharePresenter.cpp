// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/share/SharePresenter.h"

#include "core/support/Logging.h"
#include "ui/share/SharePayload.h"

#include <QAction>
#include <QClipboard>
#include <QCursor>
#include <QFileDialog>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <QSaveFile>

TOLVANE_DEFINE_LOG(lcSharePresenter, "SharePresenter")

namespace tolvane {

SharePresenter::SharePresenter(QObject* parent)
    : QObject(parent)
{}

SharePresenter& SharePresenter::sharedBy(QObject& owner)
{
    const QString name = QStringLiteral("tolvane-share-presenter");
    if (auto* existing = owner.findChild<SharePresenter*>(name, Qt::FindDirectChildrenOnly))
        return *existing;
    auto* presenter = new SharePresenter(&owner);
    presenter->setObjectName(name);
    return *presenter;
}

SharePresenter::~SharePresenter()
{
    delete m_menu;
}

QString SharePresenter::copyImageTitle()
{
    return QStringLiteral("Copy Image");
}

QString SharePresenter::copyTextTitle()
{
    return QStringLiteral("Copy Text");
}

QString SharePresenter::saveImageTitle()
{
    return QStringLiteral("Save Image\u2026");
}

void SharePresenter::present(const VantorSharePayload& payload)
{
    present(payload.text, payload.image);
}

void SharePresenter::present(const QString& text, const QImage& image)
{
    presentAt(text, image, QCursor::pos());
}

void SharePresenter::presentAt(const QString& text, const QImage& image, const QPoint& globalPosition)
{
    if (m_menu) {
        m_menu->close();
        m_menu->deleteLater();
    }
    auto* menu = new QMenu;
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setAccessibleName(QStringLiteral("Share"));
    m_menu = menu;

    menu->addAction(copyImageTitle(), menu, [text, image] {
        auto* data = new QMimeData;
        data->setImageData(image);
        data->setText(text);
        QGuiApplication::clipboard()->setMimeData(data);
    });
    menu->addAction(copyTextTitle(), menu, [text] { QGuiApplication::clipboard()->setText(text); });
    QPointer<SharePresenter> self(this);
    menu->addAction(saveImageTitle(), menu, [self, image] {
        if (self)
            self->chooseSaveDestination(image);
    });
    // Just below and right of the pointer, so the first entry is under it.
    menu->popup(globalPosition + QPoint(1, 1));
}

void SharePresenter::chooseSaveDestination(const QImage& image)
{
    if (m_saveDialog)
        m_saveDialog->close();
    auto* dialog = new QFileDialog(nullptr, QStringLiteral("Save Image"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setNameFilter(QStringLiteral("PNG image (*.png)"));
    dialog->setDefaultSuffix(QStringLiteral("png"));
    dialog->selectFile(QStringLiteral("tolvane.png"));
    m_saveDialog = dialog;
    connect(dialog, &QFileDialog::fileSelected, dialog, [image](const QString& path) { savePicture(image, path); });
    dialog->open();
}

bool SharePresenter::savePicture(const QImage& image, const QString& path)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !image.save(&file, "PNG") || !file.commit()) {
        qCWarning(lcSharePresenter).noquote()
            << QStringLiteral("Could not save the picture to %1: %2").arg(path, file.errorString());
        file.cancelWriting();
        return false;
    }
    return true;
}

} // namespace tolvane
