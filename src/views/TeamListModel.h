#pragma once

#include "TeamInfo.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

// The teams the settings page offers as the favourite, "None" first, each with its badge.
class TeamListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")

public:
    enum Role { TeamIDRole = Qt::UserRole + 1, NameRole, CodeRole, LogoRole, ChosenRole };

    explicit TeamListModel(QString serviceURL, QObject *parent = nullptr);

    void setTeams(const QList<TeamInfo> &teams, const QString &chosenID);
    const TeamInfo *team(const QString &teamID) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    QString m_serviceURL;
    QList<TeamInfo> m_teams; // the first is "None"
    QString m_chosenID;
};
