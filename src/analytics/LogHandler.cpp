#include "LogHandler.h"

#include <cstdio>
#include <QLoggingCategory>

Q_LOGGING_CATEGORY(telemetryDeckLog, "TelemetryDeck.LogHandler")

QString logLevelDescription(LogLevel level)
{
    switch (level) {
    case LogLevel::Debug:
        return QStringLiteral("DEBUG");
    case LogLevel::Info:
        return QStringLiteral("INFO");
    case LogLevel::Error:
        break;
    }
    return QStringLiteral("ERROR");
}

void LogHandler::log(LogLevel level, const QString &message) const
{
    if (level >= logLevel && handler)
        handler(level, message);
}

LogHandler LogHandler::standardOutput(LogLevel level)
{
    return {level, [](LogLevel messageLevel, const QString &message) {
                const QByteArray line =
                    "[TelemetryDeck: " + logLevelDescription(messageLevel).toUtf8() + "] " +
                    message.toUtf8() + '\n';
                std::fwrite(line.constData(), 1, size_t(line.size()), stdout);
                std::fflush(stdout);
            }};
}

LogHandler LogHandler::systemLog(LogLevel level)
{
    return {level, [](LogLevel messageLevel, const QString &message) {
                switch (messageLevel) {
                case LogLevel::Debug:
                    qCDebug(telemetryDeckLog, "%s", qUtf8Printable(message));
                    break;
                case LogLevel::Info:
                    qCInfo(telemetryDeckLog, "%s", qUtf8Printable(message));
                    break;
                case LogLevel::Error:
                    qCCritical(telemetryDeckLog, "%s", qUtf8Printable(message));
                    break;
                }
            }};
}

LogHandler LogHandler::standard(LogLevel level)
{
    return systemLog(level);
}
