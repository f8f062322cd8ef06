#pragma once

#include <memory>

class TelemetryManager;

// Holds the one shared manager for every thread.
class TelemetryManagerStorage {
public:
    static std::shared_ptr<TelemetryManager> manager();
    static void setManager(std::shared_ptr<TelemetryManager> manager);
};
