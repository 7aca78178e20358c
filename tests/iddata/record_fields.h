#pragma once

// The fields of the four text records by name, in their order.

#include <string>

#include "iddata/id_text_records.h"
#include "tests/library/named_field.h"

inline NamedFields<_tagID_TEXT_INFO_CN> fieldsOf(const _tagID_TEXT_INFO_CN &)
{
    using R = _tagID_TEXT_INFO_CN;
    return {NAMED(R, szName),       NAMED(R, szSex),        NAMED(R, szNation),
            NAMED(R, szBirthYear),  NAMED(R, szBirthMonth), NAMED(R, szBirthDay),
            NAMED(R, szAddress),    NAMED(R, szID),         NAMED(R, szDept),
            NAMED(R, szValidStart), NAMED(R, szValidEnd)};
}

inline NamedFields<_tagID_TEXT_INFO_HMT> fieldsOf(const _tagID_TEXT_INFO_HMT &)
{
    using R = _tagID_TEXT_INFO_HMT;
    return {NAMED(R, szName),       NAMED(R, szSex),        NAMED(R, szBirthYear),
            NAMED(R, szBirthMonth), NAMED(R, szBirthDay),   NAMED(R, szAddress),
            NAMED(R, szID),         NAMED(R, szDept),       NAMED(R, szValidStart),
            NAMED(R, szValidEnd),   NAMED(R, szPassNumber), NAMED(R, szIssueCount)};
}

inline NamedFields<_tagID_TEXT_INFO_FOREIGN_2017> fieldsOf(const _tagID_TEXT_INFO_FOREIGN_2017 &)
{
    using R = _tagID_TEXT_INFO_FOREIGN_2017;
    return {NAMED(R, szEnglishName),     NAMED(R, szSex),         NAMED(R, szID),
            NAMED(R, szNationalityCode), NAMED(R, szChineseName), NAMED(R, szValidStart),
            NAMED(R, szValidEnd),        NAMED(R, szBirthYear),   NAMED(R, szBirthMonth),
            NAMED(R, szBirthDay)};
}

inline NamedFields<_tagID_TEXT_INFO_FOREIGN_NEW> fieldsOf(const _tagID_TEXT_INFO_FOREIGN_NEW &)
{
    using R = _tagID_TEXT_INFO_FOREIGN_NEW;
    return {NAMED(R, szChineseName), NAMED(R, szSex),        NAMED(R, szCardExtra),
            NAMED(R, szBirthYear),   NAMED(R, szBirthMonth), NAMED(R, szBirthDay),
            NAMED(R, szEnglishName), NAMED(R, szID),         NAMED(R, szValidStart),
            NAMED(R, szValidEnd),    NAMED(R, szNationality)};
}

/** What the fields of `oldRecord` hold. */
inline constexpr const char *OLD_TEXT = "old";

/** A record that was used before. */
template <typename Record>
Record oldRecord()
{
    Record record;
    for (const auto &field : fieldsOf(record))
        record.*field.member = OLD_TEXT;
    return record;
}

/** The names of the fields that differ from those of `oldRecord`, separated by blanks. */
template <typename Record>
std::string assignedFields(const Record &record)
{
    std::string names;
    for (const auto &field : fieldsOf(record))
        if (record.*field.member != OLD_TEXT)
            names += (names.empty() ? "" : " ") + std::string(field.name);
    return names;
}
