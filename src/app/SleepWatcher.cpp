#include "SleepWatcher.h"

#include "TodayViewModel.h"

#include <QDBusConnection>

bool SleepWatcher::available()
{
    return QDBusConnection::systemBus().isConnected();
}

SleepWatcher::SleepWatcher(TodayViewModel &state, QObject *parent)
    : QObject(parent)
    , m_state(state)
{
    QDBusConnection::systemBus().connect(
        QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"), this,
        SLOT(prepareForSleep(bool)));
}

void SleepWatcher::prepareForSleep(bool sleeping)
{
    if (!sleeping)
        m_state.systemDidWake();
}
