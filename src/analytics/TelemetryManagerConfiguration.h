#pragma once

#include "Guarded.h"
#include "LogHandler.h"
#include "SignalEnricher.h"

#include <functional>
#include <memory>
#include <optional>
#include <QList>
#include <QMap>
#include <QSettings>
#include <QUrl>
#include <QUuid>

// Everything the analytics client is told, shared by the manager, the signal manager and the
// facade. The identity fields are fixed at construction; any thread may read or change the rest.
class TelemetryManagerConfiguration {
public:
    static inline const QUrl defaultBaseURL{QStringLiteral("https://nom.telemetrydeck.com")};

    explicit TelemetryManagerConfiguration(QString appID, std::optional<QString> saltText = {},
                                           std::optional<QUrl> baseURL = {},
                                           std::optional<QString> namespaceName = {});

    const QString telemetryAppID;
    const QUrl apiBaseURL;
    const std::optional<QString> namespace_;
    const QString salt;

    Guarded<std::optional<QString>> defaultUser;
    Guarded<std::optional<QString>> defaultSignalPrefix;
    Guarded<std::optional<QString>> defaultParameterPrefix;
    Guarded<std::function<QMap<QString, QString>()>> defaultParameters{
        [] { return QMap<QString, QString>(); }};
    Guarded<bool> sendNewSessionBeganSignal{true};
    Guarded<bool> sendSignalsInDebugConfiguration{false};
    Guarded<std::optional<bool>> _testMode;
    Guarded<std::optional<bool>> _swiftUIPreviewMode;
    Guarded<bool> analyticsDisabled{false};
    Guarded<bool> reservedParameterWarningsEnabled{true};
    Guarded<bool> sessionStatsEnabled{true};
    Guarded<bool> showDebugLogs{false};
    Guarded<std::optional<LogHandler>> logHandler{LogHandler::standard(LogLevel::Info)};
    Guarded<QList<std::shared_ptr<SignalEnricher>>> metadataEnrichers;
    // Where the pending-signal file and the per-application store live: on Linux these are the
    // application's own folders, not folders shared by every program.
    Guarded<QString> cacheDirectory;
    Guarded<QString> storeDirectory;
    // What an application bundle would tell on other systems.
    Guarded<QString> appVersion;
    Guarded<QString> buildNumber;

    // An older name of sendSignalsInDebugConfiguration.
    Guarded<bool> &telemetryAllowDebugBuilds() { return sendSignalsInDebugConfiguration; }

    bool testMode() const { return _testMode.get().value_or(false); }
    void setTestMode(bool on) { _testMode.set(on); }
    // Explicitly set, or else XCODE_RUNNING_FOR_PREVIEWS=1 in the environment.
    bool swiftUIPreviewMode() const;
    void setSwiftUIPreviewMode(bool on) { _swiftUIPreviewMode.set(on); }

    QUuid sessionID() const { return m_sessionID.get(); }
    // Stores the identifier, then tells whoever follows sessions that a new one began.
    void setSessionID(QUuid id);
    void onSessionBegan(std::function<void()> began) { m_sessionBegan.set(std::move(began)); }

    void log(LogLevel level, const QString &message) const;

    // The per-application key-value store: "seprior." and 12 hex digits of the application's
    // hash, so that applications on one machine keep apart.
    QString storeSuiteName() const;
    std::unique_ptr<QSettings> store() const;

private:
    Guarded<QUuid> m_sessionID{QUuid::createUuid()};
    Guarded<std::function<void()>> m_sessionBegan;
};
