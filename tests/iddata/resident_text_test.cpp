// CIdData::parseChinaIdText: the text block of a resident identity card.

#include "tests/iddata/decoder.h"
#include "tests/iddata/record_fields.h"
#include "tests/iddata/text_block.h"
#include "tests/support/message_log.h"

#include <new>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using testing::IsEmpty;

class ResidentText : public testing::TestWithParam<GuardedBytes::Side>
{
protected:
    ResidentText() : block(GetParam())
    {
        block.put(0, u"王小明").put(30, u"1").put(32, u"01").put(36, u"19800102");
        block.put(52, u"北京市西城区南大街1号").put(122, u"11010219800102001X");
        block.put(158, u"北京市公安局").put(188, u"20100203").put(204, u"20301231");
        block.put(220, u"XXXXXXXXXXXXXXXXXX"); // reserved
    }

    /** Decodes the block over a record that is full of something else; nothing may be logged. */
    _tagID_TEXT_INFO_CN decode()
    {
        auto record = oldRecord<_tagID_TEXT_INFO_CN>();
        const MessageLog log;
        decoder->parseChinaIdText(block.data(), &record);
        EXPECT_THAT(log.texts(), IsEmpty());
        return record;
    }

    Decoder decoder;
    TextBlock block;
};

INSTANTIATE_TEST_SUITE_P(GuardPages, ResidentText, testing::ValuesIn(GUARD_SIDES));

} // namespace

TEST_P(ResidentText, OrdinaryCard_FillsEveryFieldWithItsPadding)
{
    const _tagID_TEXT_INFO_CN record = decode();
    EXPECT_EQ(record.szName, padded("王小明", 12));
    EXPECT_EQ(record.szSex, "男");
    EXPECT_EQ(record.szNation, "汉");
    EXPECT_EQ(record.szBirthYear, "1980");
    EXPECT_EQ(record.szBirthMonth, "01");
    EXPECT_EQ(record.szBirthDay, "02");
    EXPECT_EQ(record.szAddress, padded("北京市西城区南大街1号", 24));
    EXPECT_EQ(record.szID, "11010219800102001X");
    EXPECT_EQ(record.szDept, padded("北京市公安局", 9));
    EXPECT_EQ(record.szValidStart, "2010.02.03");
    EXPECT_EQ(record.szValidEnd, "2030.12.31");
    EXPECT_EQ(assignedFields(record), allFields<_tagID_TEXT_INFO_CN>());
}

TEST_P(ResidentText, SexCode_IsMaleForOneAloneAndFemaleOtherwise)
{
    const std::pair<const char16_t *, const char *> codes[] = {
        {u"1", "男"}, {u"2", "女"}, {u"0", "女"},  {u"9", "女"},      {u" ", "女"},
        {u"5", "女"}, {u"x", "女"}, {u"男", "女"}, {u"\uff11", "女"},
    };
    for (const auto &[code, sex] : codes) {
        block.put(30, code);
        EXPECT_EQ(decode().szSex, sex);
    }
    block.put(30, std::u16string(1, u'\0'));
    EXPECT_EQ(decode().szSex, "女");
}

TEST_P(ResidentText, EthnicGroup_IsTheNameOfTheNumberThatTheTextBeginsWith)
{
    const std::pair<std::u16string, const char *> codes[] = {
        {u"01", "汉"},   {u"97", "其他"}, {u"98", "外国血统中国籍人士"},
        {u"57", ""},     {u"00", ""},     {u"  ", ""},
        {u" 2", "蒙古"}, {u"2 ", "蒙古"}, {u"3x", "回"},
        {u"x3", ""},     {u"-1", ""},     {u"+4", "藏"},
        {u"汉 ", ""},    {u"99", ""},     {std::u16string{u'5', u'\0'}, "维吾尔"},
    };
    for (const auto &[code, name] : codes) {
        block.put(32, code);
        EXPECT_EQ(decode().szNation, name);
    }
}

TEST_P(ResidentText, LongTermEnd_IsExactlyThatWhereverItStands)
{
    for (const auto *const end :
         {u"长期      ", u"   长期   ", u"      长期", u"2030长期", u"长期长期"}) {
        block.put(204, u"        ").put(204, end);
        EXPECT_EQ(decode().szValidEnd, "长期");
    }
    block.put(204, u"长 期     ");
    EXPECT_NE(decode().szValidEnd, "长期");
}

TEST_P(ResidentText, LongTermStart_IsNoLongTerm)
{
    // The six bytes of the two characters count as six digits.
    block.put(188, u"长期      ");
    EXPECT_EQ(decode().szValidStart, "\u00e9\u0095\u00bf\u00e6.\u009c\u009f.      ");
}

