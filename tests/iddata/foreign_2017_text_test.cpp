// CIdData::parseForeign2017IDText: the text block of a foreigner's card of 2017.

#include "tests/iddata/decoder.h"
#include "tests/iddata/log_watch.h"
#include "tests/iddata/record_fields.h"
#include "tests/iddata/text_block.h"
#include "tests/support/message_log.h"

#include <new>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using Record = _tagID_TEXT_INFO_FOREIGN_2017;

class Foreign2017Text : public testing::TestWithParam<GuardedBytes::Side>
{
protected:
    Foreign2017Text() : block(GetParam())
    {
        block.put(0, u"SMITH, JOHN").put(120, u"1").put(122, u"USA310058010101").put(152, u"USA");
        block.put(158, u"史密斯").put(188, u"20180304").put(204, u"20280303").put(220, u"19580101");
        block.put(236, u"01").put(240, u"1500").put(248, u"I").put(250, u"XXX");
    }

    Record decode()
    {
        auto record = oldRecord<Record>();
        const MessageLog log;
        decoder->parseForeign2017IDText(block.data(), &record);
        EXPECT_THAT(log.texts(), IsEmpty());
        return record;
    }

    Decoder decoder;
    TextBlock block;
};

INSTANTIATE_TEST_SUITE_P(GuardPages, Foreign2017Text, testing::ValuesIn(GUARD_SIDES));

} // namespace

TEST_P(Foreign2017Text, OrdinaryCard_FillsEveryFieldWithItsPadding)
{
    const Record record = decode();
    EXPECT_EQ(record.szEnglishName, padded("SMITH, JOHN", 20)); // 31 of the field's 60 characters
    EXPECT_EQ(record.szSex, "男");
    EXPECT_EQ(record.szID, "USA310058010101");
    EXPECT_EQ(record.szNationalityCode, "USA");
    EXPECT_EQ(record.szChineseName, padded("史密斯", 12));
    EXPECT_EQ(record.szValidStart, "2018.03.04");
    EXPECT_EQ(record.szValidEnd, "2028.03.03");
    EXPECT_EQ(record.szBirthYear, "1958");
    EXPECT_EQ(record.szBirthMonth, "01");
    EXPECT_EQ(record.szBirthDay, "01");
    EXPECT_EQ(assignedFields(record), allFields<Record>());
}

TEST_P(Foreign2017Text, SexCode_IsItsLabel)
{
    const std::pair<std::u16string, const char *> codes[] = {
        {u"0", "未知"},      {u"1", "男"},    {u"2", "女"},
        {u"9", "未说明"},    {u" ", "未知"},  {std::u16string(1, u'\0'), "未知"},
        {u"x", "未知"},      {u"男", "未知"}, {u"\u0661", "未知"},
        {u"\xd800", "未知"},
    };
    for (const auto &[code, label] : codes) {
        block.put(120, code);
        EXPECT_EQ(decode().szSex, label);
    }
}

TEST_P(Foreign2017Text, UnassignedSexCode_IsLoggedAndEndsTheDecodingAfterTheName)
{
    for (const auto *const code : {u"3", u"4", u"5", u"6", u"7", u"8"}) {
        block.put(120, code);
        auto record = oldRecord<Record>();
        const LogWatch log([&record] { return assignedFields(record); });
        decoder->parseForeign2017IDText(block.data(), &record);
        EXPECT_THAT(log.lines(), ElementsAre(Pair("gender parse fail!", "szEnglishName")));
        EXPECT_EQ(assignedFields(record), "szEnglishName");
        EXPECT_EQ(record.szEnglishName, padded("SMITH, JOHN", 20));
    }
}

TEST_P(Foreign2017Text, EnglishName_KeepsItsFirstThirtyOneBytes)
{
    block.put(0, u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz01234567");
    EXPECT_EQ(decode().szEnglishName, "ABCDEFGHIJKLMNOPQRSTUVWXYZabcde");
    block.put(0, u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdéfghij");
    EXPECT_EQ(decode().szEnglishName, "ABCDEFGHIJKLMNOPQRSTUVWXYZabcd");
    block.put(0, u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcéfghij");
    EXPECT_EQ(decode().szEnglishName, "ABCDEFGHIJKLMNOPQRSTUVWXYZabcé");
}

TEST_P(Foreign2017Text, LongTermEnd_IsNotRecognised)
{
    block.put(204, u"长期      ");
    // Each byte of the two characters stands for a digit.
    EXPECT_EQ(decode().szValidEnd, "\u00e9\u0095\u00bf\u00e6.\u009c\u009f.      ");
}

TEST_P(Foreign2017Text, Nationality_StaysTheCodeOfTheCard)
{
    for (const auto &[text, code] :
         {std::pair(u"ZZZ", "ZZZ"), std::pair(u"usa", "usa"), std::pair(u"CR ", "CR ")}) {
        block.put(152, text);
        EXPECT_EQ(decode().szNationalityCode, code);
    }
}

TEST_P(Foreign2017Text, DroppedFields_ChangeNothing)
{
    const Record before = decode();
    block.put(236, u"中文").put(240, u"\xd800XXX").put(248, u"YXXX");
    const Record after = decode();
    for (const auto &field : fieldsOf(after))
        EXPECT_EQ(after.*field.member, before.*field.member) << field.name;
}

TEST_P(Foreign2017Text, NullPointers_ThrowBeforeAnythingIsWritten)
{
    auto record = oldRecord<Record>();
    EXPECT_THROW(decoder->parseForeign2017IDText(nullptr, &record), std::bad_alloc);
    EXPECT_THROW(decoder->parseForeign2017IDText(block.data(), nullptr), std::bad_alloc);
    EXPECT_EQ(assignedFields(record), "");
}
