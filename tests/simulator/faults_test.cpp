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

} // namespace

TEST(Faults, EmptyText_MeansNone)
{
    for (const char *text : {"", "  "}) {
        const Faults faults = parsed(text);
        for (const FaultRule &rule : faultRules())
            EXPECT_FALSE(isFaultSet(faults, rule)) << rule.name;
    }
}

TEST(Faults, EveryFault_IsReadInOneList)
{
    const Faults faults = parsed("open-fails=-3, no-card=4,transient-failures=2,read-fails=1,"
                                 "delay-ms=100,photo-undecodable,photo-length=500,unknown-kind=7,"
                                 "card-removed");
    EXPECT_EQ(faults.openFails, -3);
    EXPECT_EQ(faults.noCard, 4);
    EXPECT_EQ(faults.transientFailures, 2);
    EXPECT_EQ(faults.readFails, 1);
    EXPECT_EQ(faults.delayMs, 100);
    EXPECT_TRUE(faults.photoUndecodable);
    EXPECT_EQ(faults.photoLength, 500);
    EXPECT_EQ(faults.unknownKind, 7);
    EXPECT_TRUE(faults.cardRemoved);
}

TEST(Faults, EveryFaultOfAReaderOnUsb_IsReadInOneList)
{
    const Faults faults =
        parsed("unplugged,unplugged-before=1,unplugged-during=6,permission-denied,"
               "claimed-elsewhere,reset-refused,select-answer-replaced=00ff,lookup-answer-cut=8,"
               "lookup-answer-corrupted=4095,read-answer-delayed=60000,lookup-answer-missing,"
               "lookup-answer-stalled,lookup-answer-broken,lookup-answer-too-long,"
               "lookup-command-stalled,lookup-command-broken,lookup-command-cut=9,"
               "lookup-command-missing,read-command-delayed=0");
    EXPECT_TRUE(faults.unplugged);
    EXPECT_EQ(faults.unpluggedBefore, 1);
    EXPECT_EQ(faults.unpluggedDuring, 6);
    EXPECT_TRUE(faults.permissionDenied);
    EXPECT_TRUE(faults.claimedElsewhere);
    EXPECT_TRUE(faults.resetRefused);
    const ExchangeFaults &lookup = faults.of(UsbExchange::LOOKUP);
    EXPECT_EQ(lookup.answerCut, 8);
    EXPECT_EQ(lookup.answerCorrupted, 4095);
    EXPECT_TRUE(lookup.answerMissing);
    EXPECT_TRUE(lookup.answerStalled);
    EXPECT_TRUE(lookup.answerBroken);
    EXPECT_TRUE(lookup.answerTooLong);
    EXPECT_TRUE(lookup.commandStalled);
    EXPECT_TRUE(lookup.commandBroken);
    EXPECT_EQ(lookup.commandCut, 9);
    EXPECT_TRUE(lookup.commandMissing);
    EXPECT_EQ(faults.of(UsbExchange::SELECT).answerReplaced, QByteArray("\x00\xFF", 2));
    EXPECT_EQ(faults.of(UsbExchange::READ).answerDelayed, 60000);
    EXPECT_EQ(faults.of(UsbExchange::READ).commandDelayed, 0);
}

TEST(Faults, FaultOfAnExchange_IsThatOfNoOther)
{
    for (const char *exchange : {"lookup", "select", "read"}) {
        const Faults faults = parsed((std::string(exchange) + "-answer-cut=5").c_str());
        for (const UsbExchange other :
             {UsbExchange::LOOKUP, UsbExchange::SELECT, UsbExchange::READ}) {
            EXPECT_EQ(faults.of(other).answerCut.has_value(),
                      exchangeName(other) == QLatin1String(exchange));
        }
    }
}

TEST(Faults, EveryWordOfTheVocabulary_IsReadForEveryExchange)
{
    for (const FaultRule &rule : faultRules()) {
        for (const char *exchange : {"lookup-", "select-", "read-"}) {
            std::string word = isExchangeFault(rule) ? exchange : "";
            word += rule.name;
            word += rule.argument == FaultArgument::NUMBER ? "=1" : "";
            word += rule.argument == FaultArgument::BYTES ? "=01" : "";
            EXPECT_TRUE(isFaultSet(parsed(word.c_str()), rule)) << word;
        }
    }
}

TEST(Faults, ReaderOnUsb_HasAllOfThem)
{
    const FaultRuleList all = faultRules();
    EXPECT_EQ(faultRules(Road::USB).size(), static_cast<std::size_t>(all.end() - all.begin()));
}

TEST(Faults, MakersLibrary_TakesItsOwnAndNoOther)
{
    std::vector<std::string> taken;
    for (const FaultRule &rule : faultRules()) {
        if (refusal(faultExample(rule).toUtf8(), Road::MAKERS_LIBRARY).empty())
            taken.emplace_back(rule.name);
    }
    EXPECT_THAT(taken, testing::ElementsAre("open-fails", "no-card", "transient-failures",
                                            "read-fails", "delay-ms", "photo-undecodable",
                                            "photo-length", "unknown-kind", "card-removed"));
    EXPECT_EQ(faultRules(Road::MAKERS_LIBRARY).size(), taken.size());
}

TEST(Faults, FaultOfTheReaderOnUsb_IsRefusedForTheMakersLibraryWithTheRoadThatHasIt)
{
    EXPECT_EQ(refusal("no-card, unplugged-before=2", Road::MAKERS_LIBRARY),
              "the reader maker's library has no fault \"unplugged-before\"; only the reader on "
              "USB has it: use idcard-virtual-reader");
    EXPECT_THAT(refusal("select-answer-missing", Road::MAKERS_LIBRARY),
                HasSubstr("no fault \"select-answer-missing\""));
}