TEST_P(ResidentText, DatesOfZeros_AreDotsAlone)
{
    block.put(36, std::u16string(8, u'\0'));
    block.put(188, std::u16string(8, u'\0'));
    block.put(204, std::u16string(8, u'\0'));
    const _tagID_TEXT_INFO_CN record = decode();
    EXPECT_EQ(record.szBirthYear, "");
    EXPECT_EQ(record.szBirthMonth, "");
    EXPECT_EQ(record.szBirthDay, "");
    EXPECT_EQ(record.szValidStart, "..");
    EXPECT_EQ(record.szValidEnd, "..");
}

TEST_P(ResidentText, ShortDates_GiveShortParts)
{
    const std::pair<std::u16string, const char *> dates[] = {
        {u"2", "2.."},
        {u"2030", "2030.."},
        {u"20301", "2030.1."},
        {u"203012", "2030.12."},
        {u"2030123", "2030.12.3"},
        {u"        ", "    .  .  "},
        {u"2030-1-2", "2030.-1.-2"},
    };
    for (auto [date, expected] : dates) {
        date.resize(8, u'\0');
        block.put(36, date).put(188, date).put(204, date);
        const _tagID_TEXT_INFO_CN record = decode();
        EXPECT_EQ(record.szValidStart, expected);
        EXPECT_EQ(record.szValidEnd, expected);
        EXPECT_EQ(record.szBirthYear + '.' + record.szBirthMonth + '.' + record.szBirthDay,
                  expected);
    }
}

TEST_P(ResidentText, LongTexts_AreCutAfterTheLastWholeCharacter)
{
    const std::u16string fifteen = u"一二三四五六七八九十甲乙丙丁戊";
    const std::u16string thirtyFive = fifteen + fifteen + u"己庚辛壬癸";
    block.put(0, fifteen).put(52, thirtyFive).put(158, fifteen);
    const _tagID_TEXT_INFO_CN record = decode();
    EXPECT_EQ(record.szName, "一二三四五六七八九十");
    EXPECT_EQ(record.szDept, "一二三四五六七八九十");
    EXPECT_EQ(record.szAddress, "一二三四五六七八九十甲乙丙丁戊"
                                "一二三四五六七八九十甲乙丙丁戊己庚辛");
}

TEST_P(ResidentText, CapacityFullToTheLastByte_GivesNoByteMore)
{
    // 31 bytes: one letter and ten characters of three; 101: two letters and 33.
    block.put(0, u"A一二三四五六七八九十BCDE");
    block.put(52, u"AB" + std::u16string(33, u'中'));
    block.put(122, std::u16string(18, u'é'));
    const _tagID_TEXT_INFO_CN record = decode();
    EXPECT_EQ(record.szName, "A一二三四五六七八九十");
    std::string address = "AB";
    std::string number;
    for (int i = 0; i < 33; ++i)
        address += "中";
    for (int i = 0; i < 18; ++i)
        number += "é";
    EXPECT_EQ(record.szAddress, address);
    EXPECT_EQ(record.szID, number);
}

TEST_P(ResidentText, ZeroInsideAText_EndsIt)
{
    block.put(0, std::u16string(u"王\0小", 3));
    EXPECT_EQ(decode().szName, "王");
}

TEST_P(ResidentText, ReservedTail_IsNotLookedAt)
{
    const _tagID_TEXT_INFO_CN before = decode();
    block.put(220, std::u16string(18, u'Y'));
    const _tagID_TEXT_INFO_CN after = decode();
    EXPECT_EQ(after.szValidEnd, before.szValidEnd);
    EXPECT_EQ(after.szDept, before.szDept);
}

TEST_P(ResidentText, Block_IsNotWrittenTo)
{
    TextBlock copy;
    std::copy_n(block.data(), TextBlock::SIZE, copy.data());
    decode();
    EXPECT_TRUE(block == copy);
}

TEST_P(ResidentText, NullPointers_ThrowBeforeAnythingIsWritten)
{
    _tagID_TEXT_INFO_CN record;
    record.szName = "old";
    EXPECT_THROW(decoder->parseChinaIdText(nullptr, &record), std::bad_alloc);
    EXPECT_THROW(decoder->parseChinaIdText(block.data(), nullptr), std::bad_alloc);
    EXPECT_THROW(decoder->parseChinaIdText(nullptr, nullptr), std::bad_alloc);
    EXPECT_EQ(record.szName, "old");
}
