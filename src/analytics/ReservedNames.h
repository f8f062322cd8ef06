#pragma once

#include <QMap>
#include <QSet>
#include <QString>

class TelemetryManagerConfiguration;

// The names the ingest service keeps for itself, and what a signal's own names go through before
// they are sent: prefixes on what the application names, a warning for each reserved one.
class ReservedNames {
public:
    ReservedNames() = delete;

    static const QSet<QString> &keysLowercased();
    // Keys that begin with "TelemetryDeck." keep their name; the others get the prefix.
    static QMap<QString, QString> withParameterPrefix(const QMap<QString, QString> &parameters,
                                                      const QString &prefix);
    static void warnOfSignalName(const TelemetryManagerConfiguration &configuration,
                                 const QString &name);
    static void warnOfKeys(const TelemetryManagerConfiguration &configuration,
                           const QMap<QString, QString> &parameters);
};
