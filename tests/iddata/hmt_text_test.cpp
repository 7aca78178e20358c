// CIdData::parseHMTIDText: the text block of a residence permit.

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
using Record = _tagID_TEXT_INFO_HMT;

class HmtText : public testing::TestWithParam<GuardedBytes::Side>
{
protected:
    HmtText() : block(GetParam())
    {
        block.put(0, u"陈大文").put(30, u"2").put(32, u"77").put(36, u"19900203");
        block.put(52, u"广东省深圳市福田区福中路8号").put(122, u"81000019900203002");
        block.put(158, u"深圳市公安局").put(188, u"20190101").put(204, u"20240101");
        block.put(220, u"H12345678").put(238, u"01").put(248, u"J").put(250, u"XXX");
    }

    Record decode()
    {
        auto record = oldRecord<Record>();
        const MessageLog log;
        decoder->parseHMTIDText(block.data(), &record);
        EXPECT_EQ(log.texts().size(), 2U);
        return record;
    }

    Decoder decoder;
    TextBlock block;
};

INSTANTIATE_TEST_SUITE_P(GuardPages, HmtText, testing::ValuesIn(GUARD_SIDES));

} // namespace

TEST_P(HmtText, OrdinaryPermit_FillsEveryFieldWithItsPadding)
{
    const Record record = decode();
    EXPECT_EQ(record.szName, padded("陈大文", 12));
    EXPECT_EQ(record.szSex, "女");
    EXPECT_EQ(record.szBirthYear, "1990");
    EXPECT_EQ(record.szBirthMonth, "02");
    EXPECT_EQ(record.szBirthDay, "03");
    EXPECT_EQ(record.szAddress, padded("广东省深圳市福田区福中路8号", 21));
    EXPECT_EQ(record.szID, "81000019900203002 ");
    EXPECT_EQ(record.szDept, padded("深圳市公安局", 9));
    EXPECT_EQ(record.szValidStart, "2019.01.01");
    EXPECT_EQ(record.szValidEnd, "2024.01.01");
    EXPECT_EQ(record.szPassNumber, "H12345678");
    EXPECT_EQ(record.szIssueCount, "01");
    EXPECT_EQ(assignedFields(record), allFields<Record>());
}

TEST_P(HmtText, NumberAndAuthority_AreLoggedWithPaddingBeforeAnyFieldIsAssigned)
{
    auto record = oldRecord<Record>();
    const LogWatch log([&record] { return assignedFields(record); });
    decoder->parseHMTIDText(block.data(), &record);
    EXPECT_THAT(log.lines(), ElementsAre(Pair("szID=81000019900203002 ", ""),
                                         Pair("szDept=深圳市公安局         ", "")));
}

TEST_P(HmtText, LoggedTexts_AreTakenAsTheyAre)
{
    block.put(122, u"%s%n%1 100%        ").put(158, u"一二三四五六七八九十甲乙丙丁戊");
    auto record = oldRecord<Record>();
    const MessageLog log;
    decoder->parseHMTIDText(block.data(), &record);
    EXPECT_THAT(log.texts(), ElementsAre("szID=%s%n%1 100%       ", "szDept=一二三四五六七八九十"));
    for (const MessageLog::Message &message : log.messages()) {
        EXPECT_EQ(message.type, QtDebugMsg);
        EXPECT_EQ(message.category, "default");
    }
}

TEST_P(HmtText, SexCode_IsMaleForOneAlone)
{
    const std::pair<const char16_t *, const char *> codes[] = {
        {u"1", "男"}, {u"2", "女"}, {u"0", "女"}, {u"9", "女"}, {u" ", "女"}, {u"5", "女"}};
    for (const auto &[code, sex] : codes) {
        block.put(30, code);
        EXPECT_EQ(decode().szSex, sex);
    }
}

TEST_P(HmtText, ReservedBytes_ChangeNothing)
{
    const Record before = decode();
    for (const auto *const text : {u"01", u"  ", u"中文", u"\ufeff\xd800"}) {
        block.put(32, text).put(242, u"XYZ").put(250, u"XYZ");
        const Record after = decode();
        for (const auto &field : fieldsOf(after))
            EXPECT_EQ(after.*field.member, before.*field.member) << field.name;
    }
}

TEST_P(HmtText, LongTermEnd_IsExactlyThat)
{
    block.put(204, u"长期      ");
    EXPECT_EQ(decode().szValidEnd, "长期");
}

TEST_P(HmtText, PassNumberAndIssueCount_AreTextAndCutToTheirCapacity)
{
    block.put(220, u"一二三四五六七八九").put(238, u"十七");
    const Record record = decode();
    EXPECT_EQ(record.szPassNumber, "一二三四五六"); // 18 of 19 bytes
    EXPECT_EQ(record.szIssueCount, "十");           // 3 of 5 bytes
}

TEST_P(HmtText, NullPointers_ThrowBeforeAnythingIsLoggedOrWritten)
{
    auto record = oldRecord<Record>();
    const MessageLog log;
    EXPECT_THROW(decoder->parseHMTIDText(nullptr, &record), std::bad_alloc);
    EXPECT_THROW(decoder->parseHMTIDText(block.data(), nullptr), std::bad_alloc);
    EXPECT_EQ(assignedFields(record), "");
    EXPECT_THAT(log.texts(), IsEmpty());
}
