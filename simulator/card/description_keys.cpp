// The table of text keys and the checks that each form of text must pass.

#include "simulator/card/description_keys.h"

#include <algorithm>

#include <QDate>

#include "common/sex_codes.h"
#include "simulator/translated_texts.h"

namespace simulator
{

namespace
{

SIMULATOR_TEXTS(Descriptions)

constexpr int LONGEST_TITLE = 200;

constexpr KeyRule NO = {};

constexpr KeyRule must(int characters)
{
    return {KeyUse::REQUIRED, characters};
}

constexpr KeyRule may(int characters)
{
    return {KeyUse::OPTIONAL, characters};
}

constexpr std::array<KeyRule, CARD_KIND_COUNT> all(KeyRule rule)
{
    return {rule, rule, rule, rule};
}

using Card = CardDescription;

// The rules are in the order resident, hmt, foreign-2017, foreign-new.
constexpr TextKey KEYS[] = {
    {"title", &Card::title, TextForm::FREE, all(may(LONGEST_TITLE))},
    {"name", &Card::name, TextForm::FREE, {must(15), must(15), NO, NO}},
    {"englishName", &Card::englishName, TextForm::FREE, {NO, NO, must(60), must(35)}},
    {"chineseName", &Card::chineseName, TextForm::FREE, {NO, NO, may(15), may(15)}},
    {"sex", &Card::sex, TextForm::SEX_CODE, all(must(1))},
    {"ethnicGroup", &Card::ethnicGroup, TextForm::TWO_DIGITS, {must(2), NO, NO, NO}},
    {"birthDate", &Card::birthDate, TextForm::DATE, all(must(8))},
    {"address", &Card::address, TextForm::FREE, {must(35), must(35), NO, NO}},
    {"idNumber", &Card::idNumber, TextForm::FREE, {must(18), must(18), must(15), must(18)}},
    {"issuingAuthority", &Card::issuingAuthority, TextForm::FREE, {must(15), must(15), NO, NO}},
    {"validFrom", &Card::validFrom, TextForm::DATE, all(must(8))},
    {"validTo", &Card::validTo, TextForm::END_DATE, all(must(8))},
    {"travelPermitNumber", &Card::travelPermitNumber, TextForm::FREE, {NO, must(9), NO, NO}},
    {"issueCount", &Card::issueCount, TextForm::DIGITS, {NO, may(2), NO, NO}},
    {"nationality", &Card::nationality, TextForm::COUNTRY_CODE, {NO, NO, must(3), must(3)}},
    {"cardVersion", &Card::cardVersion, TextForm::FREE, {NO, NO, may(2), NO}},
    {"authorityCode", &Card::authorityCode, TextForm::DIGITS, {NO, NO, may(4), NO}},
    {"cardExtra", &Card::cardExtra, TextForm::FREE, {NO, NO, NO, may(2)}},
};

bool isDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

bool isLatinLetter(QChar character)
{
    return (character >= QLatin1Char('A') && character <= QLatin1Char('Z')) ||
           (character >= QLatin1Char('a') && character <= QLatin1Char('z'));
}

bool isDigits(const QString &text)
{
    return std::all_of(text.cbegin(), text.cend(), isDigit);
}

QString dateProblem(const QString &text)
{
    if (text.size() != 8 || !isDigits(text))
        return tr("is not eight digits YYYYMMDD");
    if (!QDate(text.mid(0, 4).toInt(), text.mid(4, 2).toInt(), text.mid(6).toInt()).isValid())
        return tr("is not a day of the calendar");
    return {};
}

QString endDateProblem(const QString &text)
{
    if (text == QString::fromUtf8("长期"))
        return {};
    const QString problem = dateProblem(text);
    return problem.isEmpty() ? problem : tr("%1 and not 长期").arg(problem);
}

QString sexProblem(const QString &text)
{
    const bool known = text.size() == 1 && isDigits(text) && sexLabel(text.toInt()) != nullptr;
    return known ? QString() : tr("is not a sex code; use 0, 1, 2 or 9");
}

// A code that the standard does not assign passes: such cards exist and must be read.
QString twoDigitsProblem(const QString &text)
{
    return text.size() == 2 && isDigits(text) ? QString() : tr("is not two digits");
}

// A code that no table knows passes, for the same reason; one country has two letters.
QString countryProblem(const QString &text)
{
    const bool good = (text.size() == 2 || text.size() == 3) &&
                      std::all_of(text.cbegin(), text.cend(), isLatinLetter);
    return good ? QString() : tr("is not a country code of three letters");
}

QString formProblem(TextForm form, const QString &text)
{
    switch (form) {
    case TextForm::DATE:
        return dateProblem(text);
    case TextForm::END_DATE:
        return endDateProblem(text);
    case TextForm::DIGITS:
        return isDigits(text) ? QString() : tr("holds something other than digits");
    case TextForm::SEX_CODE:
        return sexProblem(text);
    case TextForm::TWO_DIGITS:
        return twoDigitsProblem(text);
    case TextForm::COUNTRY_CODE:
        return countryProblem(text);
    case TextForm::FREE:
        break;
    }
    return {};
}

// A card stores UCS-2: one unit a character. Zero would end the text, other controls are no text.
QString characterProblem(const QString &text)
{
    for (const QChar character : text) {
        if (character.isSurrogate())
            return tr("holds a character outside UCS-2, which a card cannot store");
        if (character.category() == QChar::Other_Control) {
            return tr("holds the control character U+%1")
                .arg(uint(character.unicode()), 4, 16, QLatin1Char('0'));
        }
    }
    return {};
}

} // namespace

TextKeyList textKeys()
{
    return {std::begin(KEYS), std::end(KEYS)};
}

const TextKey *findTextKey(const QString &name)
{
    for (const TextKey &key : KEYS) {
        if (name == QLatin1String(key.name))
            return &key;
    }
    return nullptr;
}

QString textProblem(const TextKey &key, CardKind kind, const QString &text)
{
    const KeyRule &rule = key.rule(kind);
    if (text.isEmpty())
        return rule.use == KeyUse::REQUIRED ? tr("must not be empty") : QString();
    QString problem = characterProblem(text);
    if (!problem.isEmpty())
        return problem;
    problem = formProblem(key.form, text);
    if (!problem.isEmpty())
        return problem;
    if (text.size() > rule.characters) {
        return tr("has %1 characters; a %2 card has room for %3")
            .arg(text.size())
            .arg(cardKindName(kind))
            .arg(rule.characters);
    }
    return {};
}

} // namespace simulator
