#include "MatchListModel.h"

#include "DisplayText.h"
#include "MatchRowPresenter.h"
#include "SpacesAndTabs.h"
#include "TodayPresenter.h"

MatchListModel::MatchListModel(Kind kind, QString serviceURL, QTimeZone zone, QLocale locale,
                               QObject *parent)
    : QAbstractListModel(parent)
    , m_kind(kind)
    , m_serviceURL(std::move(serviceURL))
    , m_zone(std::move(zone))
    , m_locale(std::move(locale))
{
}

void MatchListModel::setMatches(const QList<ZelMatch> &matches)
{
    beginResetModel();
    m_rows.clear();
    if (m_kind == Kind::Today) {
        for (const ZelMatch &match : matches)
            m_rows.append({match, QString()});
    } else {
        const bool ascending = m_kind == Kind::Fixtures;
        for (const auto &group : TodayPresenter::grouped(matches, ascending)) {
            const QString title = TodayPresenter::formatDate(group.date, m_locale);
            for (const ZelMatch &match : group.matches)
                m_rows.append({match, title});
        }
    }
    endResetModel();
}

const ZelMatch *MatchListModel::matchWithID(qint64 matchID) const
{
    for (const Row &row : m_rows) {
        if (row.match.matchID == matchID)
            return &row.match;
    }
    return nullptr;
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
    const auto logo = [this](const QString &text) {
        return ZelMatch::logoURL(text, m_serviceURL).value_or(QUrl());
    };
    switch (Role(role)) {
    case MatchIdRole:
        return m.matchID;
    case StatusRole:
        return m.matchStatus;
    case StatusIconRole:
        return MatchRowPresenter::statusIcon(m);
    case CentreTextRole:
        return MatchRowPresenter::centreText(m, m_zone, m_locale);
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
        return logo(m.homeTeamLogo);
    case AwayLogoRole:
        return logo(m.awayTeamLogo);
    case ScoresTextRole:
        return MatchRowPresenter::scoresText(m);
    case MatchOrderRole:
        return m.matchOrder;
    case DisplayTimeRole:
        return MatchRowPresenter::displayTime(m, m_zone, m_locale);
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
    }
    return {};
}

QHash<int, QByteArray> MatchListModel::roleNames() const
{
    return {{MatchIdRole, "matchId"},
            {StatusRole, "status"},
            {StatusIconRole, "statusIcon"},
            {CentreTextRole, "centreText"},
            {CentreSubTextRole, "centreSubText"},
            {IsLiveRole, "isLive"},
            {OpensOnTapRole, "opensOnTap"},
            {HomeCodeRole, "homeCode"},
            {AwayCodeRole, "awayCode"},
            {HomeNameRole, "homeName"},
            {AwayNameRole, "awayName"},
            {HomeLogoRole, "homeLogo"},
            {AwayLogoRole, "awayLogo"},
            {ScoresTextRole, "scoresText"},
            {MatchOrderRole, "matchOrder"},
            {DisplayTimeRole, "displayTime"},
            {VenueTextRole, "venueText"},
            {GroundAndCityRole, "groundAndCity"},
            {CommentsRole, "comments"},
            {TossTextRole, "tossText"},
            {SectionTitleRole, "sectionTitle"}};
}
