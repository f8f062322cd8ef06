#pragma once

#include <QDateTime>
#include <QLocale>
#include <QMap>
#include <QString>

class TelemetryManagerConfiguration;

// The metadata every signal carries but the usage history: the application, the system, the
// user's locale and desktop, the calendar moment. What changes during a run is computed anew for
// each signal on the main thread; the rest once.
class DefaultSignalPayload {
public:
    static inline const QString clientVersion = QStringLiteral("2.12.0");

    // The application's, the system's and the locale's keys: any thread.
    static QMap<QString, QString>
    deviceParameters(const TelemetryManagerConfiguration &configuration);
    // Screen, desktop settings, time zone and calendar as they are now: main thread.
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
    // Day, week, month, quarter and hour (1 to 24) of a moment in its own time zone; the week by
    // the locale's rule (its first day, and how many days the first week needs).
    static QMap<QString, QString> calendarParameters(const QDateTime &moment,
                                                     const QLocale &locale = QLocale());
    // The desktop's reduced motion and inverted colours.
    static QMap<QString, QString> accessibilityParameters();
    // A floating-point number with at least one decimal: 982.0, 1.5, 2.345.
    static QString decimalText(double value);
    // Screen size and scale, colour scheme and layout direction: "N/A" without an application.
    static QMap<QString, QString> displayParameters();

private:
    static QMap<QString, QString> buildDeviceParameters(const QString &version,
                                                        const QString &build);
};
