// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <QString>

class QVBoxLayout;
class QWidget;

namespace tolvane {

struct UpdateCheckState;

// The software update window: one window whose content follows the check — "Checking for
// Updates…" with a progress bar and Cancel; "You're up to date!"; a new version with its release
// notes as plain text and Skip This Version / Remind Me Later / Download; or what went wrong.
// It only shows and asks; the UpdaterManager decides.
class UpdateWindow final : public QDialog
{
    Q_OBJECT
public:
    // packageManaged: this copy is updated by the package manager, which the window says.
    UpdateWindow(QString currentVersion, bool packageManaged, QWidget* parent = nullptr);

    // Shows the content of a state; idle shows nothing new (the owner hides the window).
    void showState(const UpdateCheckState& state);

    void reject() override;

Q_SIGNALS:
    void cancelRequested();
    void downloadRequested();
    void skipRequested();
    void remindLaterRequested();
    // Closed without an answer (OK, the close button, Escape).
    void dismissed();

private:
    QWidget* newPage();
    void showChecking(QVBoxLayout* column);
    void addOkButton(QVBoxLayout* column);

    QString m_currentVersion;
    bool m_packageManaged;
    QWidget* m_page = nullptr;
};

} // namespace tolvane
