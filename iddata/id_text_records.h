#pragma once

/**
 * @file
 * The four records that the text decoders of `CIdData` fill. The caller owns them; every string is
 * UTF-8 and is replaced, never appended to.
 *
 * Unlike the records of `readIDCard`, the texts keep the blanks that the card pads them with, the
 * days of validity read YYYY.MM.DD, and long names are cut: what a field keeps of a longer text
 * stands with it.
 */

#include <string>

/** Resident identity card. */
struct _tagID_TEXT_INFO_CN {
    std::string szName;   ///< up to 10 Chinese characters
    std::string szSex;    ///< "男" or "女"
    std::string szNation; ///< ethnic group (GB 3304 without the suffix 族); empty if not assigned
    std::string szBirthYear;  ///< four digits
    std::string szBirthMonth; ///< two digits
    std::string szBirthDay;   ///< what follows the month
    std::string szAddress;    ///< up to 33 Chinese characters
    std::string szID;         ///< citizen identity number, 18 characters (GB 11643)
    std::string szDept;       ///< issuing authority, up to 10 Chinese characters
    std::string szValidStart; ///< YYYY.MM.DD
    std::string szValidEnd;   ///< YYYY.MM.DD or "长期"
};

/** Residence permit for residents of Hong Kong, Macao and Taiwan. */
struct _tagID_TEXT_INFO_HMT {
    std::string szName;       ///< up to 10 Chinese characters
    std::string szSex;        ///< "男" or "女"
    std::string szBirthYear;  ///< four digits
    std::string szBirthMonth; ///< two digits
    std::string szBirthDay;   ///< what follows the month
    std::string szAddress;    ///< up to 33 Chinese characters
    std::string szID;         ///< permit number, 18 characters
    std::string szDept;       ///< issuing authority, up to 10 Chinese characters
    std::string szValidStart; ///< YYYY.MM.DD
    std::string szValidEnd;   ///< YYYY.MM.DD or "长期"
    std::string szPassNumber; ///< number of the holder's travel permit, 9 characters
    std::string szIssueCount; ///< two digits, as text
};

/** Foreigner's permanent residence card, 2017 edition. */
struct _tagID_TEXT_INFO_FOREIGN_2017 {
    std::string szEnglishName;     ///< up to 31 Latin letters
    std::string szSex;             ///< label of the sex code (GB/T 2261.1)
    std::string szID;              ///< card number, 15 characters
    std::string szNationalityCode; ///< three-letter country code (ISO 3166-1)
    std::string szChineseName;     ///< up to 10 Chinese characters
    std::string szValidStart;      ///< YYYY.MM.DD
    std::string szValidEnd;        ///< YYYY.MM.DD
    std::string szBirthYear;       ///< four digits
    std::string szBirthMonth;      ///< two digits
    std::string szBirthDay;        ///< what follows the month
};

/** Foreigner's permanent residence card, new edition. */
struct _tagID_TEXT_INFO_FOREIGN_NEW {
    std::string szChineseName; ///< up to 10 Chinese characters
    std::string szSex;         ///< label of the sex code (GB/T 2261.1)
    std::string szCardExtra;   ///< the two-character item that follows the sex code
    std::string szBirthYear;   ///< four digits
    std::string szBirthMonth;  ///< two digits
    std::string szBirthDay;    ///< what follows the month
    std::string szEnglishName; ///< up to 31 Latin letters
    std::string szID;          ///< card number, 18 characters
    std::string szValidStart;  ///< YYYY.MM.DD
    std::string szValidEnd;    ///< YYYY.MM.DD
    std::string szNationality; ///< Chinese country name, " / ", country code: "美国 / USA"
};
