// Field extraction: where every output field comes from, kind by kind, and how it is converted.

#include "tests/library/closed_library_mock.h"
#include "tests/library/reading.h"

#include <functional>

namespace
{

using testing::_;

/** The characters of a record filled with a different ideograph at every place. */
QString charactersAt(int offset, int size)
{
    QString text;
    for (int at = offset; at < offset + size; at += 2)
        text += QChar(0x4e00 + at);
    return text;
}

class FieldExtraction : public ScriptedReader
{
protected:
    /** Reads a card of the maker's kind `kind` whose record `fill` has filled. */
    void read(int kind, const std::function<void(CardInfoStruct &)> &fill)
    {
        expectFoundCard();
        EXPECT_CALL(library, readIDCard(_, _, _, _, _, _, _))
            .WillOnce([kind, fill](int, CardInfoStruct *info, unsigned char *, unsigned int *,
                                   unsigned char *, unsigned int *, int) {
                fill(*info);
                info->kind = kind;
                return DONE;
            });
        expectClose();
        ASSERT_EQ(reading.read(), 0);
    }

    /** Reads a card whose record holds a different character at every place. */
    void readFull(int kind)
    {
        read(kind, [](CardInfoStruct &info) { putText(info, 4, charactersAt(4, 1076)); });
    }

    Reading reading;
};

void expectText(const std::string &value, int offset, int size, const char *field)
{
    EXPECT_EQ(value, charactersAt(offset, size).toStdString()) << field;
}

} // namespace

TEST_F(FieldExtraction, ResidentCard_TakesEveryFieldFromItsPlace)
{
    readFull(1);
    const auto &r = reading.cn;
    expectText(r.szName, 4, 30, "szName");
    expectText(r.szSex, 34, 6, "szSex");
    expectText(r.szNation, 40, 8, "szNation");
    expectText(r.szBirthYear, 48, 8, "szBirthYear");
    expectText(r.szBirthMonth, 56, 4, "szBirthMonth");
    expectText(r.szBirthDay, 60, 4, "szBirthDay");
    expectText(r.szAddress, 64, 70, "szAddress");
    expectText(r.szID, 134, 36, "szID");
    expectText(r.szDept, 170, 30, "szDept");
    expectText(r.szValidStart, 200, 16, "szValidStart");
    expectText(r.szValidEnd, 216, 16, "szValidEnd");
}

TEST_F(FieldExtraction, HmtPermit_TakesEveryFieldFromItsPlace)
{
    reading.hmt.szReserved = "the caller's";
    readFull(2);
    const auto &r = reading.hmt;
    expectText(r.szName, 268, 30, "szName");
    expectText(r.szSex, 298, 6, "szSex");
    expectText(r.szBirthYear, 308, 8, "szBirthYear");
    expectText(r.szBirthMonth, 316, 4, "szBirthMonth");
    expectText(r.szBirthDay, 320, 4, "szBirthDay");
    expectText(r.szAddress, 324, 70, "szAddress");
    expectText(r.szID, 394, 36, "szID");
    expectText(r.szDept, 430, 30, "szDept");
    expectText(r.szValidStart, 460, 16, "szValidStart");
    expectText(r.szValidEnd, 476, 16, "szValidEnd");
    expectText(r.szPassNumber, 492, 18, "szPassNumber");
    EXPECT_EQ(r.szReserved, "the caller's");
}

TEST_F(FieldExtraction, Foreign2017Card_TakesEveryFieldFromItsPlace)
{
    reading.f2017.szReserved = "the caller's";
    readFull(3);
    const auto &r = reading.f2017;
    expectText(r.szEnglishName, 528, 120, "szEnglishName");
    expectText(r.szSex, 648, 6, "szSex");
    expectText(r.szID, 654, 30, "szID");
    expectText(r.szChineseName, 690, 30, "szChineseName");
    expectText(r.szValidStart, 720, 16, "szValidStart");
    expectText(r.szValidEnd, 736, 16, "szValidEnd");
    expectText(r.szBirthYear, 752, 8, "szBirthYear");
    expectText(r.szBirthMonth, 760, 4, "szBirthMonth");
    expectText(r.szBirthDay, 764, 4, "szBirthDay");
    EXPECT_EQ(r.szNationality, "");
    EXPECT_EQ(r.szReserved, "the caller's");
}

TEST_F(FieldExtraction, ForeignNewCard_TakesEveryFieldFromItsPlace)
{
    readFull(4);
    const auto &r = reading.fNew;
    expectText(r.szChineseName, 788, 30, "szChineseName");
    expectText(r.szSex, 818, 6, "szSex");
    expectText(r.szCardExtra, 824, 4, "szCardExtra");
    expectText(r.szBirthYear, 828, 8, "szBirthYear");
    expectText(r.szBirthMonth, 836, 4, "szBirthMonth");
    expectText(r.szBirthDay, 840, 4, "szBirthDay");
    expectText(r.szEnglishName, 844, 70, "szEnglishName");
    expectText(r.szID, 914, 36, "szID");
    expectText(r.szValidStart, 980, 16, "szValidStart");
    expectText(r.szValidEnd, 996, 16, "szValidEnd");
    EXPECT_EQ(r.szNationality, "");
}

