#include "TelemetryManagerStorage.h"

#include "TelemetryManager.h"

#include <QReadWriteLock>

namespace {
QReadWriteLock lock;
std::shared_ptr<TelemetryManager> stored;
} // namespace

std::shared_ptr<TelemetryManager> TelemetryManagerStorage::manager()
{
    QReadLocker locker(&lock);
    return stored;
}

void TelemetryManagerStorage::setManager(std::shared_ptr<TelemetryManager> manager)
{
    std::shared_ptr<TelemetryManager> previous;
    {
        QWriteLocker locker(&lock);
        previous = std::exchange(stored, std::move(manager));
    }
    // The previous one stops its worker outside the lock.
}
