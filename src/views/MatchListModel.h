#pragma once

#include "ZelMatch.h"

#include <QAbstractListModel>
#include <QLocale>
#include <QTimeZone>
#include <QtQml/qqmlregistration.h>

// One of the popover's lists as rows for a ListView, every text already decided by the
// presenters. Results and fixtures come in day sections (the sectionTitle role). Each row also
// keeps what the user did with it (opened, an innings picked) for as long as its match is in
// the list: delegates scrolled out of view are destroyed, and the row's state must outlive them.
class MatchListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")

public:
    enum class Kind { Today, Results, Fixtures };
    enum Role {
        MatchKeyRole = Qt::UserRole + 1,
        StatusRole,
        StatusIconRole,
        CentreTextRole,
        CentreSubTextRole,
        IsLiveRole,
        OpensOnTapRole,
        HomeCodeRole,
        AwayCodeRole,
        HomeNameRole,
        AwayNameRole,
        HomeLogoRole,
        AwayLogoRole,
        ScoresTextRole,
        MatchOrderRole,
        DisplayTimeRole,
        VenueTextRole,
        GroundAndCityRole,
        CommentsRole,
        TossTextRole,
        SectionTitleRole,
        HomeFavouriteRole,
        AwayFavouriteRole,
        ExpandedRole,
        ChosenInningsRole,
        SpokenTextRole,
    };

    // Clock times are in the user's current time zone, whatever it was at start.
    MatchListModel(Kind kind, QString serviceURL, QLocale locale = QLocale::system(),
                   QObject *parent = nullptr);

    // Row texts come from the network; past this they are cut before QML lays them out.
    static constexpr qsizetype maximumTextLength = 160;

    void setMatches(const QList<ZelMatch> &matches);
    // The favourite team's side of each match carries a mark; empty: no favourite.
    void setFavouriteTeam(const QString &teamID);
    // The user's time zone changed: every clock time is told again.
    void timeZoneChanged();
    const ZelMatch *matchWithID(qint64 matchID) const;

    // Opening a row forgets an innings picked before, so that it opens on the rule's innings.
    Q_INVOKABLE void setExpanded(int row, bool expanded);
    // -1: the rule's innings (the one in progress while live); 0 or 1: the user's pick.
    Q_INVOKABLE void chooseInnings(int row, int innings);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    bool isFavourite(const QString &teamID) const
    {
        return !m_favouriteTeamID.isEmpty() && teamID == m_favouriteTeamID;
    }

    struct Row {
        ZelMatch match;
        QString sectionTitle;
        bool expanded = false;
        int chosenInnings = -1;
    };
    QVariant roleData(const Row &row, int role) const;
    void update(const QList<Row> &next);

    Kind m_kind;
    QString m_serviceURL;
    QLocale m_locale;
    QString m_favouriteTeamID;
    QList<Row> m_rows;
};
