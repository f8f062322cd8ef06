#include "TelemetryManagerStorage.h"

#include <mutex>
#include <shared_mutex>
#include <utility>

namespace {
std::shared_mutex lock;
std::shared_ptr<TelemetryManager> stored;
} // namespace

std::shared_ptr<TelemetryManager> TelemetryManagerStorage::manager()
{
    std::shared_lock locker(lock);
    return stored;
}

void TelemetryManagerStorage::setManager(std::shared_ptr<TelemetryManager> manager)
{
    std::shared_ptr<TelemetryManager> previous;
    {
        std::unique_lock locker(lock);
        previous = std::exchange(stored, std::move(manager));
    }
    // The previous one stops its worker outside the lock.
}
