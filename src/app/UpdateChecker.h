#pragma once

#include "APIClient.h"
#include "AppcastFeed.h"

#include <chrono>
#include <QDateTime>
#include <QObject>
#include <QTimer>

// What a look at the update feed found.
struct UpdateCheck {
    enum Outcome { UpToDate, NewerVersion, Failed };
    Outcome outcome = Failed;
    QString version; // the newest version, for NewerVersion
    QUrl page;       // its page, when the feed names one
    QString error;   // for Failed
};

// Looks at the update feed once a day, across launches (the day counts from the last scheduled
// look, kept in a small file), and on demand from the menu. Every result is reported through
// checked(); a newer version that a scheduled look finds is announced once per version through
// newerVersionFound(). Nothing here pops up.
class UpdateChecker : public QObject {
    Q_OBJECT

public:
    // The file that remembers the last scheduled look and the last version announced.
    static QString defaultStampPath();

    UpdateChecker(QString feedURL, QString currentVersion, QString stampPath = defaultStampPath(),
                  QObject *parent = nullptr);

    void startSchedule();
    void check();
    void scheduledCheck();

    static UpdateCheck compare(const Result<AppcastRelease> &newest, const QString &current);
    // How long to wait for the next scheduled look: a day after the last one, never sooner than
    // a few seconds after start, so as not to compete with the first score loads.
    static std::chrono::milliseconds untilScheduledCheck(const QDateTime &lastCheck,
                                                         const QDateTime &now);

signals:
    void checked(const UpdateCheck &result);
    void newerVersionFound(const UpdateCheck &result);

private:
    void look(bool scheduled);

    QString m_feedURL;
    QString m_currentVersion;
    QString m_stampPath;
    APIClient m_client;
    QTimer m_schedule;
    bool m_checking = false;
    bool m_scheduledPending = false;
};
