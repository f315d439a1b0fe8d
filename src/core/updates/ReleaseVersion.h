// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <compare>
#include <optional>

namespace tolvane {

// A version of Tolvane as releases are numbered: two to four dot-separated numbers, optionally
// followed by a pre-release tag ("0.2.0", "1.4", "1.0.0-beta.2"). Numbers are plain ASCII digits
// without leading zeros, so a version has one spelling; missing numbers count as 0 ("1.4" is
// "1.4.0"), and a pre-release comes before its release.
class ReleaseVersion final
{
public:
    // Nothing for a text that is not such a version.
    static std::optional<ReleaseVersion> parse(const QString& text);

    const QString& text() const { return m_text; }
    bool isPreRelease() const { return !m_preRelease.isEmpty(); }

    friend std::strong_ordering operator<=>(const ReleaseVersion& a, const ReleaseVersion& b);
    friend bool operator==(const ReleaseVersion& a, const ReleaseVersion& b) { return (a <=> b) == 0; }

private:
    QString m_text;
    QList<quint32> m_numbers; // always four
    QStringList m_preRelease;
};

} // namespace tolvane
