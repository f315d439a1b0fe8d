// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/share/VantorShareButton.h"

#include "ui/share/SharePresenter.h"

namespace tolvane {

VantorShareButton::VantorShareButton(const QString& label, SharePresenter& presenter, PayloadFunction payload,
                                     QWidget* parent)
    : QPushButton(label, parent)
    , m_presenter(presenter)
    , m_payload(std::move(payload))
{
    setAccessibleName(label);
    connect(this, &QPushButton::clicked, this, [this] {
        if (m_payload)
            m_presenter.present(m_payload());
    });
}

} // namespace tolvane
