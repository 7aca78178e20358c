#pragma once

/**
 * @file
 * The table of countries and areas.
 */

#include <string>

#include "common/export.h"

/** Number of rows of `COUNTRY_CODE_LIST`. */
constexpr int COUNTRY_CODE_COUNT = 239;

/**
 * Countries and areas as the cards name them: numeric code (three digits), alpha-3 code, short
 * Chinese name in UTF-8. Source: ISO 3166-1 as it stood before 2003 for the codes, GB/T 2659 for
 * the names, with deliberate differences that the cards were issued with (CSR, CR, TMP, ANT, PST,
 * ROM, STp, YUG among the codes). No numeric and no alpha-3 code occurs twice.
 *
 * Built when the library is loaded, destroyed when it is unloaded, never changed in between; any
 * number of threads may read it.
 */
extern IDCARD_READER_EXPORT const std::string COUNTRY_CODE_LIST[COUNTRY_CODE_COUNT][3];
