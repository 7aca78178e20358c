// What is noted of a card on the day of reading.

#include <gmock/gmock.h>

#include "apps/card/card_notes.h"
#include "apps/card/card_output.h"
#include "apps/card/record_decoder.h"
#include "simulator/card/raw_record.h"
#include "tests/card/card_samples.h"
#include "tests/tool/tool_runner.h"

using namespace app;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

const QDate TODAY(2024, 2, 29);

std::vector<std::string> keysOf(const Card &card, const QDate &today = TODAY)
{
    std::vector<std::string> keys;
    for (const CardNote &note : cardNotes(card, today))
        keys.push_back(note.key.toStdString());
    return keys;
}

/** A resident card that has nothing to be noted on `TODAY`. */
std::unique_ptr<CardRecords> plainRecords()
{
    auto records = samples::filledRecords();
    records->cn.szID = "990000199003074284";
    return records;
}

Card cardValid(const char *from, const char *to)
{
    auto records = plainRecords();
    records->cn.szValidStart = from;
    records->cn.szValidEnd = to;
    return {IDCARD_KIND_CN, *records};
}

std::optional<int> ageOfHolderBorn(const char *year, const char *month, const char *day,
                                   const QDate &today = TODAY)
{
    auto records = plainRecords();
    records->cn.szBirthYear = year;
    records->cn.szBirthMonth = month;
    records->cn.szBirthDay = day;
    return ageOnDay(Card(IDCARD_KIND_CN, *records), today);
}

TEST(CardNotes, CardIsValidFromItsFirstDayToItsLast)
{
    EXPECT_THAT(keysOf(cardValid("20240228", "20240301")), IsEmpty());
    EXPECT_THAT(keysOf(cardValid("20240229", "20240229")), IsEmpty());
    EXPECT_THAT(keysOf(cardValid("20140228", "20240228")), ElementsAre("expired"));
    EXPECT_THAT(keysOf(cardValid("20240301", "20340301")), ElementsAre("not-yet-valid"));
}

TEST(CardNotes, TextThatIsNoDayIsNotCompared)
{
    for (const char *text : {"长期", "", "2023", "20231301", "20230229", "2023.02.01", "abcdefgh"})
        EXPECT_THAT(keysOf(cardValid(text, text)), IsEmpty()) << text;
}

TEST(CardNotes, CheckDigitIsComparedWithTheOtherSeventeen)
{
    for (const char *number : {"11010519491231002X", "440524188001010014", "990000199003074284"})
        EXPECT_FALSE(isCheckDigitWrong(number)) << number;
    for (const char *number : {"110105194912310020", "11010519491231002x", "44052418800101001X",
                               "440524188001010015", "99000019900307428A"})
        EXPECT_TRUE(isCheckDigitWrong(number)) << number;
}

TEST(CardNotes, NumberOfAnotherFormHasNoCheckDigit)
{
    for (const char *number : {"", "CAN000000000000", "44052418800101001", "4405241880010100140",
                               "4405241880A1010014", "٤٤٠٥٢٤١٨٨٠٠١٠١٠٠١٥"})
        EXPECT_FALSE(isCheckDigitWrong(QString::fromUtf8(number))) << number;
}

TEST(CardNotes, WrongCheckDigitAndUnknownNationalityAreNoted)
{
    EXPECT_THAT(keysOf(samples::cardOf(IDCARD_KIND_FOREIGN_NEW)),
                ElementsAre("check-digit-wrong", "unknown-nationality"));
    EXPECT_THAT(keysOf(samples::cardOf(IDCARD_KIND_FOREIGN_2017)), IsEmpty());
}

TEST(CardNotes, TextThatTheDecoderCutIsNotedWithTheWhole)
{
    const simulator::CardDescription described = builtInCard("resident-longest-texts");
    const Card card = samples::cardWithCutTexts();
    EXPECT_THAT(keysOf(card), testing::Contains("cut:address"));
    const QJsonObject json = toJson(card, std::nullopt, {}, TODAY);
    EXPECT_EQ(json["whole"].toObject()["address"], described.address);
    EXPECT_TRUE(described.address.startsWith(json["address"].toString()));
}

TEST(CardNotes, RecordThatIsNotAsTheReaderSentItIsNoted)
{
    QByteArray record = recordOf("resident");
    const auto notesOn = [&record] {
        return keysOf(*decodeRawRecord(record, FP_INFO_TWO, Road::USB));
    };
    EXPECT_THAT(notesOn(), testing::Not(testing::Contains("odd-record")));
    record[17] = static_cast<char>(~record[17]);
    EXPECT_THAT(notesOn(), testing::Contains("odd-record"));
}

TEST(CardNotes, BlanksAtTheEndOfAFieldAreNotMissed)
{
    simulator::CardDescription described = builtInCard("resident");
    described.name = QString::fromUtf8("王小明王小明王小明王"); // 30 bytes, then blanks
    const Card card =
        *decodeRawRecord(simulator::readAnswer(described, {}), FP_INFO_NONE, Road::FILE);
    EXPECT_THAT(card.cutFields(), IsEmpty());
    EXPECT_FALSE(toJson(card, std::nullopt).contains("whole"));
}

TEST(CardAge, GrowsOnTheBirthdayAndOfOneBornOnALeapDayOnTheFirstOfMarchInOtherYears)
{
    EXPECT_EQ(ageOfHolderBorn("2000", "02", "28"), 24);
    EXPECT_EQ(ageOfHolderBorn("2000", "02", "29"), 24);
    EXPECT_EQ(ageOfHolderBorn("2000", "03", "01"), 23);
    EXPECT_EQ(ageOfHolderBorn("2024", "02", "29"), 0);
    EXPECT_EQ(ageOfHolderBorn("2000", "02", "29", QDate(2023, 2, 28)), 22);
    EXPECT_EQ(ageOfHolderBorn("2000", "02", "29", QDate(2023, 3, 1)), 23);
}

TEST(CardAge, IsUnknownForAnIncompleteDateAndOneToCome)
{
    EXPECT_EQ(ageOfHolderBorn("1990", "", ""), std::nullopt);
    EXPECT_EQ(ageOfHolderBorn("", "", ""), std::nullopt);
    EXPECT_EQ(ageOfHolderBorn("1990", "13", "01"), std::nullopt);
    EXPECT_EQ(ageOfHolderBorn("2024", "03", "01"), std::nullopt);
}

} // namespace
