#include "render/tools.h"

#include "common/country_code_list.h"

Tools::Tools() = default;

std::string Tools::convertNationCodeToName(std::string code)
{
    for (const auto &[numeric, alpha3, name] : COUNTRY_CODE_LIST)
        if (alpha3 == code)
            return name;
    return {};
}
