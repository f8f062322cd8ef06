#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

// A thread that runs the work given to it one piece at a time, in order. Its hand-offs use
// standard primitives, which ThreadSanitizer sees (Qt's own are invisible to it).
class SerialWorker {
public:
    // The thread is named after the label (cut to the system's 15 characters).
    explicit SerialWorker(const char *label);
    // Finishes what was given before it returns.
    ~SerialWorker();
    SerialWorker(const SerialWorker &) = delete;
    SerialWorker &operator=(const SerialWorker &) = delete;

    void post(std::function<void()> work);

private:
    void run(const char *label);

    std::mutex m_lock; // guards the two below
    std::condition_variable m_wake;
    std::deque<std::function<void()>> m_queue;
    bool m_stopping = false;
    std::thread m_thread;
};
