// The public records: the order of their fields, and the sizes that hosts and readers agree on.

#include "api/idcard_reader_api.h"
#include "api/idcard_reader_lib.h"

#include <type_traits>

#include <gtest/gtest.h>

namespace
{

/** Field positions of a record must rise in the documented order. */
template <typename Record>
void expectOrder(std::initializer_list<std::string Record::*> fields)
{
    static Record record;
    const char *const begin = reinterpret_cast<const char *>(&record);
    std::ptrdiff_t expected = 0;
    for (const auto field : fields) {
        EXPECT_EQ(reinterpret_cast<const char *>(&(record.*field)) - begin, expected);
        expected += static_cast<std::ptrdiff_t>(sizeof(std::string));
    }
    EXPECT_EQ(reinterpret_cast<const char *>(&record.byPhoto) - begin, expected);
    EXPECT_EQ(sizeof(record.byPhoto), 38862U);
    static_assert(std::is_aggregate_v<Record>);
}

} // namespace

TEST(ResidentRecord, Fields_AreInTheirOrder)
{
    using R = _tagIDCARD_INFO_ALL_CN;
    static R record;
    expectOrder<R>({&R::szName, &R::szSex, &R::szNation, &R::szBirthYear, &R::szBirthMonth,
                    &R::szBirthDay, &R::szAddress, &R::szID, &R::szDept, &R::szValidStart,
                    &R::szValidEnd});
    EXPECT_LT(static_cast<void *>(&record.byPhoto), static_cast<void *>(&record.fpInfoType));
    EXPECT_LT(static_cast<void *>(&record.fpInfoType), static_cast<void *>(&record.byFpData));
    EXPECT_EQ(sizeof(record.byFpData), 1024U);
    EXPECT_EQ(sizeof(record.fpInfoType), 4U);
}

TEST(HmtRecord, Fields_AreInTheirOrder)
{
    using R = _tagIDCARD_INFO_ALL_HMT;
    expectOrder<R>({&R::szName, &R::szSex, &R::szBirthYear, &R::szBirthMonth, &R::szBirthDay,
                    &R::szAddress, &R::szID, &R::szDept, &R::szValidStart, &R::szValidEnd,
                    &R::szPassNumber, &R::szReserved});
}

TEST(Foreign2017Record, Fields_AreInTheirOrder)
{
    using R = _tagIDCARD_INFO_ALL_FOREIGN_2017;
    expectOrder<R>({&R::szEnglishName, &R::szSex, &R::szID, &R::szNationality, &R::szChineseName,
                    &R::szValidStart, &R::szValidEnd, &R::szBirthYear, &R::szBirthMonth,
                    &R::szBirthDay, &R::szReserved});
}

TEST(ForeignNewRecord, Fields_AreInTheirOrder)
{
    using R = _tagIDCARD_INFO_ALL_FOREIGN_NEW;
    expectOrder<R>({&R::szChineseName, &R::szSex, &R::szCardExtra, &R::szBirthYear,
                    &R::szBirthMonth, &R::szBirthDay, &R::szEnglishName, &R::szID, &R::szValidStart,
                    &R::szValidEnd, &R::szNationality});
}

TEST(FingerprintInfo, Values_AreTwoFirst)
{
    EXPECT_EQ(FP_INFO_TWO, 0);
    EXPECT_EQ(FP_INFO_ONE, 1);
    EXPECT_EQ(FP_INFO_NONE, 2);
    EXPECT_EQ(sizeof(FP_INFO_TYPE), 4U);
}

TEST(CardKind, Values_AreThoseGivenToCallers)
{
    EXPECT_EQ(IDCARD_KIND_CN, 0U);
    EXPECT_EQ(IDCARD_KIND_FOREIGN_2017, 1U);
    EXPECT_EQ(IDCARD_KIND_FOREIGN_NEW, 2U);
    EXPECT_EQ(IDCARD_KIND_HMT, 3U);
}

TEST(ResultCodes, Values_AreFixed)
{
    EXPECT_EQ(IDCARD_RESULT_OK, 0);
    EXPECT_EQ(IDCARD_RESULT_PORT_NOT_OPEN, -5);
    EXPECT_EQ(IDCARD_RESULT_READ_FAILED, -23);
    EXPECT_EQ(IDCARD_RESULT_NO_CARD, -24);
    EXPECT_EQ(IDCARD_RESULT_PHOTO_NOT_DECODED, -26);
    EXPECT_EQ(IDCARD_RESULT_NULL_CARD_KIND, -27);
    EXPECT_EQ(IDCARD_RESULT_NULL_CN, -28);
    EXPECT_EQ(IDCARD_RESULT_NULL_FOREIGN_2017, -29);
    EXPECT_EQ(IDCARD_RESULT_NULL_FOREIGN_NEW, -30);
    EXPECT_EQ(IDCARD_RESULT_NULL_HMT, -31);
    EXPECT_EQ(IDCARD_RESULT_NULL_FRONT_IMAGE, -39);
    EXPECT_EQ(IDCARD_RESULT_NULL_BACK_IMAGE, -40);
}

TEST(GetSDKVersion, EveryCall_GivesTheSameThirteenCharacters)
{
    EXPECT_EQ(getSDKVersion(), "version:1.5.0");
    EXPECT_EQ(getSDKVersion(), getSDKVersion());
    EXPECT_EQ(getSDKVersion().size(), 13U);
}

TEST(IdcardReaderLib, Class_CanBeConstructed)
{
    const Idcard_reader_lib object;
    EXPECT_TRUE(std::is_empty_v<decltype(object)>);
}
