#pragma once

// What a card says, row by row, and the cards of this run: the models of the window's two tables,
// and what the privacy switch covers in them. What is covered is in no model.

#include <QDateTime>
#include <QStandardItemModel>

#include "viewer/card_desk.h"

namespace viewer
{

/** Two columns: the name of a field and what it says. Covered, names and numbers are dots. */
class CardTable : public QStandardItemModel
{
    Q_OBJECT

public:
    CardTable();

    void setCard(const CardPointer &card);
    void setCovered(bool covered);

private:
    void fill();

    CardPointer m_card;
    bool m_isCovered = false;
};

/** The cards read in this run, the newest first: time, kind, name. */
class History : public QStandardItemModel
{
    Q_OBJECT

public:
    /** The oldest goes when there are more. */
    static constexpr int MOST_CARDS = 100;

    History();

    void add(const CardPointer &card, const QDateTime &time);
    void forgetAll() { setRowCount(0); }
    void setCovered(bool covered);
    CardPointer card(int row) const;

private:
    bool m_isCovered = false;
};

} // namespace viewer
