// CIdData::parseForeignNewIDText: the text block of a foreigner's card of the new edition.

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

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;
using testing::StartsWith;
using Record = _tagID_TEXT_INFO_FOREIGN_NEW;

class ForeignNewText : public testing::TestWithParam<GuardedBytes::Side>
{
protected:
    ForeignNewText() : block(GetParam())
    {
        block.put(0, u"史密斯").put(30, u"1").put(32, u"AB").put(36, u"19580101");
        block.put(52, u"SMITH, JOHN").put(122, u"911840195801010015").put(158, u"国家移民管理局");
        block.put(188, u"20231201").put(204, u"20331130").put(220, u"EDWARD");
        block.put(242, u"USA").put(248, u"Y").put(250, u"XXX");
    }

    Record decode()
    {
        auto record = oldRecord<Record>();
        const MessageLog log;
        decoder->parseForeignNewIDText(block.data(), &record);
        texts = log.texts();
        return record;
    }

    Decoder decoder;
    TextBlock block;
    std::vector<std::string> texts;
};

INSTANTIATE_TEST_SUITE_P(GuardPages, ForeignNewText, testing::ValuesIn(GUARD_SIDES));

} // namespace

TEST_P(ForeignNewText, OrdinaryCard_FillsEveryFieldWithItsPadding)
{
    const Record record = decode();
    EXPECT_EQ(record.szChineseName, padded("史密斯", 12));
    EXPECT_EQ(record.szSex, "男");
    EXPECT_EQ(record.szCardExtra, "AB");
    EXPECT_EQ(record.szBirthYear, "1958");
    EXPECT_EQ(record.szBirthMonth, "01");
    EXPECT_EQ(record.szBirthDay, "01");
    EXPECT_EQ(record.szEnglishName, padded("SMITH, JOHN", 20)); // 31 of the field's 35 characters
    EXPECT_EQ(record.szID, "911840195801010015");
    EXPECT_EQ(record.szValidStart, "2023.12.01");
    EXPECT_EQ(record.szValidEnd, "2033.11.30");
    EXPECT_EQ(record.szNationality, "美国 / USA");
    EXPECT_EQ(assignedFields(record), allFields<Record>());
}

TEST_P(ForeignNewText, Lines_ComeInOrderEachWithWhatIsAssignedByThen)
{
    auto record = oldRecord<Record>();
    const LogWatch log([&record] { return assignedFields(record); });
    decoder->parseForeignNewIDText(block.data(), &record);
    const std::string extra = "szChineseName szSex szCardExtra";
    const std::string english = extra + " szBirthYear szBirthMonth szBirthDay szEnglishName";
    const std::string valid = english + " szID szValidStart szValidEnd";
    EXPECT_THAT(log.lines(),
                ElementsAre(Pair("<so>szSexCode=1", "szChineseName"),
                            Pair("genderName =  \"男\"", "szChineseName"),
                            Pair("pid_text_info_foreign_new->gender=男", "szChineseName szSex"),
                            Pair("<from so>szBirth=19580101", extra),
                            Pair("<so>szEnglishName=" + padded("SMITH, JOHN", 20), english),
                            Pair("nationality= \"美国\"", valid),
                            Pair("pid_text_info_foreign_new->nationality= 美国 / USA",
                                 valid + " szNationality")));
}

TEST_P(ForeignNewText, Lines_AreDebugLinesOfTheDefaultCategory)
{
    auto record = oldRecord<Record>();
    const MessageLog log;
    decoder->parseForeignNewIDText(block.data(), &record);
    for (const MessageLog::Message &message : log.messages()) {
        EXPECT_EQ(message.type, QtDebugMsg) << message.text;
        EXPECT_EQ(message.category, "default") << message.text;
    }
}

