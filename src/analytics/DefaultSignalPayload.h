#pragma once

#include <QMap>
#include <QString>

class TelemetryManagerConfiguration;

// The metadata every signal carries about the application, the system and the user's locale.
// Computed anew for each signal, on the main thread.
class DefaultSignalPayload {
public:
    static inline const QString clientVersion = QStringLiteral("2.12.0");

    static QMap<QString, QString> parameters(const TelemetryManagerConfiguration &configuration);

    // "Linux 6.1.0": the running kernel's major.minor.patch.
    static QString systemVersion();
    static QString majorSystemVersion();
    static QString majorMinorSystemVersion();
    static QString region();
    static QString appLanguage();
    static QString preferredLanguage();
};
