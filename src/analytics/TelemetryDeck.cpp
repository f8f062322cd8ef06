#include "TelemetryDeck.h"

#include "TelemetryManager.h"
#include "TelemetryManagerConfiguration.h"
#include "TelemetryManagerStorage.h"

namespace {

const QString reservedPrefix = QStringLiteral("TelemetryDeck.");

QMap<QString, QString> withParameterPrefix(const QMap<QString, QString> &parameters,
                                           const QString &prefix)
{
    QMap<QString, QString> prefixed;
    for (auto it = parameters.cbegin(); it != parameters.cend(); ++it)
        prefixed.insert(it.key().startsWith(reservedPrefix) ? it.key() : prefix + it.key(),
                        it.value());
    return prefixed;
}

void warnOfReservedKeys(const TelemetryManagerConfiguration &configuration,
                        const QMap<QString, QString> &parameters)
{
    for (const QString &key : parameters.keys()) {
        const QString lower = key.toLower();
        if (lower.startsWith(reservedPrefix.toLower()))
            configuration.log(LogLevel::Error,
                              QStringLiteral("Sending parameter with reserved key prefix "
                                             "'TelemetryDeck.' will cause unexpected behavior. "
                                             "Please use another prefix instead."));
        else if (TelemetryDeck::reservedKeysLowercased().contains(lower))
            configuration.log(LogLevel::Error,
                              QStringLiteral("Sending parameter with reserved key '%1' will cause "
                                             "unexpected behavior. Please use another key "
                                             "instead.")
                                  .arg(key));
    }
}

} // namespace

const QSet<QString> &TelemetryDeck::reservedKeysLowercased()
{
    static const QSet<QString> keys = [] {
        QSet<QString> lowered;
        for (const char *key : {"type",
                                "clientUser",
                                "appID",
                                "sessionID",
                                "floatValue",
                                "newSessionBegan",
                                "platform",
                                "systemVersion",
                                "majorSystemVersion",
                                "majorMinorSystemVersion",
                                "appVersion",
                                "buildNumber",
                                "isSimulator",
                                "isDebug",
                                "isTestFlight",
                                "isAppStore",
                                "modelName",
                                "architecture",
                                "operatingSystem",
                                "targetEnvironment",
                                "locale",
                                "region",
                                "appLanguage",
                                "preferredLanguage",
                                "telemetryClientVersion"})
            lowered.insert(QString::fromLatin1(key).toLower());
        return lowered;
    }();
    return keys;
}

void TelemetryDeck::initialize(std::shared_ptr<TelemetryManagerConfiguration> configuration)
{
    TelemetryManagerStorage::setManager(TelemetryManager::create(std::move(configuration)));
}

void TelemetryDeck::signal(const QString &signalName, const QMap<QString, QString> &parameters,
                           std::optional<double> floatValue,
                           const std::optional<QString> &customUserID)
{
    const auto configuration = TelemetryManager::shared()->configuration();
    if (configuration->swiftUIPreviewMode() || configuration->analyticsDisabled.get())
        return;
    const QString name = configuration->defaultSignalPrefix.get().value_or(QString()) + signalName;
    const QMap<QString, QString> prefixed = withParameterPrefix(
        parameters, configuration->defaultParameterPrefix.get().value_or(QString()));
    if (configuration->reservedParameterWarningsEnabled.get()) {
        const QString lower = name.toLower();
        if (lower.startsWith(reservedPrefix.toLower()))
            configuration->log(LogLevel::Error,
                               QStringLiteral("Sending signal with reserved prefix "
                                              "'TelemetryDeck.' will cause unexpected behavior. "
                                              "Please use another prefix instead."));
        else if (reservedKeysLowercased().contains(lower))
            configuration->log(LogLevel::Error,
                               QStringLiteral("Sending signal with reserved name '%1' will cause "
                                              "unexpected behavior. Please use another name "
                                              "instead.")
                                   .arg(name));
        warnOfReservedKeys(*configuration, prefixed);
    }
    internalSignal(name, prefixed, floatValue, customUserID);
}

void TelemetryDeck::internalSignal(const QString &signalName,
                                   const QMap<QString, QString> &parameters,
                                   std::optional<double> floatValue,
                                   const std::optional<QString> &customUserID)
{
    const auto manager = TelemetryManager::shared();
    const auto configuration = manager->configuration();
    if (configuration->swiftUIPreviewMode() || configuration->analyticsDisabled.get())
        return;
    QMap<QString, QString> merged =
        withParameterPrefix(configuration->defaultParameters.get()(),
                            configuration->defaultParameterPrefix.get().value_or(QString()));
    // Checked whether or not reserved-name warnings are on.
    warnOfReservedKeys(*configuration, merged);
    merged.insert(parameters);
    manager->signalManager().processSignal(signalName, merged, floatValue, customUserID,
                                           configuration);
}

void TelemetryDeck::requestImmediateSync()
{
    TelemetryManager::shared()->syncSoon();
}

void TelemetryDeck::terminate()
{
    TelemetryManagerStorage::setManager(nullptr);
}

void TelemetryDeck::updateDefaultUserID(const std::optional<QString> &id)
{
    TelemetryManager::shared()->configuration()->defaultUser.set(id);
}

void TelemetryDeck::generateNewSession()
{
    TelemetryManager::shared()->configuration()->setSessionID(QUuid::createUuid());
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
    internalSignal(signalName, merged, floatValue, customUserID);
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
