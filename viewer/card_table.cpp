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

QString holderName(const app::Card &card)
{
    for (const app::CardField &field : card.fields()) {
        if (isOneOf(field, NAMES) && !field.content.value(0).trimmed().isEmpty())
            return app::textForPeople(field);
    }
    return {};
}

/** The tool tip has what does not fit into the cell. */
void put(QStandardItemModel *model, int row, int column, const QString &text)
{
    model->setData(model->index(row, column), text, Qt::DisplayRole);
    model->setData(model->index(row, column), text, Qt::ToolTipRole);
}

} // namespace

CardTable::CardTable()
{
    setHorizontalHeaderLabels({tr("Field"), tr("Content")});
}

void CardTable::setCard(const CardPointer &card)
{
    m_card = card;
    setRowCount(0);
    fill();
}

void CardTable::setCovered(bool covered)
{
    m_isCovered = covered;
    fill();
}

void CardTable::fill()
{
    if (!m_card)
        return;
    int row = 0;
    const auto add = [&](const QString &label, const QString &content) {
        setRowCount(std::max(rowCount(), row + 1));
        put(this, row, 0, label);
        put(this, row, 1, content);
        ++row;
    };
    add(tr("Kind"), cardText(m_card->kindLabel()));
    for (const app::CardField &field : m_card->fields()) {
        const bool isPersonal = isOneOf(field, NAMES) || isOneOf(field, NUMBERS);
        if (!field.content.isEmpty())
            add(cardText(field.label),
                isPersonal && m_isCovered ? cover() : app::textForPeople(field));
    }
    if (m_card->mayHaveFingerprints())
        add(tr("Fingerprints"), printsText(*m_card));
}

History::History()
{
    setHorizontalHeaderLabels({tr("Time"), tr("Kind"), tr("Name")});
}

void History::add(const CardPointer &card, const QDateTime &time)
{
    setRowCount(std::min(rowCount(), MOST_CARDS - 1));
    insertRow(0);
    setData(index(0, 0), QVariant::fromValue(card), Qt::UserRole);
    put(this, 0, 0, QLocale().toString(time.time(), QStringLiteral("HH:mm:ss")));
    put(this, 0, 1, cardText(card->kindLabel()));
    put(this, 0, 2, m_isCovered ? cover() : holderName(*card));
}

void History::setCovered(bool covered)
{
    m_isCovered = covered;
    for (int row = 0; row < rowCount(); ++row)
        put(this, row, 2, covered ? cover() : holderName(*card(row)));
}

CardPointer History::card(int row) const
{
    return index(row, 0).data(Qt::UserRole).value<CardPointer>();
}

} // namespace viewer
