#include "TelemetryManagerConfiguration.h"

#include "CryptoHashing.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

TelemetryManagerConfiguration::TelemetryManagerConfiguration(QString appID,
                                                             std::optional<QString> saltText,
                                                             std::optional<QUrl> baseURL,
                                                             std::optional<QString> namespaceName)
    : telemetryAppID(std::move(appID))
    , apiBaseURL(baseURL.value_or(defaultBaseURL))
    , namespace_(std::move(namespaceName))
    , salt(saltText.value_or(QString()))
    , cacheDirectory(QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation))
    , storeDirectory(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation))
    , appVersion(QCoreApplication::applicationVersion())
{
}

bool TelemetryManagerConfiguration::swiftUIPreviewMode() const
{
    if (const auto explicitly = _swiftUIPreviewMode.get())
        return *explicitly;
    return qgetenv("XCODE_RUNNING_FOR_PREVIEWS") == "1";
}

void TelemetryManagerConfiguration::setSessionID(QUuid id)
{
    m_sessionID.set(id);
    if (const auto began = m_sessionBegan.get())
        began();
}

void TelemetryManagerConfiguration::log(LogLevel level, const QString &message) const
{
    if (const auto handler = logHandler.get())
        handler->log(level, message);
}

QString TelemetryManagerConfiguration::storeSuiteName() const
{
    return QStringLiteral("seprior.") + CryptoHashing::sha256(telemetryAppID, QString()).right(12);
}

std::unique_ptr<QSettings> TelemetryManagerConfiguration::store() const
{
    return std::make_unique<QSettings>(QDir(storeDirectory.get()).filePath(storeSuiteName()),
                                       QSettings::IniFormat);
}
