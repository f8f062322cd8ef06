#pragma once

#include <memory>
#include <optional>
#include <QMap>
#include <QSet>
#include <QSettings>
#include <QString>

class TelemetryManagerConfiguration;

// How the application talks to the analytics client. Any thread may call it; everything but
// initialize() needs an initialised client.
class TelemetryDeck {
public:
    TelemetryDeck() = delete;

    static const QSet<QString> &reservedKeysLowercased();

    static void initialize(std::shared_ptr<TelemetryManagerConfiguration> configuration);
    // Prefixes the name and the keys, warns of reserved names, and queues the signal.
    static void signal(const QString &signalName, const QMap<QString, QString> &parameters = {},
                       std::optional<double> floatValue = {},
                       const std::optional<QString> &customUserID = {});
    // The client's own signals: no prefix on the name, no name checks.
    static void internalSignal(const QString &signalName,
                               const QMap<QString, QString> &parameters = {},
                               std::optional<double> floatValue = {},
                               const std::optional<QString> &customUserID = {});
    static void requestImmediateSync();
    static void terminate();
    static void updateDefaultUserID(const std::optional<QString> &id);
    static void generateNewSession();
    // Times an activity; inactive time is left out unless asked for.
    static void startDurationSignal(const QString &signalName,
                                    const QMap<QString, QString> &parameters = {},
                                    bool includeBackgroundTime = false);
    // Sends the signal with "TelemetryDeck.Signal.durationInSeconds"; nothing when it never
    // started.
    static void stopAndSendDurationSignal(const QString &signalName,
                                          const QMap<QString, QString> &parameters = {},
                                          std::optional<double> floatValue = {},
                                          const std::optional<QString> &customUserID = {});
    static void cancelDurationSignal(const QString &signalName);
    // Nothing before initialize().
    static std::unique_ptr<QSettings> customDefaults();
};
