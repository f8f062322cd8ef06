#include "TelemetryDeck.h"

#include "ReservedNames.h"
#include "TelemetryManager.h"
#include "TelemetryManagerConfiguration.h"
#include "TelemetryManagerStorage.h"

const QSet<QString> &TelemetryDeck::reservedKeysLowercased()
{
    return ReservedNames::keysLowercased();
}

void TelemetryDeck::initialize(std::shared_ptr<TelemetryManagerConfiguration> configuration)
{
    TelemetryManager::initialize(std::move(configuration));
}

void TelemetryDeck::signal(const QString &signalName, const QMap<QString, QString> &parameters,
                           std::optional<double> floatValue,
                           const std::optional<QString> &customUserID)
{
    TelemetryManager::shared()->signal(signalName, parameters, floatValue, customUserID);
}

void TelemetryDeck::internalSignal(const QString &signalName,
                                   const QMap<QString, QString> &parameters,
                                   std::optional<double> floatValue,
                                   const std::optional<QString> &customUserID)
{
    TelemetryManager::shared()->internalSignal(signalName, parameters, floatValue, customUserID);
}

void TelemetryDeck::requestImmediateSync()
{
    TelemetryManager::requestImmediateSync();
}

void TelemetryDeck::terminate()
{
    TelemetryManager::terminate();
}

void TelemetryDeck::updateDefaultUserID(const std::optional<QString> &id)
{
    TelemetryManager::updateDefaultUser(id);
}

void TelemetryDeck::generateNewSession()
{
    TelemetryManager::generateNewSession();
}

void TelemetryDeck::startDurationSignal(const QString &signalName,
                                        const QMap<QString, QString> &parameters,
                                        bool includeBackgroundTime)
{
    TelemetryManager::shared()->durationSignalTracker().startTracking(signalName, parameters,
                                                                      includeBackgroundTime);
}

void TelemetryDeck::stopAndSendDurationSignal(const QString &signalName,
                                              const QMap<QString, QString> &parameters,
                                              std::optional<double> floatValue,
                                              const std::optional<QString> &customUserID)
{
    const auto elapsed =
        TelemetryManager::shared()->durationSignalTracker().stopTracking(signalName);
    if (!elapsed)
        return;
    // The call's parameters over the stored ones, and the duration over both.
    QMap<QString, QString> merged = elapsed->parameters;
    merged.insert(parameters);
    merged.insert(QStringLiteral("TelemetryDeck.Signal.durationInSeconds"),
                  DurationSignalTracker::durationText(elapsed->seconds));
    TelemetryManager::shared()->internalSignal(signalName, merged, floatValue, customUserID);
}

void TelemetryDeck::cancelDurationSignal(const QString &signalName)
{
    TelemetryManager::shared()->durationSignalTracker().stopTracking(signalName);
}

std::unique_ptr<QSettings> TelemetryDeck::customDefaults()
{
    const auto manager = TelemetryManagerStorage::manager();
    return manager ? manager->configuration()->store() : nullptr;
}
