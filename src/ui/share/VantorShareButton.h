// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/share/SharePayload.h"

#include <QPushButton>

#include <functional>

namespace tolvane {

class SharePresenter;

// A button that shares: the payload is made only when it is pressed (drawing the picture is not
// free), then handed to the presenter, which opens its menu at the pointer.
class VantorShareButton final : public QPushButton
{
    Q_OBJECT
public:
    using PayloadFunction = std::function<VantorSharePayload()>;

    VantorShareButton(const QString& label, SharePresenter& presenter, PayloadFunction payload,
                      QWidget* parent = nullptr);

private:
    SharePresenter& m_presenter;
    PayloadFunction m_payload;
};

} // namespace tolvane
