// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/updates/UpdateWindow.h"

#include "core/updates/UpdaterManager.h"
#include "ui/AppIcon.h"
#include "ui/components/PlainLabel.h"
#include "ui/components/TextStyle.h"
#include "ui/updates/UpdateTexts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace tolvane {

namespace {

constexpr int iconSize = 64;
constexpr int textWidth = 440;
constexpr int notesWidth = 440;
constexpr int notesHeight = 180;

QLabel* paragraph(const QString& text, QWidget* parent, TextStyle style = TextStyle::body)
{
    // Texts from the feed are shown as they are written, never as markup (Qt::PlainText).
    QLabel* label = plainLabel(text, parent);
    label->setFixedWidth(textWidth);
    label->setFont(textStyleFont(style));
    label->setAccessibleName(text);
    return label;
}

QLabel* heading(const QString& text, QWidget* parent)
{
    return paragraph(text, parent, TextStyle::headline);
}

QPushButton* button(const QString& text, QWidget* parent)
{
    auto* control = new QPushButton(text, parent);
    control->setAccessibleName(text);
    return control;
}

QHBoxLayout* buttonRow(QVBoxLayout* column)
{
    auto* row = new QHBoxLayout;
    row->setSpacing(8);
    column->addSpacing(4);
    column->addLayout(row);
    return row;
}

} // namespace

UpdateWindow::UpdateWindow(QString currentVersion, bool packageManaged, QWidget* parent)
    : QDialog(parent)
    , m_currentVersion(std::move(currentVersion))
    , m_packageManaged(packageManaged)
{
    setObjectName(QStringLiteral("updates"));
    setWindowTitle(UpdateTexts::windowTitle());
    setAccessibleName(UpdateTexts::windowTitle());
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(20, 20, 20, 16);
    row->setSpacing(16);
    row->setSizeConstraint(QLayout::SetFixedSize);
    auto* icon = new QLabel(this);
    icon->setPixmap(appIcon().pixmap(iconSize, iconSize));
    icon->setTextFormat(Qt::PlainText);
    icon->setAlignment(Qt::AlignTop);
    icon->setAccessibleName(QStringLiteral("Tolvane"));
    row->addWidget(icon, 0, Qt::AlignTop);
    m_page = new QWidget(this);
    row->addWidget(m_page);
}

QWidget* UpdateWindow::newPage()
{
    auto* page = new QWidget(this);
    // The layout hands back the item that held the old page; it is ours to delete.
    delete layout()->replaceWidget(m_page, page);
    delete m_page;
    m_page = page;
    return page;
}

void UpdateWindow::showState(const UpdateCheckState& state)
{
    using Phase = UpdateCheckState::Phase;
    if (state.phase == Phase::idle)
        return;
    QWidget* page = newPage();
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(10);

    switch (state.phase) {
    case Phase::idle:
        break;
    case Phase::checking:
        showChecking(column);
        break;
    case Phase::upToDate: {
        column->addWidget(heading(UpdateTexts::upToDate(), page));
        column->addWidget(paragraph(UpdateTexts::newestAvailable(m_currentVersion), page));
        addOkButton(column);
        break;
    }
    case Phase::updateAvailable: {
        const QString newest = state.release ? state.release->version.text() : QString();
        column->addWidget(heading(UpdateTexts::updateAvailable(), page));
        column->addWidget(paragraph(UpdateTexts::versionOffer(newest, m_currentVersion), page));
        if (m_packageManaged)
            column->addWidget(paragraph(UpdateTexts::packageManaged(), page));
        column->addWidget(paragraph(UpdateTexts::releaseNotes(), page, TextStyle::subheadline));
        // A plain-text box: markup in the notes stays visible as the characters it is made of.
        auto* notes = new QPlainTextEdit(page);
        notes->setObjectName(QStringLiteral("release-notes"));
        notes->setReadOnly(true);
        notes->setPlainText(state.release && !state.release->notes.isEmpty() ? state.release->notes
                                                                             : UpdateTexts::noReleaseNotes());
        notes->setFixedSize(notesWidth, notesHeight);
        notes->setAccessibleName(UpdateTexts::releaseNotes());
        column->addWidget(notes);

        QHBoxLayout* buttons = buttonRow(column);
        QPushButton* skip = button(UpdateTexts::skipThisVersion(), page);
        QPushButton* later = button(UpdateTexts::remindMeLater(), page);
        QPushButton* download = button(UpdateTexts::download(), page);
        download->setDefault(true);
        buttons->addWidget(skip);
        buttons->addStretch(1);
        buttons->addWidget(later);
        buttons->addWidget(download);
        connect(skip, &QPushButton::clicked, this, &UpdateWindow::skipRequested);
        connect(later, &QPushButton::clicked, this, &UpdateWindow::remindLaterRequested);
        connect(download, &QPushButton::clicked, this, &UpdateWindow::downloadRequested);
        download->setFocus();
        break;
    }
    case Phase::failed: {
        column->addWidget(heading(UpdateTexts::updateError(), page));
        column->addWidget(paragraph(UpdateTexts::couldNotCheck(), page));
        QLabel* detail = paragraph(state.error, page, TextStyle::callout);
        detail->setObjectName(QStringLiteral("update-error"));
        detail->setTextInteractionFlags(Qt::TextSelectableByMouse);
        column->addWidget(detail);
        addOkButton(column);
        break;
    }
    }
    page->show();
}

// The one answer a finished check asks for: OK, which closes the window.
void UpdateWindow::addOkButton(QVBoxLayout* column)
{
    QHBoxLayout* buttons = buttonRow(column);
    buttons->addStretch(1);
    QPushButton* ok = button(UpdateTexts::ok(), m_page);
    ok->setDefault(true);
    buttons->addWidget(ok);
    connect(ok, &QPushButton::clicked, this, &UpdateWindow::reject);
    ok->setFocus();
}

void UpdateWindow::showChecking(QVBoxLayout* column)
{
    QWidget* page = m_page;
    column->addWidget(heading(UpdateTexts::checking(), page));
    auto* progress = new QProgressBar(page);
    // No measure of how far a fetch has come: the bar runs until the answer.
    progress->setRange(0, 0);
    progress->setTextVisible(false);
    progress->setFixedWidth(textWidth);
    progress->setAccessibleName(UpdateTexts::checkingProgress());
    column->addWidget(progress);
    QHBoxLayout* buttons = buttonRow(column);
    buttons->addStretch(1);
    QPushButton* cancel = button(UpdateTexts::cancel(), page);
    buttons->addWidget(cancel);
    connect(cancel, &QPushButton::clicked, this, &UpdateWindow::cancelRequested);
    cancel->setFocus();
}

void UpdateWindow::reject()
{
    hide();
    Q_EMIT dismissed();
}

} // namespace tolvane
