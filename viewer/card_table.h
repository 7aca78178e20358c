#pragma once

// What a card says, row by row, and the cards of this run: the models of the window's two tables,
// and what the privacy switch covers in them.

#include <QAbstractTableModel>
#include <QDateTime>

#include "viewer/card_desk.h"

namespace viewer
{

/** The holder's name, or what stands in its place while it is covered. */
QString holderName(const app::Card &card, bool isCovered);

/** Two columns: the name of a field and what it says. Covered, names and numbers are dots. */
class CardTable : public QAbstractTableModel
{
    Q_OBJECT

public:
    void setCard(const CardPointer &card);
    void setCovered(bool covered);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /** A row with a tabulator between its cells, as it is shown. */
    QString rowText(int row) const;

private:
    struct Row {
        QString label;
        QString content;
        bool isPersonal;
    };

    QVector<Row> m_rows;
    bool m_isCovered = false;
};

/** The cards read in this run, the newest first: time, kind, name. */
class History : public QAbstractTableModel
{
    Q_OBJECT

public:
    /** The oldest goes when there are more. */
    static constexpr int MOST_CARDS = 100;

    void add(const CardPointer &card, const QDateTime &time);
    void clear();
    void setCovered(bool covered);
    CardPointer card(int row) const { return m_entries.value(row).card; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    struct Entry {
        CardPointer card;
        QDateTime time;
    };

    QVector<Entry> m_entries;
    bool m_isCovered = false;
};

} // namespace viewer
