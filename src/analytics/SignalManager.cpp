#include "SignalManager.h"

#include "CryptoHashing.h"
#include "DefaultSignalPayload.h"
#include "DesktopAccessibility.h"
#include "SignalSender.h"
#include "TelemetryManagerConfiguration.h"

#include <QCoreApplication>
#include <QSettings>
#include <QTimer>

SignalManager::SignalManager(std::shared_ptr<TelemetryManagerConfiguration> configuration,
                             Retention retention)
    : m_configuration(std::move(configuration))
    , m_retention(std::move(retention))
    , m_signalCache(std::make_shared<SignalCache<SignalPostBody>>(
          m_configuration->cacheDirectory.get(),
          m_configuration->swiftUIPreviewMode() ? std::nullopt : m_configuration->logHandler.get()))
    , m_sender(
          new SignalSender(m_signalCache, m_configuration,
                           getServiceUrl(m_configuration->apiBaseURL, m_configuration->namespace_)))
{
    if (QCoreApplication *application = QCoreApplication::instance())
        m_mainThread.moveToThread(application->thread());
    m_timerThread.setObjectName(QStringLiteral("seprior.SignalTimer"));
    SignalSender *sender = m_sender;
    sender->moveToThread(&m_timerThread);
    QObject::connect(&m_timerThread, &QThread::finished, sender, &QObject::deleteLater);
    QObject::connect(&m_timerThread, &QThread::started, sender, &SignalSender::start);
    m_timerThread.start();
    if (QCoreApplication *application = QCoreApplication::instance()) {
        m_willTerminate = QObject::connect(application, &QCoreApplication::aboutToQuit,
                                           [this] { appWillTerminate(); });
        // Tests never quit the application; the thread must still stop before it is gone.
        m_applicationGone =
            QObject::connect(application, &QObject::destroyed, [this] { stopSending(); });
    }
}

SignalManager::~SignalManager()
{
    QObject::disconnect(m_willTerminate);
    QObject::disconnect(m_applicationGone);
    stopSending();
}

void SignalManager::stopSending()
{
    m_timerThread.quit();
    m_timerThread.wait();
    m_sender = nullptr; // deleted as its thread finished
}

void SignalManager::appWillTerminate()
{
    m_configuration->log(LogLevel::Debug, QStringLiteral("appWillTerminate()"));
    stopSending(); // a batch under way goes back first
    m_signalCache->backupCache();
}

void SignalManager::attemptToSendNextBatchOfCachedSignals()
{
    attemptToSendNextBatchOfCachedSignals(std::chrono::milliseconds(0));
}

void SignalManager::attemptToSendNextBatchOfCachedSignals(std::chrono::milliseconds delay)
{
    SignalSender *sender = m_sender;
    if (!sender)
        return;
    QMetaObject::invokeMethod(
        sender,
        [sender, delay] {
            QTimer::singleShot(delay, sender, &SignalSender::attemptToSendNextBatch);
        },
        Qt::QueuedConnection);
}

void SignalManager::processSignal(const QString &signalType,
                                  const QMap<QString, QString> &parameters,
                                  std::optional<double> floatValue,
                                  const std::optional<QString> &customUserID,
                                  std::shared_ptr<TelemetryManagerConfiguration> configuration)
{
    QMetaObject::invokeMethod(
        &m_mainThread,
        [=, this] {
            // The first signals wait for the desktop's settings, so that they report them.
            if (DesktopAccessibility *desktop = DesktopAccessibility::instance())
                desktop->whenRead(&m_mainThread, [=, this] {
                    buildRecord(signalType, parameters, floatValue, customUserID, configuration);
                });
        },
        Qt::QueuedConnection);
}

void SignalManager::buildRecord(const QString &signalType, const QMap<QString, QString> &parameters,
                                std::optional<double> floatValue,
                                const std::optional<QString> &customUserID,
                                const std::shared_ptr<TelemetryManagerConfiguration> &configuration)
{
    SignalSender *sender = m_sender;
    if (!sender)
        return; // the application is quitting
    // Read from the store once: it never changes, and the store is a file.
    if (m_defaultUser.isEmpty())
        m_defaultUser = defaultUserIdentifier(*configuration);
    const QString defaultUser = m_defaultUser;
    const QDateTime now = QDateTime::currentDateTime();
    QMap<QString, QString> moment = DefaultSignalPayload::momentParameters(now);
    if (m_retention)
        moment.insert(m_retention(now));
    QMetaObject::invokeMethod(
        sender,
        [=, cache = m_signalCache] {
            QMap<QString, QString> payload = DefaultSignalPayload::deviceParameters(*configuration);
            payload.insert(moment);
            for (const auto &enricher : configuration->metadataEnrichers.get())
                payload.insert(enricher->enrich(signalType, customUserID, floatValue));
            payload.insert(parameters); // the signal's own values win
            const QString user =
                customUserID.value_or(configuration->defaultUser.get().value_or(defaultUser));
            const SignalPostBody record{
                QDateTime::currentDateTimeUtc(),
                configuration->telemetryAppID,
                CryptoHashing::sha256(user, configuration->salt),
                configuration->sessionID().toString(QUuid::WithoutBraces).toUpper(),
                signalType,
                floatValue,
                payload,
                configuration->testMode() ? QStringLiteral("true") : QStringLiteral("false")};
            configuration->log(LogLevel::Debug,
                               QStringLiteral("Process signal: ") + record.description());
            cache->push(record);
        },
        Qt::QueuedConnection);
}

std::optional<QUrl> SignalManager::getServiceUrl(const QUrl &baseURL,
                                                 const std::optional<QString> &namespace_)
{
    QString text = baseURL.toString();
    if (!text.endsWith(u'/'))
        text += u'/';
    text += namespace_ && !namespace_->isEmpty()
                ? QStringLiteral("v2/namespace/") + *namespace_ + u'/'
                : QStringLiteral("v2/");
    const QUrl url(text, QUrl::StrictMode);
    if (!url.isValid() || url.isRelative())
        return std::nullopt;
    return url;
}

QString SignalManager::defaultUserIdentifier(const TelemetryManagerConfiguration &configuration)
{
    const std::unique_ptr<QSettings> store = configuration.store();
    const QString key = QStringLiteral("defaultUserIdentifier");
    QString identifier = store->value(key).toString();
    if (identifier.isEmpty()) {
        identifier = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
        store->setValue(key, identifier);
    }
    return identifier;
}
