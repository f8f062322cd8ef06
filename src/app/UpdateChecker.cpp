#include "UpdateChecker.h"

#include <QLoggingCategory>
#include <QSettings>
#include <QStandardPaths>

using namespace std::chrono_literals;

namespace {
Q_LOGGING_CATEGORY(lcUpdates, "zel.updates")
// Late enough not to compete with the first score loads.
constexpr auto firstCheck = 10s;
constexpr auto daily = 24h;
// A feed lists a few releases; anything much larger is not one.
constexpr qint64 feedLimit = 1024 * 1024;
const QString lastCheckKey = QStringLiteral("lastScheduledCheck");
const QString announcedKey = QStringLiteral("lastAnnouncedVersion");
} // namespace

QString UpdateChecker::defaultStampPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/ZelMenuBar/updates.ini");
}

UpdateChecker::UpdateChecker(QString feedURL, QString currentVersion, QString stampPath,
                             QObject *parent)
    : QObject(parent)
    , m_feedURL(std::move(feedURL))
    , m_currentVersion(std::move(currentVersion))
    , m_stampPath(std::move(stampPath))
    , m_client(m_feedURL)
{
    m_schedule.setSingleShot(true);
    connect(&m_schedule, &QTimer::timeout, this, &UpdateChecker::scheduledCheck);
}

std::chrono::milliseconds UpdateChecker::untilScheduledCheck(const QDateTime &lastCheck,
                                                             const QDateTime &now)
{
    if (!lastCheck.isValid() || lastCheck > now)
        return firstCheck;
    const std::chrono::milliseconds due(
        now.msecsTo(lastCheck.addMSecs(std::chrono::milliseconds(daily).count())));
    return std::max<std::chrono::milliseconds>(due, firstCheck);
}

void UpdateChecker::startSchedule()
{
    const QDateTime last =
        QSettings(m_stampPath, QSettings::IniFormat).value(lastCheckKey).toDateTime();
    m_schedule.start(untilScheduledCheck(last, QDateTime::currentDateTimeUtc()));
}

void UpdateChecker::check()
{
    look(false);
}

void UpdateChecker::scheduledCheck()
{
    QSettings(m_stampPath, QSettings::IniFormat)
        .setValue(lastCheckKey, QDateTime::currentDateTimeUtc());
    m_schedule.start(daily);
    look(true);
}

void UpdateChecker::look(bool scheduled)
{
    m_scheduledPending = m_scheduledPending || scheduled;
    if (m_checking)
        return;
    m_checking = true;
    m_client.get(m_feedURL, feedLimit, [this](Result<QByteArray> body) {
        m_checking = false;
        const bool announce = std::exchange(m_scheduledPending, false);
        const UpdateCheck result =
            body.isOk() ? compare(AppcastFeed::newest(body.value()), m_currentVersion)
                        : UpdateCheck{UpdateCheck::Failed, {}, {}, body.error().description};
        if (result.outcome == UpdateCheck::NewerVersion)
            qCInfo(lcUpdates) << "version" << result.version << "is available";
        else if (result.outcome == UpdateCheck::Failed)
            qCInfo(lcUpdates) << "update check failed:" << result.error;
        emit checked(result);
        if (announce && result.outcome == UpdateCheck::NewerVersion) {
            QSettings stamp(m_stampPath, QSettings::IniFormat);
            if (stamp.value(announcedKey).toString() != result.version) {
                stamp.setValue(announcedKey, result.version);
                emit newerVersionFound(result);
            }
        }
    });
}

UpdateCheck UpdateChecker::compare(const Result<AppcastRelease> &newest, const QString &current)
{
    if (!newest.isOk())
        return {UpdateCheck::Failed, {}, {}, newest.error().description};
    const AppcastRelease &release = newest.value();
    // normalized(): 1.4.0 is the same release as 1.4.
    if (QVersionNumber::fromString(release.version).normalized() <=
        QVersionNumber::fromString(current).normalized())
        return {UpdateCheck::UpToDate, release.version, release.page, {}};
    return {UpdateCheck::NewerVersion, release.version, release.page, {}};
}
