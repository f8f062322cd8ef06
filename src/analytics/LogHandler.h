#pragma once

#include <functional>
#include <QString>

enum class LogLevel { Debug = 0, Info = 1, Error = 2 };

// "DEBUG", "INFO" or "ERROR".
QString logLevelDescription(LogLevel level);

// Where the analytics client logs: messages below logLevel are dropped.
struct LogHandler {
    LogLevel logLevel = LogLevel::Info;
    std::function<void(LogLevel, const QString &)> handler;

    void log(LogLevel level, const QString &message) const;

    // "[TelemetryDeck: INFO] message" on standard output.
    static LogHandler standardOutput(LogLevel level);
    // The "TelemetryDeck.LogHandler" logging category, which reaches the journal.
    static LogHandler systemLog(LogLevel level);
    static LogHandler standard(LogLevel level);
};
