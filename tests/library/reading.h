#pragma once

// Helpers to script the card that one call of readIDCard reads, and to look at what it wrote.

#include "common/card_info_struct.h"
#include "tests/library/named_field.h"
#include "tests/library/outputs.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include <QString>

#include "tests/support/ucs2.h"

// The text fields of a record in the order in which a read writes them.

inline NamedFields<_tagIDCARD_INFO_ALL_CN> fieldsOf(const _tagIDCARD_INFO_ALL_CN &)
{
    using R = _tagIDCARD_INFO_ALL_CN;
    return {NAMED(R, szName),      NAMED(R, szSex),        NAMED(R, szNation),   NAMED(R, szID),
            NAMED(R, szAddress),   NAMED(R, szValidStart), NAMED(R, szValidEnd), NAMED(R, szDept),
            NAMED(R, szBirthYear), NAMED(R, szBirthMonth), NAMED(R, szBirthDay)};
}
inline NamedFields<_tagIDCARD_INFO_ALL_HMT> fieldsOf(const _tagIDCARD_INFO_ALL_HMT &)
{
    using R = _tagIDCARD_INFO_ALL_HMT;
    return {NAMED(R, szName),       NAMED(R, szSex),        NAMED(R, szID),
            NAMED(R, szAddress),    NAMED(R, szValidStart), NAMED(R, szValidEnd),
            NAMED(R, szBirthYear),  NAMED(R, szBirthMonth), NAMED(R, szBirthDay),
            NAMED(R, szPassNumber), NAMED(R, szDept)};
}
inline NamedFields<_tagIDCARD_INFO_ALL_FOREIGN_2017>
fieldsOf(const _tagIDCARD_INFO_ALL_FOREIGN_2017 &)
{
    using R = _tagIDCARD_INFO_ALL_FOREIGN_2017;
    return {NAMED(R, szEnglishName), NAMED(R, szSex),         NAMED(R, szID),
            NAMED(R, szNationality), NAMED(R, szChineseName), NAMED(R, szValidStart),
            NAMED(R, szValidEnd),    NAMED(R, szBirthYear),   NAMED(R, szBirthMonth),
            NAMED(R, szBirthDay)};
}
inline NamedFields<_tagIDCARD_INFO_ALL_FOREIGN_NEW>
fieldsOf(const _tagIDCARD_INFO_ALL_FOREIGN_NEW &)
{
    using R = _tagIDCARD_INFO_ALL_FOREIGN_NEW;
    return {NAMED(R, szChineseName), NAMED(R, szSex),         NAMED(R, szID),
            NAMED(R, szNationality), NAMED(R, szEnglishName), NAMED(R, szValidStart),
            NAMED(R, szValidEnd),    NAMED(R, szBirthYear),   NAMED(R, szBirthMonth),
            NAMED(R, szBirthDay),    NAMED(R, szCardExtra)};
}

/** Every string field of a record; the spare one, which no read writes, is the last. */
template <typename Record>
std::vector<std::string *> stringFields(Record &record)
{
    std::vector<std::string *> fields;
    for (const auto &field : fieldsOf(record))
        fields.push_back(&(record.*field.member));
    if constexpr (std::is_same_v<Record, _tagIDCARD_INFO_ALL_HMT> ||
                  std::is_same_v<Record, _tagIDCARD_INFO_ALL_FOREIGN_2017>)
        fields.push_back(&record.szReserved);
    return fields;
}

/** A value in every field, so that a field written by mistake shows. */
template <typename Record>
void mark(Record &record)
{
    int number = 0;
    for (std::string *field : stringFields(record))
        *field = "before " + std::to_string(number++);
    std::memset(record.byPhoto, 0xa5, sizeof(record.byPhoto));
}

template <typename Record>
void expectUntouched(Record &record, const char *which)
{
    int number = 0;
    for (const std::string *field : stringFields(record))
        EXPECT_EQ(*field, "before " + std::to_string(number++)) << which;
    for (const unsigned char byte : record.byPhoto) {
        if (byte != 0xa5) {
            ADD_FAILURE() << which << ": byPhoto was written";
            break;
        }
    }
}

inline void mark(Reading &reading)
{
    mark(reading.cn);
    mark(reading.f2017);
    mark(reading.fNew);
    mark(reading.hmt);
    reading.cn.fpInfoType = static_cast<FP_INFO_TYPE>(77);
    std::memset(reading.cn.byFpData, 0x5a, sizeof(reading.cn.byFpData));
}

inline void expectCnUntouched(Reading &reading)
{
    expectUntouched(reading.cn, "cn");
    EXPECT_EQ(reading.cn.fpInfoType, 77);
    for (const unsigned char byte : reading.cn.byFpData)
        ASSERT_EQ(byte, 0x5a) << "byFpData was written";
}

/** Nothing that `mark` marked has changed, nor the kind and the pictures. */
inline void expectUntouched(Reading &reading)
{
    EXPECT_EQ(reading.cardKind, NO_KIND);
    expectCnUntouched(reading);
    expectUntouched(reading.f2017, "f2017");
    expectUntouched(reading.fNew, "fNew");
    expectUntouched(reading.hmt, "hmt");
    EXPECT_EQ(reading.front, "front before");
    EXPECT_EQ(reading.back, "back before");
}

/** Writes `text` as UCS-2, little-endian, at byte `offset` of the maker's record. */
inline void putText(CardInfoStruct &info, int offset, const QString &text)
{
    const std::vector<unsigned char> bytes = ucs2(text.toStdU16String());
    std::copy(bytes.begin(), bytes.end(), reinterpret_cast<unsigned char *>(&info) + offset);
}
