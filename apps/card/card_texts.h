#pragma once

// The texts of a card that was decoded from a raw record, in the form that `readIDCard` gives them:
// the day of validity as eight digits, the nationality as a country's name with the code beside it.
// Padding is as the card has it.

#include "iddata/id_text_records.h"

namespace app
{

using CnTexts = _tagID_TEXT_INFO_CN;
using HmtTexts = _tagID_TEXT_INFO_HMT;

struct Foreign2017Texts : _tagID_TEXT_INFO_FOREIGN_2017 {
    std::string szNationality; ///< Chinese name of the country; empty when its code is not known
};

struct ForeignNewTexts : _tagID_TEXT_INFO_FOREIGN_NEW {
    std::string szNationalityCode; ///< three-letter country code
};

/** One record of each kind; the card fills one. */
struct CardTexts {
    CnTexts cn;
    HmtTexts hmt;
    Foreign2017Texts foreign2017;
    ForeignNewTexts foreignNew;
};

} // namespace app
