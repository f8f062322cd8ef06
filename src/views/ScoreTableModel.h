#pragma once

#include <QAbstractListModel>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

// The rows of a batting or a bowling table: a name, its figures in column order, and marks.
class ScoreTableModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by a ScorecardModel")

public:
    enum Role {
        NameRole = Qt::UserRole + 1,
        FiguresRole,
        StrongRole,
        DimRole,
        PlaceholderRole,
        SpokenRole,
        TookWicketsRole
    };

    struct Row {
        QString name;
        QStringList figures;
        bool strong = false; // a batter at the crease or not out; the bowler on
        bool dim = false;    // a batter out or yet to bat
        QString placeholder; // "—" or "DNB" in place of the figures
        QString spoken;      // the whole line in words, for a screen reader
        bool tookWickets = false;
        bool operator==(const Row &) const = default;
    };

    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    // Lines change in place where they can, so that a live update does not rebuild the table.
    void setRows(QList<Row> rows);

private:
    QList<Row> m_rows;
};
