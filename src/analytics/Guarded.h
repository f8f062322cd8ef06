#pragma once

#include <QReadWriteLock>

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
        QReadLocker locker(&m_lock);
        return m_value;
    }

    void set(T value)
    {
        QWriteLocker locker(&m_lock);
        m_value = std::move(value);
    }

private:
    mutable QReadWriteLock m_lock;
    T m_value{};
};
