// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/review/ReviewDeckView.h"

#include <QObject>
#include <QPointer>

namespace tolvane {

// The one "Review Deck" window. Showing it while it is open only brings it to the front, so the
// running session keeps its place; once closed, it is gone, and the next showing starts afresh.
class ReviewDeckWindowManager final : public QObject
{
    Q_OBJECT
public:
    explicit ReviewDeckWindowManager(const ReviewDeckContext& context, QObject* parent = nullptr);
    ~ReviewDeckWindowManager() override;

    void show();
    // The open window, if any.
    ReviewDeckView* window() const { return m_window; }

    static QString windowTitle();
    static constexpr QSize contentSize{380, 430};

private:
    ReviewDeckContext m_context;
    QPointer<ReviewDeckView> m_window;
};

} // namespace tolvane
