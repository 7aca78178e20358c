#include "apps/card_view/card_table.h"

#include <algorithm>

namespace app
{

namespace
{

constexpr int CARD_ROLE = Qt::UserRole;
constexpr int TIME_ROLE = Qt::UserRole + 1;

/** The tool tip has what does not fit into the cell. */
void put(QStandardItemModel *model, int row, int column, const QString &text, bool covered = false)
{
    const QString shown = covered ? COVERED_TEXT : text;
    model->setData(model->index(row, column), shown, Qt::DisplayRole);
    model->setData(model->index(row, column), shown, Qt::ToolTipRole);
}

} // namespace

const QString COVERED_TEXT(8, QChar(0x2022));

QString timeText(const QDateTime &time, const QString &format)
{
    const QString date = QStringLiteral("yyyy-MM-dd ");
    return time.toString(time.date() == QDate::currentDate() ? format : date + format);
}

CardTable::CardTable()
{
    setHorizontalHeaderLabels({tr("Field"), tr("Content")});
}

void CardTable::setCard(const CardPointer &card)
{
    m_rows = card ? cardRows(*card) : QVector<CardRow>();
    // It is seen beside the table.
    const auto isPhoto = [](const auto &row) { return row.sort == CardRow::Sort::PHOTO; };
    m_rows.erase(std::remove_if(m_rows.begin(), m_rows.end(), isPhoto), m_rows.end());
    setRowCount(0);
    setRowCount(m_rows.size());
    setCovered(m_isCovered);
}

void CardTable::setCovered(bool covered)
{
    m_isCovered = covered;
    for (int row = 0; row < m_rows.size(); ++row) {
        put(this, row, 0, m_rows[row].label);
        put(this, row, 1, shownContent(m_rows[row]), isCovered(row));
    }
}

QString CardTable::wholeContent(int row) const
{
    return isCovered(row) ? COVERED_TEXT : m_rows[row].whole;
}

bool CardTable::isCovered(int row) const
{
    return m_isCovered && m_rows[row].sort == CardRow::Sort::PERSONAL;
}

CardHistory::CardHistory()
{
    setHorizontalHeaderLabels({tr("Name"), tr("Number"), tr("Kind"), tr("Time")});
}

void CardHistory::add(const CardPointer &card, const QDateTime &time)
{
    setRowCount(std::min(rowCount(), MOST_CARDS - 1));
    insertRow(0);
    setData(index(0, 0), QVariant::fromValue(card), CARD_ROLE);
    showHolder(0);
    put(this, 0, KIND, kindForPeople(*card));
    setData(index(0, 0), time, TIME_ROLE);
}

QVariant CardHistory::data(const QModelIndex &index, int role) const
{
    if (index.column() != TIME || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return QStandardItemModel::data(index, role);
    return timeText(time(index.row()), QStringLiteral("HH:mm:ss"));
}

void CardHistory::setCovered(bool covered)
{
    m_isCovered = covered;
    for (int row = 0; row < rowCount(); ++row)
        showHolder(row);
}

void CardHistory::showHolder(int row)
{
    put(this, row, NAME, holderName(*card(row)), m_isCovered);
    put(this, row, NUMBER, holderNumber(*card(row)), m_isCovered);
}

CardPointer CardHistory::card(int row) const
{
    return index(row, 0).data(CARD_ROLE).value<CardPointer>();
}

QDateTime CardHistory::time(int row) const
{
    return index(row, 0).data(TIME_ROLE).toDateTime();
}

} // namespace app
