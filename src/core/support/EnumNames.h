// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLatin1String>
#include <QString>
#include <QStringView>

#include <array>
#include <optional>
#include <utility>

namespace tolvane {

// The texts of an enumeration (stored values, log words), written once as rows; both directions
// read the same rows, so a value can never be written one way and read back another.
template <typename Enum, std::size_t N> class EnumNames final
{
public:
    constexpr explicit EnumNames(std::array<std::pair<Enum, const char*>, N> rows)
        : m_rows(rows)
    {}

    // Every value has a row; a value without one gives the first row's text.
    QLatin1String text(Enum value) const
    {
        for (const auto& [rowValue, rowText] : m_rows) {
            if (rowValue == value)
                return QLatin1String(rowText);
        }
        return QLatin1String(m_rows.front().second);
    }

    std::optional<Enum> value(QStringView text) const
    {
        for (const auto& [rowValue, rowText] : m_rows) {
            if (text == QLatin1String(rowText))
                return rowValue;
        }
        return std::nullopt;
    }

private:
    std::array<std::pair<Enum, const char*>, N> m_rows;
};

template <typename Enum, std::size_t N> EnumNames(std::array<std::pair<Enum, const char*>, N>) -> EnumNames<Enum, N>;

} // namespace tolvane
