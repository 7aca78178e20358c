#pragma once

// What a card says, row by row, and the cards of a run, as models of Qt's tables, and what a
// privacy switch covers in them. What is covered is in no model.

#include <QDateTime>
#include <QStandardItemModel>

#include "apps/card/card.h"
#include "apps/card/card_output.h"

namespace app
{

/** What stands for a text that is covered; always the same, so that it reveals nothing. */
extern const QString COVERED_TEXT;

/** In this format, such as HH:mm, behind its date unless that is today's. */
QString timeText(const QDateTime &time, const QString &format);

/** Two columns: the name of a field and what it says. Covered, what is personal is dots. */
class CardTable : public QStandardItemModel
{
    Q_OBJECT

public:
    CardTable();

    void setCard(const CardPointer &card);
    void setCovered(bool covered);
    /** Whether dots stand for what the row says. */
    bool isCovered(int row) const;
    /** For other programs: also what the decoder has cut off; dots where it is covered. */
    QString wholeContent(int row) const;

private:
    QVector<CardRow> m_rows;
    bool m_isCovered = false;
};

/** The cards read in a run, the newest first. */
class CardHistory : public QStandardItemModel
{
    Q_OBJECT

public:
    /** The oldest goes when there are more. */
    static constexpr int MOST_CARDS = 100;

    /** The name first: it is what a card is looked for by. */
    enum Column { NAME, NUMBER, KIND, TIME };

    CardHistory();

    void add(const CardPointer &card, const QDateTime &time);
    /** A time as `timeText` has it on the day on which it is asked for. */
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    void setCovered(bool covered);
    CardPointer card(int row) const;
    /** When it was read. */
    QDateTime time(int row) const;

private:
    void showHolder(int row);

    bool m_isCovered = false;
};

} // namespace app
