// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/review/DeckExportPane.h"

#include "core/records/ReviewDeckStore.h"
#include "core/support/Clock.h"
#include "core/support/Logging.h"
#include "ui/components/PlainLabel.h"
#include "ui/components/SectionCard.h"
#include "ui/components/SymbolIcon.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

TOLVANE_DEFINE_LOG(lcDeckExport, "DeckExport")

namespace tolvane {

DeckExportPane::DeckExportPane(ReviewDeckStore& deck, const Clock& clock, QWidget* parent)
    : QWidget(parent)
    , m_deck(deck)
    , m_clock(clock)
    , m_csv(new QRadioButton(QStringLiteral("CSV  (.csv)")))
    , m_anki(new QRadioButton(QStringLiteral("Anki \u2013 tab-separated text  (.txt)")))
    , m_ankiNote(
          secondaryLabel(QStringLiteral("Front \u21E5 Back, one card per line \u2014 import via Anki \u2192 File "
                                        "\u2192 Import. Not a .apkg binary package.")))
    , m_includeNew(new QCheckBox(QStringLiteral("New")))
    , m_includeKnowIt(new QCheckBox(QStringLiteral("Know it")))
    , m_includeReviewAgain(new QCheckBox(QStringLiteral("Review again")))
    , m_dateRange(new QComboBox)
    , m_exportButton(new QPushButton)
    , m_noMatch(secondaryLabel(noMatchingCardsText()))
{
    // Both notes come from secondaryLabel(), so they are Qt::PlainText like every other label.
    auto* format = new SectionCard(QStringLiteral("Format"), symbolIcon(Symbol::document), QColor(0x2F, 0x6F, 0xEB));
    auto* formats = new QButtonGroup(this);
    formats->addButton(m_csv);
    formats->addButton(m_anki);
    m_csv->setChecked(true);
    format->contentLayout()->addWidget(m_csv);
    format->contentLayout()->addWidget(m_anki);
    format->contentLayout()->addWidget(m_ankiNote);

    auto* status = new SectionCard(QStringLiteral("Include cards with status"), symbolIcon(Symbol::filter),
                                   QColor(0xE8, 0x8A, 0x1A));
    for (QCheckBox* box : {m_includeNew, m_includeKnowIt, m_includeReviewAgain}) {
        box->setChecked(true);
        status->contentLayout()->addWidget(box);
    }

    auto* added = new SectionCard(QStringLiteral("Date added"), symbolIcon(Symbol::calendar), QColor(0x2E, 0xA0, 0x5A));
    m_dateRange->addItem(QStringLiteral("All time"), int(ExportDateRange::allTime));
    m_dateRange->addItem(QStringLiteral("Last 7 days"), int(ExportDateRange::last7Days));
    m_dateRange->addItem(QStringLiteral("Last 30 days"), int(ExportDateRange::last30Days));
    m_dateRange->addItem(QStringLiteral("Last 90 days"), int(ExportDateRange::last90Days));
    m_dateRange->setAccessibleName(QStringLiteral("Date added"));
    added->contentLayout()->addWidget(m_dateRange);

    m_exportButton->setDefault(true);
    QFont prominent = m_exportButton->font();
    prominent.setWeight(QFont::DemiBold);
    m_exportButton->setFont(prominent);
    m_noMatch->setAlignment(Qt::AlignCenter);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 12, 16, 16);
    layout->setSpacing(12);
    layout->addWidget(format);
    layout->addWidget(status);
    layout->addWidget(added);
    layout->addWidget(m_exportButton);
    layout->addWidget(m_noMatch);
    layout->addStretch(1);

    connect(m_csv, &QRadioButton::toggled, this, &DeckExportPane::refresh);
    for (QCheckBox* box : {m_includeNew, m_includeKnowIt, m_includeReviewAgain})
        connect(box, &QCheckBox::toggled, this, &DeckExportPane::refresh);
    connect(m_dateRange, &QComboBox::currentIndexChanged, this, &DeckExportPane::refresh);
    connect(m_exportButton, &QPushButton::clicked, this, &DeckExportPane::exportCards);
    connect(&m_deck, &ReviewDeckStore::cardsChanged, this, &DeckExportPane::refresh);
    refresh();
}

QList<ReviewCard> DeckExportPane::cardsToExport() const
{
    return filteredCards(m_deck.cards(), m_settings, m_clock.now());
}

void DeckExportPane::refresh()
{
    m_settings.format = m_anki->isChecked() ? ExportFormat::anki : ExportFormat::csv;
    m_settings.includeNew = m_includeNew->isChecked();
    m_settings.includeKnowIt = m_includeKnowIt->isChecked();
    m_settings.includeReviewAgain = m_includeReviewAgain->isChecked();
    m_settings.dateRange = ExportDateRange(m_dateRange->currentData().toInt());
    m_ankiNote->setVisible(m_settings.format == ExportFormat::anki);

    const qsizetype count = cardsToExport().size();
    m_exportButton->setText(exportButtonTitle(count, m_settings.format));
    m_exportButton->setAccessibleName(m_exportButton->text());
    m_exportButton->setVisible(count > 0);
    m_noMatch->setVisible(count == 0);
}

void DeckExportPane::exportCards()
{
    const QList<ReviewCard> cards = cardsToExport();
    if (cards.isEmpty())
        return;
    const ExportFormat format = m_settings.format;
    const QByteArray content = exportContent(cards, format);
    if (m_saveDialog)
        m_saveDialog->close();
    // Not modal: the rest of Tolvane keeps working while the learner picks a place.
    auto* dialog = new QFileDialog(window(), QStringLiteral("Export"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->setNameFilter(exportFileTypeFilter(format));
    dialog->setDefaultSuffix(format == ExportFormat::anki ? QStringLiteral("txt") : QStringLiteral("csv"));
    dialog->selectFile(proposedExportFileName(format));
    dialog->setWindowModality(Qt::NonModal);
    m_saveDialog = dialog;
    connect(dialog, &QFileDialog::fileSelected, this, [content](const QString& path) {
        const Result<void> written = writeExportFile(path, content);
        // Nothing to tell the learner beyond the missing file; the log says why.
        if (!written.ok())
            qCWarning(lcDeckExport).noquote() << QStringLiteral("Export failed: %1").arg(written.error().message);
    });
    dialog->show();
}

} // namespace tolvane
