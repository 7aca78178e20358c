// The vocabulary of faults as text.

#include <gmock/gmock.h>

#include "simulator/card/faults.h"

using namespace simulator;
using testing::HasSubstr;
using testing::StartsWith;

namespace
{

Faults parsed(const char *text)
{
    QString reason;
    const std::optional<Faults> faults = parseFaults(QString::fromUtf8(text), Road::USB, &reason);
    EXPECT_TRUE(faults) << text << ": " << reason.toStdString();
    return faults.value_or(Faults());
}

std::string refusal(const char *text, Road road = Road::USB)
{
    QString reason;
    return parseFaults(QString::fromUtf8(text), road, &reason) ? std::string()
                                                               : reason.toStdString();
}

/** Whether a fault, of any exchange, is set. */
bool isFaultSet(const Faults &faults, const FaultRule &rule)
{
    if (!rule.isOfExchange())
        return faults.has(rule.kind);
    return faults.has(rule.kind, UsbExchange::LOOKUP) ||
           faults.has(rule.kind, UsbExchange::SELECT) || faults.has(rule.kind, UsbExchange::READ);
}

} // namespace

TEST(Faults, EmptyText_MeansNone)
{
    for (const char *text : {"", "  "}) {
        const Faults faults = parsed(text);
        for (const FaultRule &rule : faultRules())
            EXPECT_FALSE(isFaultSet(faults, rule)) << rule.name;
    }
}

TEST(Faults, Numbers_AreReadInOneList)
{
    const Faults faults =
        parsed("open-fails=-3, no-card=4,transient-failures=2,read-fails=1,delay-ms=100,"
               "photo-undecodable,photo-length=500,unknown-kind=7,card-removed,unplugged-before=1,"
               "unplugged-during=6,select-answer-replaced=00ff,lookup-answer-cut=8,"
               "lookup-answer-corrupted=4095,read-answer-delayed=60000,lookup-command-cut=9,"
               "read-command-delayed=0");
    const struct {
        FaultKind kind;
        std::optional<UsbExchange> exchange;
        int number;
    } numbers[] = {{FaultKind::OPEN_FAILS, {}, -3},
                   {FaultKind::NO_CARD, {}, 4},
                   {FaultKind::TRANSIENT_FAILURES, {}, 2},
                   {FaultKind::READ_FAILS, {}, 1},
                   {FaultKind::DELAY_MS, {}, 100},
                   {FaultKind::PHOTO_LENGTH, {}, 500},
                   {FaultKind::UNKNOWN_KIND, {}, 7},
                   {FaultKind::UNPLUGGED_BEFORE, {}, 1},
                   {FaultKind::UNPLUGGED_DURING, {}, 6},
                   {FaultKind::ANSWER_CUT, UsbExchange::LOOKUP, 8},
                   {FaultKind::ANSWER_CORRUPTED, UsbExchange::LOOKUP, 4095},
                   {FaultKind::COMMAND_CUT, UsbExchange::LOOKUP, 9},
                   {FaultKind::ANSWER_DELAYED, UsbExchange::READ, 60000},
                   {FaultKind::COMMAND_DELAYED, UsbExchange::READ, 0}};
    for (const auto &[kind, exchange, number] : numbers)
        EXPECT_EQ(faults.number(kind, exchange), number) << int(kind);
    EXPECT_EQ(faults.bytes(FaultKind::ANSWER_REPLACED, UsbExchange::SELECT),
              QByteArray("\x00\xFF", 2));
}

TEST(Faults, FaultOfAnExchange_IsThatOfNoOther)
{
    for (const char *exchange : {"lookup", "select", "read"}) {
        const Faults faults = parsed((std::string(exchange) + "-answer-cut=5").c_str());
        for (const UsbExchange other :
             {UsbExchange::LOOKUP, UsbExchange::SELECT, UsbExchange::READ}) {
            EXPECT_EQ(faults.number(FaultKind::ANSWER_CUT, other).has_value(),
                      exchangeName(other) == QLatin1String(exchange));
        }
    }
}

TEST(Faults, EveryWordOfTheVocabulary_IsReadForEveryExchange)
{
    for (const FaultRule &rule : faultRules(Road::USB)) {
        for (const char *exchange : {"lookup-", "select-", "read-"}) {
            std::string word = rule.isOfExchange() ? exchange : "";
            word += rule.name;
            word += rule.argument.form == FaultArgument::NUMBER ? "=1" : "";
            word += rule.argument.form == FaultArgument::BYTES ? "=01" : "";
            EXPECT_TRUE(isFaultSet(parsed(word.c_str()), rule)) << word;
        }
    }
}

TEST(Faults, ReaderOnUsb_HasAllButThatOfTheMakersLibraryAlone)
{
    std::vector<std::string> others;
    for (const FaultRule &rule : faultRules()) {
        if (rule.meaning(Road::USB) == nullptr)
            others.emplace_back(rule.name);
    }
    EXPECT_THAT(others, testing::ElementsAre("open-fails-every"));
    EXPECT_EQ(faultRules(Road::USB).size() + others.size(), faultRules().size());
}

