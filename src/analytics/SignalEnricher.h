#pragma once

#include <optional>
#include <QMap>
#include <QString>

// Adds parameters of its own to every signal.
class SignalEnricher {
public:
    virtual ~SignalEnricher() = default;
    virtual QMap<QString, QString> enrich(const QString &signalType,
                                          const std::optional<QString> &clientUser,
                                          std::optional<double> floatValue) = 0;
};
