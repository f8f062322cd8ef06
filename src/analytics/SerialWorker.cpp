#include "SerialWorker.h"

#include <pthread.h>
#include <string>

SerialWorker::SerialWorker(const char *label)
    : m_thread([this, label] { run(label); })
{
}

SerialWorker::~SerialWorker()
{
    {
        std::lock_guard locker(m_lock);
        m_stopping = true;
    }
    m_wake.notify_one();
    m_thread.join();
}

void SerialWorker::post(std::function<void()> work)
{
    {
        std::lock_guard locker(m_lock);
        m_queue.push_back(std::move(work));
    }
    m_wake.notify_one();
}

void SerialWorker::run(const char *label)
{
    pthread_setname_np(pthread_self(), std::string(label).substr(0, 15).c_str());
    std::unique_lock locker(m_lock);
    for (;;) {
        m_wake.wait(locker, [this] { return m_stopping || !m_queue.empty(); });
        if (m_queue.empty())
            return; // stopping, and nothing left
        std::function<void()> work = std::move(m_queue.front());
        m_queue.pop_front();
        locker.unlock();
        work();
        locker.lock();
    }
}
