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
    case SpokenPlaceholderRole:
        return row.spokenPlaceholder;
    case TookWicketsRole:
        return row.tookWickets;
    }
    return {};
}

QHash<int, QByteArray> ScoreTableModel::roleNames() const
{
    return {{NameRole, "name"},
            {FiguresRole, "figures"},
            {StrongRole, "strong"},
            {DimRole, "dim"},
            {PlaceholderRole, "placeholder"},
            {TookWicketsRole, "tookWickets"},
            {SpokenPlaceholderRole, "spokenPlaceholder"}};
}

void ScoreTableModel::setRows(QList<Row> rows)
{
    if (rows == m_rows)
        return;
    if (rows.size() != m_rows.size()) {
        beginResetModel();
        m_rows = std::move(rows);
        endResetModel();
        return;
    }
    m_rows = std::move(rows);
    emit dataChanged(index(0), index(int(m_rows.size()) - 1));
}
