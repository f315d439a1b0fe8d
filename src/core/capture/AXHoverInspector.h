// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/capture/WordAtPositionResult.h"
#include "platform/AccessibilityService.h"

#include <QPointF>
#include <QString>
#include <QStringList>

#include <optional>

// Finds the word under the pointer, and the sentence around it, through the desktop's
// accessibility interface. Holds no state: every operation is a pure function of the element and
// the text it answers with. Main thread only, since it waits on the other application.
namespace tolvane::AXHoverInspector {

// The text attributes, always tried in this order.
inline const QStringList textAttributes{QStringLiteral("AXValue"), QStringLiteral("AXTitle"),
                                        QStringLiteral("AXDescription")};

// point: the pointer in bottom-left-origin screen points; the service converts to its own space.
AccessibleElementPtr elementAtPointer(AccessibilityService& service, QPointF point);
WordAtPositionResult wordAtPosition(const AccessibleElement& element, QPointF point);
// The first text attribute with visible content, trimmed.
std::optional<QString> firstTextAttribute(const AccessibleElement& element);
// The sentence of text holding the user-perceived character at index, trimmed.
std::optional<QString> sentenceContaining(qsizetype index, const QString& text);

} // namespace tolvane::AXHoverInspector