TEST(Faults, FaultsOfADescription_AreThoseOfAnyRoad)
{
    QString reason;
    EXPECT_TRUE(parseFaults({"unplugged", "no-card"}, &reason)) << reason.toStdString();
}

TEST(Faults, MostBytes_AreTaken)
{
    const std::string digits(8192, 'a');
    EXPECT_EQ(
        parsed(("read-answer-replaced=" + digits).c_str()).of(UsbExchange::READ).answerReplaced,
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

TEST(Faults, ExchangeFaultWithoutItsExchange_IsNotKnown)
{
    for (const char *text : {"answer-missing", "E-answer-missing", "close-answer-missing",
                             "-answer-missing", "lookupanswer-missing", "lookup-unplugged"})
        EXPECT_THAT(refusal(text), HasSubstr("is not known"));
}

TEST(Faults, UnknownFault_TellsWhatStandsForTheExchanges)
{
    EXPECT_THAT(refusal("lookup"), testing::EndsWith("(E: lookup, select or read)"));
}

TEST(Faults, ExchangeFaultGivenTwice_IsRefusedWithItsExchange)
{
    EXPECT_EQ(refusal("read-answer-cut=1,lookup-answer-cut=1,read-answer-cut=2"),
              "fault \"read-answer-cut\" is given twice");
}

TEST(Faults, Overlaid_ReplacesFaultsOfEachExchangeAlone)
{
    const Faults faults = overlaidFaults(
        parsed("lookup-answer-cut=1,read-answer-cut=2,read-answer-replaced=AA,unplugged-before=1"),
        parsed("read-answer-cut=3,select-answer-missing,unplugged-before=2"));
    EXPECT_EQ(faults.of(UsbExchange::LOOKUP).answerCut, 1);
    EXPECT_EQ(faults.of(UsbExchange::READ).answerCut, 3);
    EXPECT_EQ(faults.of(UsbExchange::READ).answerReplaced, QByteArray("\xAA"));
    EXPECT_TRUE(faults.of(UsbExchange::SELECT).answerMissing);
    EXPECT_FALSE(faults.of(UsbExchange::LOOKUP).answerMissing);
    EXPECT_EQ(faults.unpluggedBefore, 2);
}

TEST(Faults, NumberLeftOut_TakesTheFaultsOwn)
{
    EXPECT_EQ(parsed("no-card").noCard, EVERY_TIME);
    EXPECT_EQ(parsed("unknown-kind").unknownKind, 9);
}

TEST(Faults, NumbersAtTheirLimits_AreTaken)
{
    EXPECT_EQ(parsed("delay-ms=60000").delayMs, 60000);
    EXPECT_EQ(parsed("photo-length=0").photoLength, 0);
    EXPECT_EQ(parsed("photo-length=38862").photoLength, 38862);
    EXPECT_EQ(parsed("unknown-kind=0").unknownKind, 0);
    EXPECT_EQ(parsed("unknown-kind=5").unknownKind, 5);
    EXPECT_EQ(parsed("open-fails=65").openFails, 65);
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

TEST(Faults, UnknownFault_IsRefusedWithAllKnownOnes)
{
    const std::string message = refusal("delay-ms=5,no-crad");
    EXPECT_THAT(message, StartsWith("fault \"no-crad\" is not known; known faults: "));
    for (const FaultRule &rule : faultRules())
        EXPECT_THAT(message, HasSubstr(faultUsage(rule).toStdString()));
}

TEST(Faults, UnknownFaultForTheMakersLibrary_IsRefusedWithItsFaultsAlone)
{
    const std::string message = refusal("earthquake", Road::MAKERS_LIBRARY);
    EXPECT_THAT(message, HasSubstr("unknown-kind or unknown-kind=N, card-removed"));
    EXPECT_THAT(message, testing::Not(HasSubstr("unplugged")));
    EXPECT_THAT(message, testing::Not(HasSubstr("E: lookup")));
}

TEST(Faults, ExampleOfEveryFault_IsTakenAndItsNumberIsOne)
{
    for (const FaultRule &rule : faultRules()) {
        QString reason;
        if (rule.argument == simulator::FaultArgument::NUMBER) {
            EXPECT_THAT(faultExample(rule).toStdString(), testing::EndsWith("=1"));
        }
        EXPECT_TRUE(parseFaults(faultExample(rule), Road::USB, &reason)) << reason.toStdString();
    }
}

TEST(Faults, EmptyEntry_IsRefused)
{
    EXPECT_THAT(refusal("no-card,,delay-ms=5"), StartsWith("fault \"\" is not known"));
    EXPECT_THAT(refusal("no-card,"), StartsWith("fault \"\" is not known"));
}

TEST(Faults, FaultGivenTwice_IsRefused)
{
    EXPECT_EQ(refusal("delay-ms=5,delay-ms=6"), "fault \"delay-ms\" is given twice");
}

TEST(Faults, VeryLongFault_IsQuotedInPart)
{
    EXPECT_LT(refusal(std::string(100000, 'x').c_str()).size(), 1500U);
}

TEST(Faults, Overlaid_ReplacesOnlyWhatIsSet)
{
    const Faults faults =
        overlaidFaults(parsed("delay-ms=5,read-fails=7"), parsed("read-fails=8,card-removed"));
    EXPECT_EQ(faults.delayMs, 5);
    EXPECT_EQ(faults.readFails, 8);
    EXPECT_TRUE(faults.cardRemoved);
    EXPECT_FALSE(faults.noCard);
}
