#include "common/country_code_list.h"

const std::string COUNTRY_CODE_LIST[COUNTRY_CODE_COUNT][3] = {
#include "common/country_code_rows.inc"
};
