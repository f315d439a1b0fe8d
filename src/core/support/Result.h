// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cassert>
#include <optional>
#include <utility>
#include <variant>

namespace tolvane {

// A failure the user or the log can read.
struct Error
{
    QString message;
};

// Either a value or an Error. Failures are values in Tolvane; nothing throws across components.
template <typename T> class [[nodiscard]] Result
{
public:
    Result(T value)
        : m_data(std::in_place_index<0>, std::move(value))
    {}
    Result(Error error)
        : m_data(std::in_place_index<1>, std::move(error))
    {}

    bool ok() const { return m_data.index() == 0; }
    explicit operator bool() const { return ok(); }

    const T& value() const&
    {
        assert(ok());
        return std::get<0>(m_data);
    }
    T& value() &
    {
        assert(ok());
        return std::get<0>(m_data);
    }
    T&& value() &&
    {
        assert(ok());
        return std::get<0>(std::move(m_data));
    }
    const Error& error() const
    {
        assert(!ok());
        return std::get<1>(m_data);
    }
    T valueOr(T fallback) const { return ok() ? value() : std::move(fallback); }

private:
    std::variant<T, Error> m_data;
};

// The result of an operation that gives nothing back but may fail.
template <> class [[nodiscard]] Result<void>
{
public:
    Result() = default;
    Result(Error error)
        : m_error(std::move(error))
    {}

    bool ok() const { return !m_error.has_value(); }
    explicit operator bool() const { return ok(); }
    const Error& error() const
    {
        assert(!ok());
        return *m_error;
    }

private:
    std::optional<Error> m_error;
};

} // namespace tolvane
