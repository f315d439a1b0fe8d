// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fakes/OpenedSettings.h"
#include "platform/AccessibilityService.h"

#include <QList>
#include <QMap>
#include <QPointF>
#include <QStringList>

#include <optional>

namespace tolvane {

class FakeAccessibleElement final : public AccessibleElement
{
public:
    QMap<QString, QString> attributes;
    std::optional<TextRange> range; // nothing: the element can place points, but none is on a character
    bool rangeRejected = false;     // the element cannot place points at all
    std::optional<QString> selection;
    mutable QStringList attributeQueries;

    std::optional<QString> attribute(const QString& name) const override
    {
        attributeQueries.append(name);
        if (auto it = attributes.constFind(name); it != attributes.cend())
            return *it;
        return std::nullopt;
    }
    Result<std::optional<TextRange>> rangeForPosition(QPointF) const override
    {
        if (rangeRejected)
            return Error{QStringLiteral("The element cannot place points in its text.")};
        return range;
    }
    std::optional<QString> selectedText() const override { return selection; }
};

class FakeAccessibilityService final : public AccessibilityService
{
public:
    AccessibleElementPtr elementUnderPointer;
    AccessibleElementPtr focused;
    bool trusted = true;
    int trustRequests = 0;
    bool grantOnRequest = false; // a request switches access on
    QString settingsError;       // non-empty: opening the settings fails with it
    int settingsOpened = 0;
    QList<QPointF> pointsAsked;

    AccessibleElementPtr elementAtPoint(QPointF point) override
    {
        pointsAsked.append(point);
        return elementUnderPointer;
    }
    AccessibleElementPtr focusedElement() override { return focused; }
    bool isTrusted() const override { return trusted; }
    bool requestTrust() override
    {
        ++trustRequests;
        if (grantOnRequest)
            trusted = true;
        return trusted;
    }
    Result<void> openSystemSettings() override { return openedSettings(settingsOpened, settingsError); }
};

} // namespace tolvane
