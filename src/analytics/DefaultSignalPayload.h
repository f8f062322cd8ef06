#pragma once

#include <QDateTime>
#include <QMap>
#include <QString>

class TelemetryManagerConfiguration;

// The metadata every signal carries: the application, the system, the user's locale and desktop,
// the calendar moment and the usage history. What changes during a run is computed anew for each
// signal on the main thread; the rest once.
class DefaultSignalPayload {
public:
    static inline const QString clientVersion = QStringLiteral("2.12.0");

    // The application's, the system's and the locale's keys: any thread.
    static QMap<QString, QString>
    deviceParameters(const TelemetryManagerConfiguration &configuration);
    // Screen, desktop settings, time zone, calendar and retention as they are now: main thread.
    static QMap<QString, QString> momentParameters(const QDateTime &now);

    // "Linux 6.1.0": the running kernel's major.minor.patch.
    static QString systemVersion();
    static QString majorSystemVersion();
    static QString majorMinorSystemVersion();
    static QString region();
    static QString appLanguage();
    static QString preferredLanguage();
    // The machine's DMI product name, else the kernel's machine field.
    static QString modelName();
    // "UTC+5:30", "UTC+0", and "UTC--5" for five hours behind (the hours keep their own sign).
    static QString timeZone(int offsetSeconds);
    // Day, week (ISO), month, quarter and hour (1 to 24) of a moment in its own time zone.
    static QMap<QString, QString> calendarParameters(const QDateTime &moment);
    // The desktop's reduced motion and inverted colours.
    static QMap<QString, QString> accessibilityParameters();
    // A number as the design writes a floating-point one: 982.0, 1.5, 2.345.
    static QString decimalText(double value);
    // Screen size and scale, colour scheme and layout direction: "N/A" without an application.
    static QMap<QString, QString> displayParameters();

private:
    static QMap<QString, QString> buildDeviceParameters(const QString &version,
                                                        const QString &build);
};
