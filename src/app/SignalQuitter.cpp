#include "SignalQuitter.h"

#include <csignal>
#include <QCoreApplication>
#include <sys/socket.h>
#include <unistd.h>

SignalQuitter::SignalQuitter(QObject *parent)
    : QObject(parent)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, m_fds) != 0)
        return;
    s_writeEnd = m_fds[0];
    m_notifier = new QSocketNotifier(m_fds[1], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, [this] {
        char signal = 0;
        if (::read(m_fds[1], &signal, 1) == 1)
            QCoreApplication::quit();
    });
    struct sigaction action = {};
    action.sa_handler = &SignalQuitter::handle;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (int signal : {SIGTERM, SIGINT, SIGHUP})
        ::sigaction(signal, &action, nullptr);
}

SignalQuitter::~SignalQuitter()
{
    struct sigaction fallback = {};
    fallback.sa_handler = SIG_DFL;
    for (int signal : {SIGTERM, SIGINT, SIGHUP})
        ::sigaction(signal, &fallback, nullptr);
    s_writeEnd = -1;
    for (int fd : m_fds) {
        if (fd >= 0)
            ::close(fd);
    }
}

void SignalQuitter::handle(int signal)
{
    const char byte = static_cast<char>(signal);
    if (s_writeEnd >= 0) {
        // Nothing can be done about a full pipe: a quit is already pending then.
        [[maybe_unused]] const auto written = ::write(s_writeEnd, &byte, 1);
    }
}
