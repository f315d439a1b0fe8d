// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/Result.h"

#include <QPointF>
#include <QString>

#include <memory>
#include <optional>

namespace tolvane {

// A range of user-perceived characters in an element's text.
struct TextRange
{
    qsizetype location = 0;
    qsizetype length = 0;
};

// One user-interface element of another application, as the accessibility bus shows it.
class AccessibleElement
{
public:
    virtual ~AccessibleElement() = default;

    // "AXValue" (the whole text), "AXTitle" (the name), "AXDescription"; nothing when the element
    // has no such attribute or the application does not answer in time.
    virtual std::optional<QString> attribute(const QString& name) const = 0;
    // The character under a screen point (bottom-left-origin points). An error when the element
    // cannot map points to its text at all (it has no text interface, or does not answer); an
    // empty answer when it can but no character lies under the point.
    virtual Result<std::optional<TextRange>> rangeForPosition(QPointF screenPoint) const = 0;
    // The selected text of a text element; nothing or empty when none is selected.
    virtual std::optional<QString> selectedText() const = 0;
};

using AccessibleElementPtr = std::shared_ptr<AccessibleElement>;

// The desktop's accessibility interface. Every call is bounded in time: a frozen application
// yields nothing rather than a hang.
class AccessibilityService
{
public:
    virtual ~AccessibilityService() = default;

    virtual AccessibleElementPtr elementAtPoint(QPointF screenPoint) = 0;
    virtual AccessibleElementPtr focusedElement() = 0;
    // Whether Tolvane may read other applications' elements.
    virtual bool isTrusted() const = 0;
    // Asks for access (on Linux: switch the accessibility bus on). Returns the new state.
    virtual bool requestTrust() = 0;
    // Opens the desktop's accessibility settings; the error says what to do where there are none.
    virtual Result<void> openSystemSettings() = 0;
};

} // namespace tolvane
