#include "viewer/card_table.h"

#include <algorithm>
#include <array>

#include <QLocale>

#include "apps/card_output.h"

namespace viewer
{

namespace
{

// The keys of what the privacy switch covers.
constexpr std::array<const char *, 3> NAMES = {"name", "englishName", "chineseName"};
constexpr std::array<const char *, 2> NUMBERS = {"idNumber", "travelPermitNumber"};

template <typename Keys>
bool isOneOf(const app::CardField &field, const Keys &keys)
{
    return std::any_of(keys.begin(), keys.end(),
                       [&](const char *key) { return qstrcmp(key, field.key) == 0; });
}

/** Always as long, so that it tells nothing. */
QString cover()
{
    return {8, QChar(0x2022)};
}

QString cardText(const char *text)
{
    return translated("Card", text);
}

/** "none", a number, or that it is not known. */
QString printsText(const app::Card &card)
{
    const std::optional<int> count = card.fingerprintCount();
    if (!count)
        return CardTable::tr("unknown");
    return *count == 0 ? CardTable::tr("none") : QString::number(*count);
}

template <typename Model>
void coverColumn(Model *model, int column)
{
    if (model->rowCount() > 0)
        emit model->dataChanged(model->index(0, column),
                                model->index(model->rowCount() - 1, column));
}

} // namespace

QString holderName(const app::Card &card, bool isCovered)
{
    if (isCovered)
        return cover();
    for (const app::CardField &field : card.fields()) {
        if (isOneOf(field, NAMES) && !field.content.value(0).trimmed().isEmpty())
            return app::textForPeople(field);
    }
    return {};
}

void CardTable::setCard(const CardPointer &card)
{
    beginResetModel();
    m_rows.clear();
    if (card) {
        m_rows.append({tr("Kind"), cardText(card->kindLabel()), false});
        for (const app::CardField &field : card->fields()) {
            if (!field.content.isEmpty())
                m_rows.append({cardText(field.label), app::textForPeople(field),
                               isOneOf(field, NAMES) || isOneOf(field, NUMBERS)});
        }
        if (card->mayHaveFingerprints())
            m_rows.append({tr("Fingerprints"), printsText(*card), false});
    }
    endResetModel();
}

void CardTable::setCovered(bool covered)
{
    m_isCovered = covered;
    coverColumn(this, 1);
}

int CardTable::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

int CardTable::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : 2;
}

QVariant CardTable::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    const Row &row = m_rows.at(index.row());
    if (index.column() == 0)
        return row.label;
    return row.isPersonal && m_isCovered ? cover() : row.content;
}

QVariant CardTable::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return section == 0 ? tr("Field") : tr("Content");
}

QString CardTable::rowText(int row) const
{
    return data(index(row, 0)).toString() + QLatin1Char('\t') + data(index(row, 1)).toString();
}

void History::add(const CardPointer &card, const QDateTime &time)
{
    if (m_entries.size() == MOST_CARDS) {
        beginRemoveRows({}, MOST_CARDS - 1, MOST_CARDS - 1);
        m_entries.removeLast();
        endRemoveRows();
    }
    beginInsertRows({}, 0, 0);
    m_entries.prepend({card, time});
    endInsertRows();
}

void History::clear()
{
    beginResetModel();
    m_entries = {};
    endResetModel();
}

void History::setCovered(bool covered)
{
    m_isCovered = covered;
    coverColumn(this, 2);
}

int History::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_entries.size();
}

int History::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : 3;
}

QVariant History::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    const Entry &entry = m_entries.at(index.row());
    switch (index.column()) {
    case 0:
        return QLocale().toString(entry.time.time(), QStringLiteral("HH:mm:ss"));
    case 1:
        return cardText(entry.card->kindLabel());
    default:
        return holderName(*entry.card, m_isCovered);
    }
}

QVariant History::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    const QStringList titles{tr("Time"), tr("Kind"), tr("Name")};
    return titles.value(section);
}

} // namespace viewer
