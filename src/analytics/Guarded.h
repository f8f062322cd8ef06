#pragma once

#include <mutex>
#include <shared_mutex>

// A value that any thread may read or replace.
template <typename T> class Guarded {
public:
    Guarded() = default;
    Guarded(T value)
        : m_value(std::move(value))
    {
    }

    T get() const
    {
        std::shared_lock locker(m_lock);
        return m_value;
    }

    void set(T value)
    {
        std::unique_lock locker(m_lock);
        m_value = std::move(value);
    }

private:
    mutable std::shared_mutex m_lock; // a standard lock, which ThreadSanitizer sees
    T m_value{};
};
