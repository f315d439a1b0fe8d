// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/AccessibilityService.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

namespace tolvane {

class UnresponsiveApplications;
class ApplicationMemory;

// What the last question to the bus met on its way, for telling a user why a word was not read.
struct AccessibilityNotes
{
    std::optional<qint64> pid;
    QString windowClass; // the X window's class, known even when the application is not on the bus
    QString application; // its name on the bus; empty when it is not there
    QString toolkit;     // "GTK 4.8.3", "Qt 5.15.8", …
    bool onBus = false;  // the application is registered on the accessibility bus
    bool unresponsive = false;
    bool placesPoints = true; // false: the toolkit cannot say which character is under a point
    QStringList steps;        // one line per answer, in order
};

// The accessibility bus (AT-SPI 2). The desktop object cannot tell what lies under a point, so
// the X server names the top-level window's process and the walk starts from that application.
// Every call to another application waits at most 300 ms; an application that did not answer in
// time is left alone for a few seconds rather than asked again. Toolkits differ in what they
// answer, and the walk knows them: GTK 3 notebooks hide their pages behind tabs without a place
// on screen, GTK 4 speaks only in window coordinates and never answers where a point falls in
// its text, Qt 5 puts every line at the top of its widget, Firefox leaves object characters in
// place of the text it keeps in child objects.
class AtspiAccessibilityService final : public AccessibilityService
{
public:
    AtspiAccessibilityService();
    ~AtspiAccessibilityService() override;

    AccessibleElementPtr elementAtPoint(QPointF screenPoint) override;
    // The element holding the user's selection: the focused object when it has text; else the
    // text below the focused window that holds a selection; else the text under the pointer when
    // it holds one; else, when the focused application owns it, the primary selection.
    AccessibleElementPtr focusedElement() override;
    bool isTrusted() const override;
    bool requestTrust() override;
    Result<void> openSystemSettings() override;

    // Whether libatspi reached the accessibility bus at all.
    bool isConnected() const { return m_connected; }

    // Keeps notes of every question from now on (lastNotes); off by default, as it costs time.
    void setKeepingNotes(bool keep) { m_keepNotes = keep; }
    // The notes of the last question, including what the element it gave answered since.
    AccessibilityNotes lastNotes() const;

private:
    AccessibleElementPtr elementAtDevice(QPoint device);

    bool m_connected = false;
    bool m_keepNotes = false;
    std::shared_ptr<UnresponsiveApplications> m_unresponsive;
    std::unique_ptr<ApplicationMemory> m_memory;
    std::shared_ptr<AccessibilityNotes> m_notes;
};

} // namespace tolvane
