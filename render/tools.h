#pragma once

#include <string>

#include "common/export.h"

/** What the card pictures are made with. All operations are static and keep no state. */
class IDCARD_READER_EXPORT Tools
{
public:
    Tools();

    /**
     * The Chinese name of the country whose alpha-3 code is `code`, from `COUNTRY_CODE_LIST`; an
     * empty text when no row has exactly this code (same length, same case, nothing trimmed).
     */
    static std::string convertNationCodeToName(std::string code);
};
