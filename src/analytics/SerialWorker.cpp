#include "SerialWorker.h"

#include <pthread.h>

SerialWorker::SerialWorker(const char *label)
    : m_label(std::string(label).substr(0, 15))
{
}

SerialWorker::~SerialWorker()
{
    // Nothing posts any more, and the thread empties the queue before it ends.
    std::thread last;
    {
        std::lock_guard locker(m_lock);
        last = std::move(m_thread);
    }
    if (last.joinable())
        last.join();
}

void SerialWorker::post(std::function<void()> work)
{
    std::lock_guard locker(m_lock);
    m_queue.push_back(std::move(work));
    if (m_running)
        return;
    // The last thread found the queue empty and has given up the lock for good.
    if (m_thread.joinable())
        m_thread.join();
    m_running = true;
    m_thread = std::thread([this] { run(); });
}

void SerialWorker::run()
{
    pthread_setname_np(pthread_self(), m_label.c_str());
    std::unique_lock locker(m_lock);
    while (!m_queue.empty()) {
        std::function<void()> work = std::move(m_queue.front());
        m_queue.pop_front();
        locker.unlock();
        work();
        locker.lock();
    }
    m_running = false;
}
