#include "UpdateChecker.h"

#include <QLoggingCategory>

using namespace std::chrono_literals;

namespace {
Q_LOGGING_CATEGORY(lcUpdates, "zel.updates")
// Late enough not to compete with the first score loads.
constexpr auto firstCheck = 10s;
constexpr auto daily = 24h;
// A feed lists a few releases; anything much larger is not one.
constexpr qint64 feedLimit = 1024 * 1024;
} // namespace

UpdateChecker::UpdateChecker(QString feedURL, QString currentVersion, QObject *parent)
    : QObject(parent)
    , m_feedURL(std::move(feedURL))
    , m_currentVersion(std::move(currentVersion))
    , m_client(m_feedURL)
{
    connect(&m_schedule, &QTimer::timeout, this, [this] {
        m_schedule.start(daily);
        check();
    });
}

void UpdateChecker::startSchedule()
{
    m_schedule.start(firstCheck);
}

void UpdateChecker::check()
{
    if (m_checking)
        return;
    m_checking = true;
    m_client.get(m_feedURL, feedLimit, [this](Result<QByteArray> body) {
        m_checking = false;
        const UpdateCheck result =
            body.isOk() ? compare(AppcastFeed::newest(body.value()), m_currentVersion)
                        : UpdateCheck{UpdateCheck::Failed, {}, {}, body.error().description};
        if (result.outcome == UpdateCheck::NewerVersion)
            qCInfo(lcUpdates) << "version" << result.version << "is available";
        else if (result.outcome == UpdateCheck::Failed)
            qCInfo(lcUpdates) << "update check failed:" << result.error;
        emit checked(result);
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
