#pragma once

// The look-up in the table of countries; the library has several copies of the table.

#include <string>

#include "common/country_code_list.h"

/**
 * The Chinese name in the row of `table` whose alpha-3 code is exactly `code` (same length, same
 * case, nothing trimmed); null when there is no such row.
 */
inline const std::string *findCountryName(const std::string (&table)[COUNTRY_CODE_COUNT][3],
                                          const std::string &code)
{
    for (const auto &[numeric, alpha3, name] : table)
        if (alpha3 == code)
            return &name;
    return nullptr;
}

/** The name in `COUNTRY_CODE_LIST`; an empty text when no row has this code. */
inline std::string countryName(const std::string &code)
{
    const std::string *const name = findCountryName(COUNTRY_CODE_LIST, code);
    return name != nullptr ? *name : std::string();
}
