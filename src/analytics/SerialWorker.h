#pragma once

#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

// Runs the work given to it one piece at a time, in order, on a thread that lives only while
// there is work: the pieces come seconds or hours apart. Its hand-offs use standard primitives,
// which ThreadSanitizer sees (Qt's own are invisible to it).
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
    void run();

    const std::string m_label;
    std::mutex m_lock; // guards the three below
    std::deque<std::function<void()>> m_queue;
    bool m_running = false;
    std::thread m_thread;
};
