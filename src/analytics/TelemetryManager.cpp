#include "TelemetryManager.h"

#include "CryptoHashing.h"
#include "ReservedNames.h"
#include "TelemetryManagerConfiguration.h"
#include "TelemetryManagerStorage.h"

#include <QCoreApplication>
#include <QThread>
#include <QTimer>

using namespace std::chrono_literals;

namespace {
constexpr qint64 syncThrottleSeconds = 10;
constexpr qint64 sessionContinuesSeconds = 300;
} // namespace

TelemetryManager::TelemetryManager(std::shared_ptr<TelemetryManagerConfiguration> configuration,
                                   Clock clock)
    : m_sessionManager(
          new SessionManager([configuration] { return configuration->store(); },
                             [this](const QString &name, const QMap<QString, QString> &parameters) {
                                 internalSignal(name, parameters);
                             }))
    , m_signalManager(std::make_shared<SignalManager>(
          configuration, [sessions = m_sessionManager.get()](
                             const QDateTime &now) { return sessions->retentionParameters(now); }))
    , m_durationSignalTracker(new DurationSignalTracker)
    , m_clock(std::move(clock))
    , m_configuration(std::move(configuration))
{
    // Their timers and activation follow the main thread's loop.
    if (const QCoreApplication *application = QCoreApplication::instance()) {
        m_sessionManager->moveToThread(application->thread());
        m_durationSignalTracker->moveToThread(application->thread());
    }
}

void TelemetryManager::DeleteOnOwnThread::operator()(QObject *object) const
{
    if (object->thread() == QThread::currentThread())
        delete object;
    else
        object->deleteLater();
}

std::shared_ptr<TelemetryManager>
TelemetryManager::create(std::shared_ptr<TelemetryManagerConfiguration> configuration, Clock clock)
{
    auto manager = std::make_shared<TelemetryManager>(configuration, std::move(clock));
    std::weak_ptr<TelemetryManager> weak = manager;
    configuration->onSessionBegan([weak] {
        if (const auto self = weak.lock())
            self->sessionBegan();
    });
    if (QCoreApplication *application = QCoreApplication::instance()) {
        QMetaObject::invokeMethod(
            application,
            [weak] {
                QTimer::singleShot(500ms, QCoreApplication::instance(), [weak] {
                    // Only while it is still the one in use: a replaced manager starts nothing.
                    const auto self = weak.lock();
                    if (self && TelemetryManagerStorage::manager() == self)
                        self->configuration()->setSessionID(QUuid::createUuid());
                });
            },
            Qt::QueuedConnection);
    }
    return manager;
}

void TelemetryManager::initialize(std::shared_ptr<TelemetryManagerConfiguration> configuration)
{
    TelemetryManagerStorage::setManager(create(std::move(configuration)));
}

void TelemetryManager::terminate()
{
    TelemetryManagerStorage::setManager(nullptr);
}

bool TelemetryManager::isInitialized()
{
    return TelemetryManagerStorage::manager() != nullptr;
}

std::shared_ptr<TelemetryManager> TelemetryManager::shared()
{
    if (auto manager = TelemetryManagerStorage::manager())
        return manager;
    if (qgetenv("XCODE_RUNNING_FOR_PREVIEWS") == "1") {
        auto manager = create(std::make_shared<TelemetryManagerConfiguration>(QString()));
        TelemetryManagerStorage::setManager(manager);
        return manager;
    }
    qFatal("TelemetryDeck: the analytics client was used before TelemetryDeck::initialize()");
}

void TelemetryManager::send(const QString &signalType, const QMap<QString, QString> &parameters)
{
    shared()->signal(signalType, parameters, std::nullopt, std::nullopt);
}

void TelemetryManager::send(const QString &signalType, const std::optional<QString> &clientUser,
                            std::optional<double> floatValue,
                            const QMap<QString, QString> &parameters)
{
    shared()->signal(signalType, parameters, floatValue, clientUser);
}

void TelemetryManager::requestImmediateSync()
{
    shared()->syncSoon();
}

void TelemetryManager::updateDefaultUser(const std::optional<QString> &user)
{
    shared()->configuration()->defaultUser.set(user);
}

void TelemetryManager::generateNewSession()
{
    shared()->configuration()->setSessionID(QUuid::createUuid());
}

void TelemetryManager::signal(const QString &signalName, const QMap<QString, QString> &parameters,
                              std::optional<double> floatValue,
                              const std::optional<QString> &customUserID)
{
    const auto config = configuration();
    if (config->swiftUIPreviewMode() || config->analyticsDisabled.get())
        return;
    const QString name = config->defaultSignalPrefix.get().value_or(QString()) + signalName;
    const QMap<QString, QString> prefixed = ReservedNames::withParameterPrefix(
        parameters, config->defaultParameterPrefix.get().value_or(QString()));
    if (config->reservedParameterWarningsEnabled.get()) {
        ReservedNames::warnOfSignalName(*config, name);
        ReservedNames::warnOfKeys(*config, prefixed);
    }
    internalSignal(name, prefixed, floatValue, customUserID);
}

void TelemetryManager::internalSignal(const QString &signalName,
                                      const QMap<QString, QString> &parameters,
                                      std::optional<double> floatValue,
                                      const std::optional<QString> &customUserID)
{
    const auto config = configuration();
    if (config->swiftUIPreviewMode() || config->analyticsDisabled.get())
        return;
    QMap<QString, QString> merged = ReservedNames::withParameterPrefix(
        config->defaultParameters.get()(),
        config->defaultParameterPrefix.get().value_or(QString()));
    // Checked whether or not reserved-name warnings are on.
    ReservedNames::warnOfKeys(*config, merged);
    merged.insert(parameters);
    m_signalManager->processSignal(signalName, merged, floatValue, customUserID, config);
}

void TelemetryManager::sessionBegan()
{
    const auto config = configuration();
    if (config->sessionStatsEnabled.get())
        m_sessionManager->startNewSession();
    if (config->sendNewSessionBeganSignal.get())
        internalSignal(QStringLiteral("TelemetryDeck.Session.started"));
}

std::shared_ptr<TelemetryManagerConfiguration> TelemetryManager::configuration() const
{
    std::lock_guard locker(m_lock);
    return m_configuration;
}

QString TelemetryManager::hashedDefaultUser() const
{
    const auto config = configuration();
    return CryptoHashing::sha256(config->defaultUser.get().value_or(QString()), config->salt);
}

void TelemetryManager::syncSoon()
{
    const QDateTime now = m_clock();
    {
        std::lock_guard locker(m_lock);
        if (m_lastTimeImmediateSyncRequested.isValid() &&
            m_lastTimeImmediateSyncRequested.msecsTo(now) <= syncThrottleSeconds * 1000)
            return;
        m_lastTimeImmediateSyncRequested = now;
    }
    m_signalManager->attemptToSendNextBatchOfCachedSignals(50ms);
}

void TelemetryManager::willEnterForeground()
{
    bool newSession = false;
    {
        std::lock_guard locker(m_lock);
        newSession = !m_lastDateAppEnteredBackground.isValid() ||
                     m_lastDateAppEnteredBackground.secsTo(m_clock()) > sessionContinuesSeconds;
    }
    if (newSession)
        configuration()->setSessionID(QUuid::createUuid());
}

void TelemetryManager::didEnterBackground()
{
    const QDateTime now = m_clock();
    std::lock_guard locker(m_lock);
    m_lastDateAppEnteredBackground = now;
}
