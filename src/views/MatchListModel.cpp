#include "MatchListModel.h"

#include "DisplayText.h"
#include "MatchRowPresenter.h"
#include "SpacesAndTabs.h"
#include "TodayPresenter.h"

MatchListModel::MatchListModel(Kind kind, QString serviceURL, QLocale locale, QObject *parent)
    : QAbstractListModel(parent)
    , m_kind(kind)
    , m_serviceURL(std::move(serviceURL))
    , m_locale(std::move(locale))
{
}

void MatchListModel::setFavouriteTeam(const QString &teamID)
{
    if (teamID == m_favouriteTeamID)
        return;
    m_favouriteTeamID = teamID;
    if (!m_rows.isEmpty())
        emit dataChanged(index(0), index(int(m_rows.size()) - 1),
                         {HomeFavouriteRole, AwayFavouriteRole, SpokenTextRole});
}

void MatchListModel::timeZoneChanged()
{
    if (!m_rows.isEmpty())
        emit dataChanged(index(0), index(int(m_rows.size()) - 1),
                         {CentreTextRole, DisplayTimeRole, SpokenTextRole});
}

void MatchListModel::setMatches(const QList<ZelMatch> &matches)
{
    QList<Row> next;
    next.reserve(matches.size());
    if (m_kind == Kind::Today) {
        for (const ZelMatch &match : matches)
            next.append({match, QString()});
    } else {
        const bool ascending = m_kind == Kind::Fixtures;
        for (const auto &group : TodayPresenter::grouped(matches, ascending)) {
            const QString title = TodayPresenter::formatDate(group.date, m_locale);
            for (const ZelMatch &match : group.matches)
                next.append({match, title});
        }
    }
    update(next);
}

// Brings the rows to the new list match by match, so that a row whose match stays keeps its
// delegate (an opened row stays open, the list keeps its place) and only a match that leaves
// takes its row with it.
void MatchListModel::update(const QList<Row> &next)
{
    QHash<qint64, qsizetype> wanted; // identity -> how many rows of it the new list has
    for (const Row &row : next)
        ++wanted[row.match.matchID];
    QHash<qint64, qsizetype> kept;
    for (qsizetype i = m_rows.size() - 1; i >= 0; --i) {
        const qint64 id = m_rows[i].match.matchID;
        if (kept[id] < wanted.value(id)) {
            ++kept[id];
            continue;
        }
        beginRemoveRows({}, int(i), int(i));
        m_rows.removeAt(i);
        endRemoveRows();
    }

    for (qsizetype i = 0; i < next.size(); ++i) {
        const qint64 id = next[i].match.matchID;
        qsizetype found = -1;
        for (qsizetype j = i; j < m_rows.size(); ++j) {
            if (m_rows[j].match.matchID == id) {
                found = j;
                break;
            }
        }
        if (found < 0) {
            // A today match that is live when it comes opens at once.
            Row row = next[i];
            row.expanded = m_kind == Kind::Today && row.match.isLive();
            beginInsertRows({}, int(i), int(i));
            m_rows.insert(i, std::move(row));
            endInsertRows();
            continue;
        }
        if (found != i) {
            beginMoveRows({}, int(found), int(found), {}, int(i));
            m_rows.move(found, i);
            endMoveRows();
        }
        Row &row = m_rows[i];
        if (!(row.match == next[i].match) || row.sectionTitle != next[i].sectionTitle) {
            // One that goes live opens, once: closed again by the user it stays closed. A row
            // never closes by itself, so a finished match keeps its final scorecard open.
            if (m_kind == Kind::Today && next[i].match.isLive() && !row.match.isLive())
                row.expanded = true;
            row.match = next[i].match;
            row.sectionTitle = next[i].sectionTitle;
            emit dataChanged(index(int(i)), index(int(i)));
        }
    }
}

const ZelMatch *MatchListModel::matchWithID(qint64 matchID) const
{
    for (const Row &row : m_rows) {
        if (row.match.matchID == matchID)
            return &row.match;
    }
    return nullptr;
}

void MatchListModel::setExpanded(int row, bool expanded)
{
    if (row < 0 || row >= m_rows.size() || m_rows[row].expanded == expanded)
        return;
    m_rows[row].expanded = expanded;
    if (expanded)
        m_rows[row].chosenInnings = -1;
    emit dataChanged(index(row), index(row), {ExpandedRole, ChosenInningsRole});
}