TEST_P(ForeignNewText, SexCode_IsItsLabel)
{
    const std::pair<const char16_t *, std::string> codes[] = {
        {u"0", "未知"}, {u"1", "男"}, {u"2", "女"}, {u"9", "未说明"}, {u" ", "未知"}};
    for (const auto &[code, label] : codes) {
        block.put(30, code);
        EXPECT_EQ(decode().szSex, label);
        EXPECT_EQ(texts[1], "genderName =  \"" + label + "\"");
        EXPECT_EQ(texts[2], "pid_text_info_foreign_new->gender=" + label);
    }
}

TEST_P(ForeignNewText, UnassignedSexCode_IsLoggedAndEndsTheDecodingAfterTheName)
{
    for (const std::string code : {"3", "4", "5", "6", "7", "8"}) {
        block.put(30, std::u16string(code.begin(), code.end()));
        auto record = oldRecord<Record>();
        const LogWatch log([&record] { return assignedFields(record); });
        decoder->parseForeignNewIDText(block.data(), &record);
        EXPECT_THAT(log.lines(), ElementsAre(Pair("<so>szSexCode=" + code, "szChineseName"),
                                             Pair("gender parse fail!", "szChineseName")));
        EXPECT_EQ(assignedFields(record), "szChineseName");
        EXPECT_EQ(record.szChineseName, padded("史密斯", 12));
    }
}

TEST_P(ForeignNewText, EnglishName_KeepsThirtyOneBytesAndIsNotContinued)
{
    block.put(52, u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghi");
    EXPECT_EQ(decode().szEnglishName, "ABCDEFGHIJKLMNOPQRSTUVWXYZabcde");
    EXPECT_THAT(texts, Contains("<so>szEnglishName=ABCDEFGHIJKLMNOPQRSTUVWXYZabcde"));
}

TEST_P(ForeignNewText, UnknownCountry_GivesTheCodeAloneAndNoLineAboutTheName)
{
    const std::pair<std::u16string, std::string> codes[] = {
        {u"ZZZ", "ZZZ"}, {u"usa", "usa"},           {u"   ", "   "},
        {u"CR ", "CR "}, {u"中国人", "中国"},       {std::u16string(3, u'\0'), ""},
        {u"STP", "STP"}, {u"\ufeffCR", "\ufeffCR"},
    };
    for (const auto &[text, code] : codes) {
        block.put(242, text);
        EXPECT_EQ(decode().szNationality, " / " + code);
        EXPECT_EQ(texts.back(), "pid_text_info_foreign_new->nationality=  / " + code);
        EXPECT_THAT(texts, Not(Contains(StartsWith("nationality="))));
    }
}

TEST_P(ForeignNewText, CodeOfTwoLetters_IsFoundWhenAZeroEndsIt)
{
    block.put(242, {u'C', u'R', u'\0'});
    EXPECT_EQ(decode().szNationality, "哥斯达黎加 / CR");
}

TEST_P(ForeignNewText, LongTermEnd_IsNotRecognised)
{
    block.put(204, u"长期      ");
    EXPECT_EQ(decode().szValidEnd, "\u00e9\u0095\u00bf\u00e6.\u009c\u009f.      ");
}

TEST_P(ForeignNewText, DroppedFields_ChangeNothing)
{
    const Record before = decode();
    const auto linesBefore = texts;
    block.put(158, std::u16string(15, u'中')).put(220, std::u16string(11, u'\xd800'));
    block.put(248, u"IXXX");
    const Record after = decode();
    for (const auto &field : fieldsOf(after))
        EXPECT_EQ(after.*field.member, before.*field.member) << field.name;
    EXPECT_EQ(texts, linesBefore);
}

TEST_P(ForeignNewText, NullPointers_ThrowBeforeAnythingIsLoggedOrWritten)
{
    auto record = oldRecord<Record>();
    const MessageLog log;
    EXPECT_THROW(decoder->parseForeignNewIDText(nullptr, &record), std::bad_alloc);
    EXPECT_THROW(decoder->parseForeignNewIDText(block.data(), nullptr), std::bad_alloc);
    EXPECT_EQ(assignedFields(record), "");
    EXPECT_THAT(log.texts(), IsEmpty());
}
