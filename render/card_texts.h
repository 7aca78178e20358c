#pragma once

// The texts of a card picture, prepared from the fields of a record. What several kinds share
// is here once.

#include <string>

#include <QString>

namespace card_texts
{

/** A field of a record: UTF-8 up to its first zero character. */
QString field(const std::string &text);

/** A name without surrounding white space; one of two characters is spread to the width of three.
 */
QString spreadName(const std::string &name);

/** Month or day of a date of birth. */
struct DatePart {
    QString text;
    bool zeroRemoved; ///< a leading zero was taken off, so one digit means two
};

DatePart datePart(const std::string &text);

/**
 * First and last day of validity, "2020.01.15 - 2040.01.15"; a last day that holds "长期" stays as
 * it is. Dates of another length still get their two dots: no length is checked, on purpose.
 */
QString validity(const std::string &start, const std::string &end);

/** The sex as foreign cards print it, "女 / F" or "男 / M"; a text with neither stays as it is. */
QString bilingualSex(const std::string &sex);

/** Year, month and day with dots between them. */
QString dottedDate(const std::string &year, const std::string &month, const std::string &day);

/**
 * The country's Chinese name for the alpha-3 code in `nationality`, " / " and `nationality` itself.
 * A record that `readIDCard` filled holds the name already, whose look-up then gives nothing and
 * leaves the separator in front; both are kept on purpose.
 */
QString nationality(const std::string &nationality);

} // namespace card_texts
