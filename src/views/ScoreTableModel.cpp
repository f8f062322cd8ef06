#include "ScoreTableModel.h"

int ScoreTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant ScoreTableModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Row &row = m_rows.at(index.row());
    switch (Role(role)) {
    case NameRole:
        return row.name;
    case FiguresRole:
        return row.figures;
    case StrongRole:
        return row.strong;
    case DimRole:
        return row.dim;
    case PlaceholderRole:
        return row.placeholder;
    case SpokenRole:
        return row.spoken;
    case TookWicketsRole:
        return row.tookWickets;
    }
    return {};
}

QHash<int, QByteArray> ScoreTableModel::roleNames() const
{
    return {
        {NameRole, "name"},    {FiguresRole, "figures"},         {StrongRole, "strong"},
        {DimRole, "dim"},      {PlaceholderRole, "placeholder"}, {TookWicketsRole, "tookWickets"},
        {SpokenRole, "spoken"}};
}

void ScoreTableModel::setRows(QList<Row> rows)
{
    if (rows == m_rows)
        return;
    // Lines come and go at the end (the next batter in, a new bowler on); the lines that stay
    // change in place, so that their delegates, and the keyboard focus on one, stay too.
    const int kept = int(qMin(rows.size(), m_rows.size()));
    if (rows.size() < m_rows.size()) {
        beginRemoveRows({}, kept, int(m_rows.size()) - 1);
        m_rows.resize(kept);
        endRemoveRows();
    }
    for (int row = 0; row < kept; ++row)
        m_rows[row] = rows[row];
    if (kept > 0)
        emit dataChanged(index(0), index(kept - 1));
    if (rows.size() > kept) {
        beginInsertRows({}, kept, int(rows.size()) - 1);
        m_rows.append(rows.mid(kept));
        endInsertRows();
    }
}