TEST_F(FieldExtraction, BirthDate_IsSplitIntoYearMonthAndDay)
{
    const struct {
        int kind;
        int offset;
    } places[] = {{1, 48}, {2, 308}, {3, 752}, {4, 828}};
    for (const auto &place : places) {
        read(place.kind, [&place](CardInfoStruct &info) {
            putText(info, place.offset, QStringLiteral("19900102"));
        });
    }
    const auto expect = [](const auto &record) {
        EXPECT_EQ(record.szBirthYear, "1990");
        EXPECT_EQ(record.szBirthMonth, "01");
        EXPECT_EQ(record.szBirthDay, "02");
    };
    expect(reading.cn);
    expect(reading.hmt);
    expect(reading.f2017);
    expect(reading.fNew);
}

TEST_F(FieldExtraction, ShortBirthDate_GivesShortOrEmptyParts)
{
    const struct {
        const char *text;
        const char *year;
        const char *month;
        const char *day;
    } cases[] = {
        {"", "", "", ""},           {"19", "19", "", ""},         {"1990", "1990", "", ""},
        {"19901", "1990", "1", ""}, {"199011", "1990", "11", ""}, {"1990112", "1990", "11", "2"},
    };
    for (const auto &c : cases) {
        mark(reading);
        read(1, [&c](CardInfoStruct &info) { putText(info, 48, QString::fromUtf8(c.text)); });
        EXPECT_EQ(reading.cn.szBirthYear, c.year) << c.text;
        EXPECT_EQ(reading.cn.szBirthMonth, c.month) << c.text;
        EXPECT_EQ(reading.cn.szBirthDay, c.day) << c.text;
    }
}

TEST_F(FieldExtraction, PaddedSex_IsTrimmedOnTheNewForeignCardOnly)
{
    const QString padded = QStringLiteral("男  ");
    read(1, [&](CardInfoStruct &info) { putText(info, 34, padded); });
    read(2, [&](CardInfoStruct &info) { putText(info, 298, padded); });
    read(3, [&](CardInfoStruct &info) { putText(info, 648, padded); });
    read(4, [&](CardInfoStruct &info) { putText(info, 818, padded); });
    EXPECT_EQ(reading.cn.szSex, "男  ");
    EXPECT_EQ(reading.hmt.szSex, "男  ");
    EXPECT_EQ(reading.f2017.szSex, "男  ");
    EXPECT_EQ(reading.fNew.szSex, "男");
}

TEST_F(FieldExtraction, SpacePadding_StaysInEveryOtherField)
{
    read(4, [](CardInfoStruct &info) {
        putText(info, 788, QStringLiteral("  艾米  "));
        putText(info, 824, QStringLiteral(" 1"));
    });
    EXPECT_EQ(reading.fNew.szChineseName, "  艾米  ");
    EXPECT_EQ(reading.fNew.szCardExtra, " 1");
}

TEST_F(FieldExtraction, NationalityCode_BecomesTheChineseName)
{
    const auto nationality = [](const char *code) {
        return [code](CardInfoStruct &info) { putText(info, 1034, QString::fromUtf8(code)); };
    };
    read(3, nationality("CAN"));
    read(4, nationality("USA"));
    EXPECT_EQ(reading.f2017.szNationality, "加拿大");
    EXPECT_EQ(reading.fNew.szNationality, "美国");
}

TEST_F(FieldExtraction, UnknownNationality_GivesEmptyTextInPlaceOfTheOldOne)
{
    mark(reading);
    read(3, [](CardInfoStruct &info) { putText(info, 1034, QStringLiteral("XXX")); });
    read(4, [](CardInfoStruct &info) { putText(info, 1034, QStringLiteral("can")); });
    EXPECT_EQ(reading.f2017.szNationality, "");
    EXPECT_EQ(reading.fNew.szNationality, "");
}

TEST_F(FieldExtraction, TwoLetterCode_IsFoundOnlyWhenAZeroFollows)
{
    read(3, [](CardInfoStruct &info) { putText(info, 1034, QStringLiteral("CR")); });
    read(4, [](CardInfoStruct &info) { putText(info, 1034, QStringLiteral("CR ")); });
    EXPECT_EQ(reading.f2017.szNationality, "哥斯达黎加");
    EXPECT_EQ(reading.fNew.szNationality, "");
}

TEST_F(FieldExtraction, RecordUsedAgain_IsReplacedFieldByField)
{
    readFull(1);
    read(1, [](CardInfoStruct &info) { putText(info, 4, QStringLiteral("王五")); });
    for (const std::string *field : stringFields(reading.cn)) {
        const std::string expected = field == &reading.cn.szName ? "王五" : "";
        EXPECT_EQ(*field, expected);
    }
}
