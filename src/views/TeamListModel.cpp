#include "TeamListModel.h"

#include "DisplayText.h"
#include "ZelMatch.h"

TeamListModel::TeamListModel(QString serviceURL, QObject *parent)
    : QAbstractListModel(parent)
    , m_serviceURL(std::move(serviceURL))
    , m_teams{TeamInfo{{}, tr("None"), {}, {}}}
{
}

void TeamListModel::setTeams(const QList<TeamInfo> &teams, const QString &chosenID)
{
    beginResetModel();
    m_teams.resize(1);
    m_teams.append(teams);
    m_chosenID = chosenID;
    endResetModel();
}

const TeamInfo *TeamListModel::team(const QString &teamID) const
{
    for (const TeamInfo &team : m_teams) {
        if (team.id == teamID)
            return &team;
    }
    return nullptr;
}

int TeamListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_teams.size());
}

QVariant TeamListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const TeamInfo &team = m_teams[index.row()];
    switch (Role(role)) {
    case TeamIDRole:
        return team.id;
    case NameRole:
        return boundedForDisplay(team.name, 60);
    case CodeRole:
        return boundedForDisplay(team.code, 8);
    case LogoRole:
        return ZelMatch::logoURL(team.logo, m_serviceURL).value_or(QUrl());
    case ChosenRole:
        return team.id == m_chosenID;
    }
    return {};
}

QHash<int, QByteArray> TeamListModel::roleNames() const
{
    return {{TeamIDRole, "teamID"},
            {NameRole, "name"},
            {CodeRole, "code"},
            {LogoRole, "logo"},
            {ChosenRole, "chosen"}};
}
