#include "apps/card/card_notes.h"

#include <algorithm>
#include <array>

#include "apps/process/translation.h"
#include "common/texts.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Card)

/** What the field `key` says, its parts joined; empty when the card has no such field. */
QString textOf(const Card &card, const char *key)
{
    for (const CardField &field : card.fields()) {
        if (qstrcmp(field.key, key) == 0)
            return field.content.join(QString()).trimmed();
    }
    return {};
}

bool hasField(const Card &card, const char *key)
{
    const auto fields = card.fields();
    return std::any_of(fields.begin(), fields.end(), [&](const CardField &field) {
        return qstrcmp(field.key, key) == 0 && !field.content.isEmpty();
    });
}

/** Eight digits as a day; no valid day for anything else, such as 长期. */
QDate dayOf(const Card &card, const char *key)
{
    return QDate::fromString(textOf(card, key), QStringLiteral("yyyyMMdd"));
}

struct NoteRow {
    const char *key;
    const char *words;
    bool (*applies)(const Card &card, const QDate &today);
};

constexpr std::array<NoteRow, 5> NOTES = {{
    {ODD_RECORD_NOTE, QT_TR_NOOP("What was read may be wrong: read the card once more."),
     [](const Card &card, const QDate &) { return card.hasOddRecord(); }},
    {"expired", QT_TR_NOOP("The card has expired."),
     [](const Card &card, const QDate &today) {
         const QDate last = dayOf(card, "validTo");
         return last.isValid() && last < today;
     }},
    {"not-yet-valid", QT_TR_NOOP("The card is not valid yet."),
     [](const Card &card, const QDate &today) {
         const QDate first = dayOf(card, "validFrom");
         return first.isValid() && first > today;
     }},
    {"check-digit-wrong", QT_TR_NOOP("The check digit of the number is wrong."),
     [](const Card &card, const QDate &) { return isCheckDigitWrong(textOf(card, "idNumber")); }},
    {"unknown-nationality", QT_TR_NOOP("The country's code is not known."),
     [](const Card &card, const QDate &) {
         return hasField(card, "nationality") && textOf(card, "nationality").isEmpty();
     }},
}};

bool isDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

} // namespace

bool isCheckDigitWrong(const QString &number)
{
    constexpr int SIZE = 18;
    constexpr int MODULUS = 11;
    constexpr int RADIX = 2;
    if (number.size() != SIZE || !std::all_of(number.begin(), number.end() - 1, isDigit))
        return false;
    int sum = 0;
    for (int i = 0; i < SIZE - 1; ++i)
        sum = (sum + number.at(i).digitValue()) * RADIX % MODULUS;
    const int check = (MODULUS + 1 - sum) % MODULUS;
    const QChar expected = check == MODULUS - 1 ? QChar('X') : QChar('0' + check);
    return number.at(SIZE - 1) != expected;
}

QVector<CardNote> cardNotes(const Card &card, const QDate &today)
{
    QVector<CardNote> notes;
    for (const NoteRow &row : NOTES) {
        if (row.applies(card, today))
            notes << CardNote{QLatin1String(row.key), tr(row.words)};
    }
    for (const CardField &field : card.cutFields()) {
        notes << CardNote{
            QStringLiteral("cut:%1").arg(QLatin1String(field.key)),
            filledIn(tr("%1 is cut; the record has: %2"), tr(field.label), field.content.first())};
    }
    return notes;
}

std::optional<int> ageOnDay(const Card &card, const QDate &today)
{
    const QDate birth = dayOf(card, "birthDate");
    if (!birth.isValid() || birth > today)
        return std::nullopt;
    const bool hadBirthday =
        std::make_pair(today.month(), today.day()) >= std::make_pair(birth.month(), birth.day());
    return today.year() - birth.year() - (hadBirthday ? 0 : 1);
}

} // namespace app
