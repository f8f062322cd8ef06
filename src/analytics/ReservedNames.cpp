#include "ReservedNames.h"

#include "TelemetryManagerConfiguration.h"

namespace {
const QString reservedPrefix = QStringLiteral("TelemetryDeck.");
} // namespace

const QSet<QString> &ReservedNames::keysLowercased()
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

QMap<QString, QString> ReservedNames::withParameterPrefix(const QMap<QString, QString> &parameters,
                                                          const QString &prefix)
{
    QMap<QString, QString> prefixed;
    for (auto it = parameters.cbegin(); it != parameters.cend(); ++it)
        prefixed.insert(it.key().startsWith(reservedPrefix) ? it.key() : prefix + it.key(),
                        it.value());
    return prefixed;
}

void ReservedNames::warnOfSignalName(const TelemetryManagerConfiguration &configuration,
                                     const QString &name)
{
    const QString lower = name.toLower();
    if (lower.startsWith(reservedPrefix.toLower()))
        configuration.log(LogLevel::Error,
                          QStringLiteral("Sending signal with reserved prefix 'TelemetryDeck.' "
                                         "will cause unexpected behavior. Please use another "
                                         "prefix instead."));
    else if (keysLowercased().contains(lower))
        configuration.log(LogLevel::Error,
                          QStringLiteral("Sending signal with reserved name '%1' will cause "
                                         "unexpected behavior. Please use another name instead.")
                              .arg(name));
}

void ReservedNames::warnOfKeys(const TelemetryManagerConfiguration &configuration,
                               const QMap<QString, QString> &parameters)
{
    for (auto it = parameters.cbegin(); it != parameters.cend(); ++it) {
        const QString lower = it.key().toLower();
        if (lower.startsWith(reservedPrefix.toLower()))
            configuration.log(LogLevel::Error,
                              QStringLiteral("Sending parameter with reserved key prefix "
                                             "'TelemetryDeck.' will cause unexpected behavior. "
                                             "Please use another prefix instead."));
        else if (keysLowercased().contains(lower))
            configuration.log(LogLevel::Error,
                              QStringLiteral("Sending parameter with reserved key '%1' will cause "
                                             "unexpected behavior. Please use another key "
                                             "instead.")
                                  .arg(it.key()));
    }
}