void MatchListModel::chooseInnings(int row, int innings)
{
    if (row < 0 || row >= m_rows.size() || m_rows[row].chosenInnings == innings)
        return;
    m_rows[row].chosenInnings = innings;
    emit dataChanged(index(row), index(row), {ChosenInningsRole});
}

int MatchListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant MatchListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    QVariant value = roleData(m_rows[index.row()], role);
    if (value.typeId() == QMetaType::QString)
        return boundedForDisplay(value.toString(), maximumTextLength);
    return value;
}

QVariant MatchListModel::roleData(const Row &row, int role) const
{
    const ZelMatch &m = row.match;
    switch (Role(role)) {
    case MatchKeyRole:
        return QString::number(m.matchID); // a QML number would round identifiers past 2^53
    case StatusRole:
        return m.matchStatus;
    case StatusIconRole:
        return MatchRowPresenter::statusIcon(m);
    case CentreTextRole:
        return MatchRowPresenter::centreText(m, QTimeZone::systemTimeZone(), m_locale);
    case CentreSubTextRole:
        return MatchRowPresenter::centreSubText(m).value_or(QString());
    case IsLiveRole:
        return m.isLive();
    case OpensOnTapRole:
        return m_kind == Kind::Results || MatchRowPresenter::opensOnTap(m);
    case HomeCodeRole:
        return m.homeTeamCode();
    case AwayCodeRole:
        return m.awayTeamCode();
    case HomeNameRole:
        return m.homeTeamName;
    case AwayNameRole:
        return m.awayTeamName;
    case HomeLogoRole:
        return m.homeTeamLogoURL(m_serviceURL).value_or(QUrl());
    case AwayLogoRole:
        return m.awayTeamLogoURL(m_serviceURL).value_or(QUrl());
    case ScoresTextRole:
        return MatchRowPresenter::scoresText(m);
    case MatchOrderRole:
        return m.matchOrder;
    case DisplayTimeRole:
        return MatchRowPresenter::displayTime(m, QTimeZone::systemTimeZone(), m_locale);
    case VenueTextRole:
        return MatchRowPresenter::venueText(m);
    case GroundAndCityRole:
        return m.groundName + QStringLiteral(", ") + m.city;
    case CommentsRole:
        return trimSpacesAndTabs(m.comments);
    case TossTextRole:
        return m.formattedTossDetails();
    case SectionTitleRole:
        return row.sectionTitle;
    case HomeFavouriteRole:
        return isFavourite(m.homeTeamID);
    case AwayFavouriteRole:
        return isFavourite(m.awayTeamID);
    case ExpandedRole:
        return row.expanded;
    case ChosenInningsRole:
        return row.chosenInnings;
    case SpokenTextRole: {
        // The star on a badge, in words.
        const QString spoken =
            MatchRowPresenter::spokenText(m, QTimeZone::systemTimeZone(), m_locale);
        return isFavourite(m.homeTeamID) || isFavourite(m.awayTeamID)
                   ? tr("%1, your team").arg(spoken)
                   : spoken;
    }
    }
    return {};
}

QHash<int, QByteArray> MatchListModel::roleNames() const
{
    return {{MatchKeyRole, "matchKey"},           {StatusRole, "status"},
            {StatusIconRole, "statusIcon"},       {CentreTextRole, "centreText"},
            {CentreSubTextRole, "centreSubText"}, {IsLiveRole, "isLive"},
            {OpensOnTapRole, "opensOnTap"},       {HomeCodeRole, "homeCode"},
            {AwayCodeRole, "awayCode"},           {HomeNameRole, "homeName"},
            {AwayNameRole, "awayName"},           {HomeLogoRole, "homeLogo"},
            {AwayLogoRole, "awayLogo"},           {ScoresTextRole, "scoresText"},
            {MatchOrderRole, "matchOrder"},       {DisplayTimeRole, "displayTime"},
            {VenueTextRole, "venueText"},         {GroundAndCityRole, "groundAndCity"},
            {CommentsRole, "comments"},           {TossTextRole, "tossText"},
            {SectionTitleRole, "sectionTitle"},   {HomeFavouriteRole, "homeFavourite"},
            {AwayFavouriteRole, "awayFavourite"}, {ExpandedRole, "expanded"},
            {ChosenInningsRole, "chosenInnings"}, {SpokenTextRole, "spokenText"}};
}
