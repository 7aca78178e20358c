#pragma once

// Where the fields of the four kinds of document lie in the text block of the raw card record, and
// what is made of each: one table for each kind, in the order in which its fields are decoded.
//
// A capacity is part of what a card reads as: text whose UTF-8 form is longer is cut after the last
// whole character that fits. That names and addresses are cut, and the English names so early, is
// on purpose.

#include "iddata/id_text_records.h"

namespace card_layouts
{

/** What is made of the text of a field. */
enum class Use {
    DROPPED,           ///< decoded, and nothing else
    TEXT,              ///< as it is
    MALE_OR_FEMALE,    ///< 男 for the code 1, 女 for any other
    SEX_LABEL,         ///< the label of the code; decoding ends when there is none
    ETHNIC_GROUP,      ///< the name of the code
    BIRTH_DATE,        ///< split into year, month and day
    DATE,              ///< YYYY.MM.DD
    DATE_OR_LONG_TERM, ///< the same, or 长期
    COUNTRY,           ///< the country's Chinese name, " / ", the code
};

/** Beginnings of the debug lines about a field; null where there is no line. */
struct LogLines {
    const char *decoded = nullptr;  ///< before the text is used; the text follows
    const char *label = nullptr;    ///< what the code means; its label follows, quoted
    const char *assigned = nullptr; ///< when the record has it; what was assigned follows
};

template <typename Record>
struct Field {
    int offset;   ///< bytes from the start of the text block
    int size;     ///< bytes of UCS-2 text
    int capacity; ///< bytes of UTF-8 text that are kept at most
    Use use;
    /** Null for what is dropped, and for the date of birth, which goes to three fields. */
    std::string Record::*field = nullptr;
    LogLines log = {};
};

/** When the fields of the record are assigned: it is seen when decoding ends early or logs. */
enum class Assignment {
    FIELD_BY_FIELD,    ///< each as soon as it is decoded
    AFTER_ALL_DECODED, ///< in the table's order
};

template <typename Record, int count>
struct Layout {
    Assignment assignment;
    Field<Record> fields[count];
};

/** Bytes of the text block before the letter of the kind. */
constexpr int KIND_LETTER_OFFSET = 248;

/** The largest capacity of a field. */
constexpr int MAX_CAPACITY = 101;

/** Whether the fields follow each other without a gap and stay before the letter. */
template <typename Record, int count>
constexpr bool isSound(const Layout<Record, count> &layout)
{
    int end = 0;
    for (const Field<Record> &field : layout.fields) {
        if (field.offset != end || field.size <= 0 || field.capacity <= 0 ||
            field.capacity > MAX_CAPACITY)
            return false;
        end = field.offset + field.size;
    }
    return end <= KIND_LETTER_OFFSET;
}

using Cn = _tagID_TEXT_INFO_CN;
using Hmt = _tagID_TEXT_INFO_HMT;
using Foreign2017 = _tagID_TEXT_INFO_FOREIGN_2017;
using ForeignNew = _tagID_TEXT_INFO_FOREIGN_NEW;

inline constexpr Layout<Cn, 9> CN_LAYOUT = {
    Assignment::AFTER_ALL_DECODED,
    {
        {0, 30, 31, Use::TEXT, &Cn::szName},
        {30, 2, 3, Use::MALE_OR_FEMALE, &Cn::szSex},
        {32, 4, 5, Use::ETHNIC_GROUP, &Cn::szNation},
        {36, 16, 17, Use::BIRTH_DATE},
        {52, 70, 101, Use::TEXT, &Cn::szAddress},
        {122, 36, 37, Use::TEXT, &Cn::szID},
        {158, 30, 31, Use::TEXT, &Cn::szDept},
        {188, 16, 17, Use::DATE, &Cn::szValidStart},
        {204, 16, 17, Use::DATE_OR_LONG_TERM, &Cn::szValidEnd},
    },
};
static_assert(isSound(CN_LAYOUT));

inline constexpr Layout<Hmt, 11> HMT_LAYOUT = {
    Assignment::AFTER_ALL_DECODED,
    {
        {0, 30, 31, Use::TEXT, &Hmt::szName},
        {30, 2, 3, Use::MALE_OR_FEMALE, &Hmt::szSex},
        {32, 4, 5, Use::DROPPED}, // reserved
        {36, 16, 17, Use::BIRTH_DATE},
        {52, 70, 101, Use::TEXT, &Hmt::szAddress},
        {122, 36, 37, Use::TEXT, &Hmt::szID, {"szID="}},
        {158, 30, 31, Use::TEXT, &Hmt::szDept, {"szDept="}},
        {188, 16, 17, Use::DATE, &Hmt::szValidStart},
        {204, 16, 17, Use::DATE_OR_LONG_TERM, &Hmt::szValidEnd},
        {220, 18, 19, Use::TEXT, &Hmt::szPassNumber},
        {238, 4, 5, Use::TEXT, &Hmt::szIssueCount},
    },
};
static_assert(isSound(HMT_LAYOUT));

inline constexpr Layout<Foreign2017, 10> FOREIGN_2017_LAYOUT = {
    Assignment::FIELD_BY_FIELD,
    {
        {0, 120, 31, Use::TEXT, &Foreign2017::szEnglishName},
        {120, 2, 3, Use::SEX_LABEL, &Foreign2017::szSex},
        {122, 30, 31, Use::TEXT, &Foreign2017::szID},
        {152, 6, 7, Use::TEXT, &Foreign2017::szNationalityCode},
        {158, 30, 31, Use::TEXT, &Foreign2017::szChineseName},
        {188, 16, 17, Use::DATE, &Foreign2017::szValidStart},
        {204, 16, 17, Use::DATE, &Foreign2017::szValidEnd},
        {220, 16, 17, Use::BIRTH_DATE},
        {236, 4, 5, Use::DROPPED}, // card version
        {240, 8, 9, Use::DROPPED}, // code of the issuing authority
    },
};
static_assert(isSound(FOREIGN_2017_LAYOUT));

// Debug lines of the new edition's fields. The last is one of a debug stream, whose items a blank
// separates.
inline constexpr LogLines FOREIGN_NEW_SEX = {
    "<so>szSexCode=", "genderName = ", "pid_text_info_foreign_new->gender="};
inline constexpr LogLines FOREIGN_NEW_BIRTH = {"<from so>szBirth="};
inline constexpr LogLines FOREIGN_NEW_ENGLISH_NAME = {nullptr, nullptr, "<so>szEnglishName="};
inline constexpr LogLines FOREIGN_NEW_NATIONALITY = {nullptr, nullptr,
                                                     "pid_text_info_foreign_new->nationality= "};

inline constexpr Layout<ForeignNew, 11> FOREIGN_NEW_LAYOUT = {
    Assignment::FIELD_BY_FIELD,
    {
        {0, 30, 31, Use::TEXT, &ForeignNew::szChineseName},
        {30, 2, 3, Use::SEX_LABEL, &ForeignNew::szSex, FOREIGN_NEW_SEX},
        {32, 4, 5, Use::TEXT, &ForeignNew::szCardExtra},
        {36, 16, 17, Use::BIRTH_DATE, nullptr, FOREIGN_NEW_BIRTH},
        {52, 70, 31, Use::TEXT, &ForeignNew::szEnglishName, FOREIGN_NEW_ENGLISH_NAME},
        {122, 36, 37, Use::TEXT, &ForeignNew::szID},
        {158, 30, 31, Use::DROPPED},
        {188, 16, 17, Use::DATE, &ForeignNew::szValidStart},
        {204, 16, 17, Use::DATE, &ForeignNew::szValidEnd},
        {220, 22, 23, Use::DROPPED}, // not joined to the English name
        {242, 6, 7, Use::COUNTRY, &ForeignNew::szNationality, FOREIGN_NEW_NATIONALITY},
    },
};
static_assert(isSound(FOREIGN_NEW_LAYOUT));

} // namespace card_layouts
