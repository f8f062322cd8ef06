#pragma once

#include "ZelError.h"

#include <type_traits>
#include <utility>
#include <variant>

// Either a value or the error that prevented it.
template <typename T> class Result {
public:
    Result(T value)
        : m_state(std::in_place_index<0>, std::move(value))
    {
    }
    Result(ZelError error)
        : m_state(std::in_place_index<1>, std::move(error))
    {
    }

    bool isOk() const { return m_state.index() == 0; }
    const T &value() const & { return std::get<0>(m_state); }
    T &&value() && { return std::get<0>(std::move(m_state)); }
    const ZelError &error() const { return std::get<1>(m_state); }

    template <typename F> auto map(F &&transform) && -> Result<std::invoke_result_t<F, T &&>>
    {
        if (isOk())
            return std::forward<F>(transform)(std::get<0>(std::move(m_state)));
        return std::get<1>(std::move(m_state));
    }

private:
    std::variant<T, ZelError> m_state;
};