TEST(Faults, FaultOfTheMakersLibraryAlone_TakesANumberFromOne)
{
    QString reason;
    const auto faults = parseFaults("open-fails-every=2", Road::MAKERS_LIBRARY, &reason);
    ASSERT_TRUE(faults) << reason.toStdString();
    EXPECT_EQ(faults->number(FaultKind::OPEN_FAILS_EVERY), 2);
    for (const char *text : {"open-fails-every", "open-fails-every=0", "open-fails-every=-1"}) {
        EXPECT_THAT(refusal(text, Road::MAKERS_LIBRARY),
                    HasSubstr("is not of the form open-fails-every=N: every Nth opening"));
    }
}

TEST(Faults, MakersLibrary_TakesItsOwnAndNoOther)
{
    std::vector<std::string> taken;
    for (const FaultRule &rule : faultRules()) {
        if (refusal(faultExample(rule).toUtf8(), Road::MAKERS_LIBRARY).empty())
            taken.emplace_back(rule.name);
    }
    EXPECT_THAT(taken, testing::ElementsAre("open-fails", "open-fails-every", "no-card",
                                            "transient-failures", "read-fails", "delay-ms",
                                            "photo-undecodable", "photo-length", "unknown-kind",
                                            "card-removed"));
    EXPECT_EQ(faultRules(Road::MAKERS_LIBRARY).size(), taken.size());
}

