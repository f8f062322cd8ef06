#pragma once

#include <memory>
#include <optional>
#include <QMap>
#include <QString>

class TelemetryManagerConfiguration;

// What the manager and the facade ask of the signal manager.
class SignalManageable {
public:
    virtual ~SignalManageable() = default;
    virtual void processSignal(const QString &signalType, const QMap<QString, QString> &parameters,
                               std::optional<double> floatValue,
                               const std::optional<QString> &customUserID,
                               std::shared_ptr<TelemetryManagerConfiguration> configuration) = 0;
    virtual void attemptToSendNextBatchOfCachedSignals() = 0;
};
