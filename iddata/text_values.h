#pragma once

// What the texts of a card's fields mean: numbers, dates, the end of validity.

#include <string>

namespace text_values
{

/** How a card says that it never expires. */
constexpr const char *LONG_TERM = "长期";

/** The decimal number that `text` begins with, after white space; 0 when there is none. */
long number(const std::string &text);

/**
 * The parts of a date YYYYMMDD. Nothing is checked: shorter text gives shorter or empty parts, and
 * `day` is all that follows the month. Each byte of the text counts as one character of Latin-1.
 */
struct Date {
    std::string year;
    std::string month;
    std::string day;
};

Date splitDate(const std::string &text);

/** The date as YYYY.MM.DD. */
std::string dottedDate(const std::string &text);

/** 长期 when that is anywhere in `text`, otherwise the date as YYYY.MM.DD. */
std::string dottedDateOrLongTerm(const std::string &text);

} // namespace text_values
