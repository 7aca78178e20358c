#pragma once

/**
 * @file
 * The four records that `readIDCard` fills, one per kind of document.
 *
 * The caller allocates and destroys them; the library only assigns to their strings and copies into
 * their arrays. A read fills the one record of the card's kind and leaves the three others as they
 * were. Every string is UTF-8. A field that the library does not write keeps what the caller put
 * there, so a record may be used again for the next card without being cleared.
 *
 * Dates: the date of birth is split into year (4 digits), month (2 digits) and day; the first and
 * last day of validity are eight digits YYYYMMDD as the card gives them. The last day of a card
 * without an end reads "长期".
 */

#include <string>

#include "common/fp_info_type.h"

/** Bytes of a photo area: a BMP file of 102 x 126 pixels with 24 bits each. */
constexpr unsigned int IDCARD_PHOTO_SIZE = 38862;

/** Bytes of a photo as the card stores it, compressed. */
constexpr unsigned int IDCARD_COMPRESSED_PHOTO_SIZE = 1024;

/** Bytes of one fingerprint template. */
constexpr unsigned int IDCARD_FINGERPRINT_SIZE = 512;

/** Bytes of a fingerprint area: two templates. */
constexpr unsigned int IDCARD_FINGERPRINT_AREA_SIZE = 2 * IDCARD_FINGERPRINT_SIZE;

/** What `readIDCard` writes to `*cardKind`. */
enum IDCARD_KIND : unsigned int {
    IDCARD_KIND_CN = 0,           ///< resident identity card
    IDCARD_KIND_FOREIGN_2017 = 1, ///< foreigner's permanent residence card, 2017 edition
    IDCARD_KIND_FOREIGN_NEW = 2,  ///< foreigner's permanent residence card, new edition
    IDCARD_KIND_HMT = 3,          ///< residence permit for Hong Kong, Macao and Taiwan residents
};

/*
 * `byPhoto`, in all four records: a finished BMP file when the reader delivered one. When the
 * reader delivered compressed data, the 1024 compressed bytes followed by zeros, not a picture;
 * the first two bytes distinguish the two, "BM" for a BMP file.
 */

/** Resident identity card. */
struct _tagIDCARD_INFO_ALL_CN {
    std::string szName;       ///< name of the holder
    std::string szSex;        ///< as text, "男" or "女", with any padding the reader left
    std::string szNation;     ///< ethnic group, as text (GB 3304 without the suffix 族)
    std::string szBirthYear;  ///< four digits
    std::string szBirthMonth; ///< two digits
    std::string szBirthDay;   ///< what follows the month
    std::string szAddress;    ///< address of the holder
    std::string szID;         ///< citizen identity number, 18 characters (GB 11643)
    std::string szDept;       ///< issuing authority
    std::string szValidStart; ///< YYYYMMDD
    std::string szValidEnd;   ///< YYYYMMDD or "长期"
    unsigned char byPhoto[IDCARD_PHOTO_SIZE]; ///< a BMP file, or compressed data
    /** How many prints `byFpData` holds; left alone when the reader gave an unusual length. */
    FP_INFO_TYPE fpInfoType;
    /** Fingerprint templates, zero-filled beyond what was read. */
    unsigned char byFpData[IDCARD_FINGERPRINT_AREA_SIZE];
};

/** Residence permit for residents of Hong Kong, Macao and Taiwan. */
struct _tagIDCARD_INFO_ALL_HMT {
    std::string szName;       ///< name of the holder
    std::string szSex;        ///< as text
    std::string szBirthYear;  ///< four digits
    std::string szBirthMonth; ///< two digits
    std::string szBirthDay;   ///< what follows the month
    std::string szAddress;    ///< address of the holder
    std::string szID;   ///< permit number, 18 characters; begins 81 Hong Kong, 82 Macao, 83 Taiwan
    std::string szDept; ///< issuing authority
    std::string szValidStart; ///< YYYYMMDD
    std::string szValidEnd;   ///< YYYYMMDD or "长期"
    std::string szPassNumber; ///< number of the holder's travel permit, 9 characters
    std::string szReserved;   ///< the caller's own; never written
    unsigned char byPhoto[IDCARD_PHOTO_SIZE]; ///< a BMP file, or compressed data
};

/** Foreigner's permanent residence card, 2017 edition. */
struct _tagIDCARD_INFO_ALL_FOREIGN_2017 {
    std::string szEnglishName; ///< name in Latin letters, up to 60 characters
    std::string szSex;         ///< as text
    std::string szID;          ///< card number, 15 characters
    /** Chinese name of the country (`COUNTRY_CODE_LIST`); empty when its code is not in the list.
     */
    std::string szNationality;
    std::string szChineseName;                ///< name in Chinese characters; may be empty
    std::string szValidStart;                 ///< YYYYMMDD
    std::string szValidEnd;                   ///< YYYYMMDD or "长期"
    std::string szBirthYear;                  ///< four digits
    std::string szBirthMonth;                 ///< two digits
    std::string szBirthDay;                   ///< what follows the month
    std::string szReserved;                   ///< the caller's own; never written
    unsigned char byPhoto[IDCARD_PHOTO_SIZE]; ///< a BMP file, or compressed data
};

/** Foreigner's permanent residence card, new edition. */
struct _tagIDCARD_INFO_ALL_FOREIGN_NEW {
    std::string szChineseName; ///< name in Chinese characters; may be empty
    std::string szSex;         ///< without leading and trailing blanks and tabs
    std::string szCardExtra;   ///< the two-character item that the card stores right after the sex
    std::string szBirthYear;   ///< four digits
    std::string szBirthMonth;  ///< two digits
    std::string szBirthDay;    ///< what follows the month
    std::string szEnglishName; ///< name in Latin letters, up to 35 characters
    std::string szID;          ///< card number, 18 characters
    std::string szValidStart;  ///< YYYYMMDD
    std::string szValidEnd;    ///< YYYYMMDD or "长期"
    std::string szNationality; ///< as in the 2017 edition
    unsigned char byPhoto[IDCARD_PHOTO_SIZE]; ///< a BMP file, or compressed data
};