TEST(Faults, WrongFault_IsRefusedWithWhatToDo)
{
    const struct {
        const char *text;
        Road road;
        const char *message;
    } cases[] = {
        {"no-card, unplugged-before=2", Road::MAKERS_LIBRARY,
         "the reader maker's library has no fault \"unplugged-before\"; only the reader on USB has "
         "it: use idcard-virtual-reader"},
        {"select-answer-missing", Road::MAKERS_LIBRARY,
         "the reader maker's library has no fault \"select-answer-missing\"; only the reader on "
         "USB "
         "has it: use idcard-virtual-reader"},
        {"open-fails-every=2", Road::USB,
         "the reader on USB has no fault \"open-fails-every\"; only the reader maker's library has "
         "it: use \"idcard-reader read --simulate\""},
        {"no-crad", Road::USB, "fault \"no-crad\" is not known; did you mean no-card?"},
        {"read-answr-cut=3", Road::USB,
         "fault \"read-answr-cut=3\" is not known; did you mean read-answer-cut?"},
        {"delay-ms=5,delay-ms=6", Road::USB, "fault \"delay-ms\" is given twice"},
        {"read-answer-cut=1,lookup-answer-cut=1,read-answer-cut=2", Road::USB,
         "fault \"read-answer-cut\" is given twice"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(refusal(c.text, c.road), c.message);
    for (const char *text : {"no-card,,delay-ms=5", "no-card,"})
        EXPECT_THAT(refusal(text), StartsWith("fault \"\" is not known"));
    for (const char *text : {"answer-missing", "E-answer-missing", "close-answer-missing",
                             "-answer-missing", "lookupanswer-missing", "lookup-unplugged"})
        EXPECT_THAT(refusal(text), HasSubstr("is not known"));
}

TEST(Faults, FaultsOfADescription_AreThoseOfAnyRoad)
{
    QString reason;
    EXPECT_TRUE(parseFaults({"unplugged", "no-card"}, &reason)) << reason.toStdString();
}

TEST(Faults, MostBytes_AreTaken)
{
    const std::string digits(8192, 'a');
    EXPECT_EQ(parsed(("read-answer-replaced=" + digits).c_str())
                  .bytes(FaultKind::ANSWER_REPLACED, UsbExchange::READ),
              QByteArray(4096, '\xAA'));
}

TEST(Faults, WrongBytes_AreRefusedWithFormAndMeaning)
{
    const std::string tooMany(8194, 'a');
    for (const std::string &digits :
         {std::string(), std::string("="), std::string("=0"), std::string("=001"),
          std::string("=0g"), std::string("=00 11"), std::string("=0x00"), "=" + tooMany}) {
        EXPECT_THAT(refusal(("select-answer-replaced" + digits).c_str()),
                    HasSubstr("\" is not of the form select-answer-replaced=HEX: other bytes come, "
                              "two hexadecimal digits each, at most 4096"));
    }
}

TEST(Faults, NumberAtItsLimitOrLeftOut_IsTaken)
{
    const struct {
        const char *text;
        FaultKind kind;
        int number;
    } cases[] = {
        {"delay-ms=60000", FaultKind::DELAY_MS, 60000},
        {"photo-length=0", FaultKind::PHOTO_LENGTH, 0},
        {"photo-length=38862", FaultKind::PHOTO_LENGTH, 38862},
        {"unknown-kind=0", FaultKind::UNKNOWN_KIND, 0},
        {"unknown-kind=5", FaultKind::UNKNOWN_KIND, 5},
        {"unknown-kind", FaultKind::UNKNOWN_KIND, 9},
        {"open-fails=65", FaultKind::OPEN_FAILS, 65},
        {"no-card", FaultKind::NO_CARD, EVERY_TIME},
    };
    for (const auto &c : cases)
        EXPECT_EQ(parsed(c.text).number(c.kind), c.number) << c.text;
}

TEST(Faults, WrongNumber_IsRefusedWithFormAndMeaning)
{
    for (const char *text : {"open-fails",
                             "open-fails=144",
                             "open-fails=",
                             "open-fails=x",
                             "open-fails=99999999999",
                             "no-card=-1",
                             "no-card=",
                             "transient-failures",
                             "transient-failures=-1",
                             "read-fails=144",
                             "read-fails=65",
                             "delay-ms=60001",
                             "delay-ms=-1",
                             "delay-ms=1.5",
                             "photo-undecodable=1",
                             "photo-length=38863",
                             "photo-length=-1",
                             "unknown-kind=1",
                             "unknown-kind=4",
                             "card-removed=",
                             "card-removed=0",
                             "unplugged=1",
                             "unplugged-before",
                             "unplugged-before=0",
                             "unplugged-before=7",
                             "unplugged-during=0",
                             "unplugged-during=7",
                             "permission-denied=",
                             "reset-refused=1",
                             "lookup-answer-cut",
                             "lookup-answer-cut=-1",
                             "lookup-answer-cut=4096",
                             "select-answer-corrupted=4096",
                             "read-answer-delayed=60001",
                             "read-answer-missing=1",
                             "read-answer-too-long=",
                             "lookup-command-cut=10",
                             "select-command-delayed=60001"}) {
        EXPECT_THAT(refusal(text),
                    StartsWith(std::string("fault \"") + text + "\" is not of the form " +
                               std::string(text).substr(0, 5)));
    }
    EXPECT_EQ(refusal("read-fails=65"), "fault \"read-fails=65\" is not of the form read-fails=N: "
                                        "reading answers N (not 144 or 65)");
}

TEST(Faults, UnknownFault_IsRefusedWithWhatListsTheKnownOnes)
{
    EXPECT_EQ(
        refusal("delay-ms=5,earthquake"),
        "fault \"earthquake\" is not known; \"idcard-virtual-reader --help\" lists those of the "
        "reader on USB");
    EXPECT_EQ(refusal("earthquake", Road::MAKERS_LIBRARY),
              "fault \"earthquake\" is not known; \"idcard-reader read --help\" lists those of the "
              "reader maker's library");
    QString reason;
    EXPECT_FALSE(parseFaults(QStringList{QStringLiteral("earthquake")}, &reason));
    EXPECT_EQ(
        reason.toStdString(),
        "fault \"earthquake\" is not known; \"idcard-reader read --help\" lists those of the "
        "reader maker's library, \"idcard-virtual-reader --help\" lists those of the reader on "
        "USB");
}

TEST(Faults, NearestFaultOfTheOtherRoad_IsNotProposed)
{
    EXPECT_THAT(refusal("unpluged", Road::MAKERS_LIBRARY),
                HasSubstr("; \"idcard-reader read --help\" lists"));
}

TEST(Faults, ExampleOfEveryFault_IsTakenAndItsNumberIsOne)
{
    for (const FaultRule &rule : faultRules()) {
        QString reason;
        if (rule.argument.form == simulator::FaultArgument::NUMBER) {
            EXPECT_THAT(faultExample(rule).toStdString(), testing::EndsWith("=1"));
        }
        EXPECT_TRUE(parseFaults(QStringList{faultExample(rule)}, &reason)) << reason.toStdString();
    }
}

TEST(Faults, VeryLongFault_IsQuotedInPart)
{
    EXPECT_LT(refusal(std::string(100000, 'x').c_str()).size(), 1500U);
}

TEST(Faults, Added_ReplaceNothingThatIsSetForTheSameExchange)
{
    Faults faults = parsed("read-answer-cut=3,select-answer-missing,read-fails=8,card-removed");
    faults.add(parsed("lookup-answer-cut=1,read-answer-cut=2,read-answer-replaced=AA,delay-ms=5,"
                      "read-fails=7"));
    EXPECT_EQ(faults.number(FaultKind::ANSWER_CUT, UsbExchange::LOOKUP), 1);
    EXPECT_EQ(faults.number(FaultKind::ANSWER_CUT, UsbExchange::READ), 3);
    EXPECT_EQ(faults.bytes(FaultKind::ANSWER_REPLACED, UsbExchange::READ), QByteArray("\xAA"));
    EXPECT_TRUE(faults.has(FaultKind::ANSWER_MISSING, UsbExchange::SELECT));
    EXPECT_FALSE(faults.has(FaultKind::ANSWER_MISSING, UsbExchange::LOOKUP));
    EXPECT_EQ(faults.number(FaultKind::DELAY_MS), 5);
    EXPECT_EQ(faults.number(FaultKind::READ_FAILS), 8);
    EXPECT_TRUE(faults.has(FaultKind::CARD_REMOVED));
    EXPECT_FALSE(faults.has(FaultKind::NO_CARD));
}
