#pragma once

#include "MatchListModel.h"
#include "TodayPresenter.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <QVariantMap>

class TodayViewModel;

// What the popover's QML binds to: the selected tab with its switching rule, the three lists,
// each tab's state and message, and the scorecard of an opened row. Calls with a revision
// argument are re-evaluated by QML whenever the state object changes.
class PopoverController : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(int activeTab READ activeTab WRITE setActiveTab NOTIFY activeTabChanged)
    Q_PROPERTY(MatchListModel *todayModel READ todayModel CONSTANT)
    Q_PROPERTY(MatchListModel *resultsModel READ resultsModel CONSTANT)
    Q_PROPERTY(MatchListModel *fixturesModel READ fixturesModel CONSTANT)
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(int revision READ revision NOTIFY revisionChanged)

public:
    enum Tab { Results, Today, Fixtures };
    Q_ENUM(Tab)
    enum Content { Loading, Error, List, Empty };
    Q_ENUM(Content)

    PopoverController(TodayViewModel &vm, const QString &serviceURL, QObject *parent = nullptr);

    int activeTab() const { return m_activeTab; }
    void setActiveTab(int tab);
    MatchListModel *todayModel() { return &m_today; }
    MatchListModel *resultsModel() { return &m_results; }
    MatchListModel *fixturesModel() { return &m_fixtures; }
    QString title() const;
    int revision() const { return m_revision; }

    Q_INVOKABLE int content(int tab, int revision) const;
    Q_INVOKABLE QString message(int tab, int revision) const;
    Q_INVOKABLE QString todayLabel(int revision) const;
    // "Updated 19:42", or "Offline · Updated 19:42" while today's data is out of date.
    Q_INVOKABLE QString updatedLabel(int revision) const;
    // Why it is out of date; empty while it is not.
    Q_INVOKABLE QString offlineReason(int revision) const;

    // Called as the popover opens: clock times follow a change of the user's time zone.
    void followTimeZone();

    Q_INVOKABLE void refresh();
    Q_INVOKABLE void retry(int tab);
    // Return on a tab that shows an error retries it; false when the tab shows no error.
    Q_INVOKABLE bool retryIfFailed();
    // A row opened (or a live row came on screen): load its scorecard unless it is cached.
    Q_INVOKABLE void scorecardWanted(qint64 matchID);

    // "loading", "error" (with "error"), "card" or "none".
    Q_INVOKABLE QVariantMap scorecardContent(qint64 matchID, int revision) const;
    Q_INVOKABLE int initialInnings(qint64 matchID) const;
    // The tab labels, and either "yetToBat" (name, logo) or the innings' total and tables.
    Q_INVOKABLE QVariantMap inningsView(qint64 matchID, int selectedInnings, int revision) const;

signals:
    void activeTabChanged();
    void revisionChanged();

private:
    const ZelMatch *findMatch(qint64 matchID) const;
    void bump();

    TodayViewModel &m_vm;
    QString m_serviceURL;
    MatchListModel m_today;
    MatchListModel m_results;
    MatchListModel m_fixtures;
    int m_activeTab = Today;
    int m_revision = 0;
    QByteArray m_timeZone = QTimeZone::systemTimeZoneId();
};
