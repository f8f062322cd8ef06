#pragma once

#include "MatchListModel.h"
#include "PopoverTab.h"
#include "SettingsController.h"
#include "TodayPresenter.h"

#include <memory>
#include <QObject>
#include <QtQml/qqmlregistration.h>

class Preferences;
class TodayViewModel;

// What the popover's QML binds to: the header's texts, the selected tab with its switching
// rule, the three tabs with their lists and states, and the settings page where there are
// preferences to show. Opened rows read their scorecards through a ScorecardModel each. The
// state object behind it is the TodayViewModel.
class PopoverController : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(Popover::Tab activeTab READ activeTab WRITE setActiveTab NOTIFY activeTabChanged)
    Q_PROPERTY(PopoverTab *resultsTab READ resultsTab CONSTANT)
    Q_PROPERTY(PopoverTab *todayTab READ todayTab CONSTANT)
    Q_PROPERTY(PopoverTab *fixturesTab READ fixturesTab CONSTANT)
    Q_PROPERTY(QStringList tabLabels READ tabLabels CONSTANT)
    Q_PROPERTY(QString title READ title CONSTANT)
    // Right-to-left languages, or -reverse: the popover mirrors.
    Q_PROPERTY(bool mirrored READ mirrored CONSTANT)
    Q_PROPERTY(QString todayLabel READ todayLabel NOTIFY headerChanged)
    Q_PROPERTY(QString updatedLabel READ updatedLabel NOTIFY headerChanged)
    Q_PROPERTY(QString offlineReason READ offlineReason NOTIFY headerChanged)
    Q_PROPERTY(SettingsController *settings READ settings CONSTANT)
    Q_PROPERTY(bool settingsOpen READ settingsOpen WRITE setSettingsOpen NOTIFY settingsOpenChanged)

public:
    // Without preferences there is no settings page.
    PopoverController(TodayViewModel &vm, const QString &serviceURL,
                      Preferences *preferences = nullptr,
                      SettingsController::LoginSwitch login = {}, QObject *parent = nullptr);

    Popover::Tab activeTab() const { return m_activeTab; }
    void setActiveTab(Popover::Tab tab);
    PopoverTab *resultsTab() { return &m_resultsTab; }
    PopoverTab *todayTab() { return &m_todayTab; }
    PopoverTab *fixturesTab() { return &m_fixturesTab; }
    PopoverTab &tab(Popover::Tab tab);
    MatchListModel *todayModel() { return &m_today; }
    MatchListModel *resultsModel() { return &m_results; }
    MatchListModel *fixturesModel() { return &m_fixtures; }
    QStringList tabLabels() const;
    QString title() const;
    static bool mirrored();
    // "Monday, 16 November 2026", in the user's time zone.
    QString todayLabel() const;
    // "Updated 19:42", or "Offline · Updated 19:42" while today's data is out of date.
    QString updatedLabel() const;
    // Why it is out of date; empty while it is not.
    QString offlineReason() const;
    SettingsController *settings() { return m_settings.get(); }
    bool settingsOpen() const { return m_settingsOpen; }
    void setSettingsOpen(bool open);
    const TodayViewModel &viewModel() const { return m_vm; }
    const QString &serviceURL() const { return m_serviceURL; }
    // A row of today's or the results' list.
    const ZelMatch *findMatch(qint64 matchID) const;

    // Called as the popover opens: the date and the clock times follow the user's current day
    // and time zone.
    void opening();

    Q_INVOKABLE void refresh();
    Q_INVOKABLE void retry(Popover::Tab tab);
    // Return on a tab that shows an error retries it; false when the tab shows no error.
    Q_INVOKABLE bool retryIfFailed();
    // A row opened (or a live row came on screen): load its scorecard unless it is cached.
    Q_INVOKABLE void scorecardWanted(const QString &matchKey);
    // What a screen reader hears as the popover comes up: the tab, the title in words and
    // how fresh the data is.
    Q_INVOKABLE QString headline() const;
    // Says the text to a screen reader without moving the focus.
    Q_INVOKABLE void announce(const QString &text) { emit announcement(text); }

signals:
    void activeTabChanged();
    void headerChanged();
    void settingsOpenChanged();
    // A scorecard, its loading or error state, or the match it belongs to changed.
    void scorecardsChanged();
    void announcement(const QString &text);

private:
    void showTabs();
    void showFavourite();
    // Once a refresh the user asked for has settled: when the data is from, or why it is old.
    void announceRefreshed();

    TodayViewModel &m_vm;
    QString m_serviceURL;
    MatchListModel m_today;
    MatchListModel m_results;
    MatchListModel m_fixtures;
    PopoverTab m_resultsTab;
    PopoverTab m_todayTab;
    PopoverTab m_fixturesTab;
    Preferences *m_preferences;
    std::unique_ptr<SettingsController> m_settings;
    bool m_refreshAsked = false;
    bool m_settingsOpen = false;
    Popover::Tab m_activeTab = Popover::Tab::Today;
    QByteArray m_timeZone = QTimeZone::systemTimeZoneId();
};
