#pragma once

#include "APIClient.h"
#include "AppcastFeed.h"

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

// Looks at the update feed soon after start and then once a day, quietly, and on demand from
// the menu. Results are only reported through checked(); nothing here pops up.
class UpdateChecker : public QObject {
    Q_OBJECT

public:
    UpdateChecker(QString feedURL, QString currentVersion, QObject *parent = nullptr);

    void startSchedule();
    void check();

    static UpdateCheck compare(const Result<AppcastRelease> &newest, const QString &current);

signals:
    void checked(const UpdateCheck &result);

private:
    QString m_feedURL;
    QString m_currentVersion;
    APIClient m_client;
    QTimer m_schedule;
    bool m_checking = false;
};
