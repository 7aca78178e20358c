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
    const std::optional<Faults> faults = parseFaults(QString::fromUtf8(text), Road::Usb, &reason);
    EXPECT_TRUE(faults) << text << ": " << reason.toStdString();
    return faults.value_or(Faults());
}

std::string refusal(const char *text, Road road = Road::Usb)
{
    QString reason;
    return parseFaults(QString::fromUtf8(text), road, &reason) ? std::string()
                                                               : reason.toStdString();
}

} // namespace

TEST(Faults, emptyText_meansNone)
{
    for (const char *text : {"", "  "}) {
        const Faults faults = parsed(text);
        for (const FaultRule &rule : faultRules()) {
            EXPECT_FALSE(isFaultSet(faults, rule)) << rule.name;
        }
    }
}

TEST(Faults, everyFault_isReadInOneList)
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

TEST(Faults, everyFaultOfAReaderOnUsb_isReadInOneList)
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
    const ExchangeFaults &lookup = faults.of(UsbExchange::Lookup);
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
    EXPECT_EQ(faults.of(UsbExchange::Select).answerReplaced, QByteArray("\x00\xFF", 2));
    EXPECT_EQ(faults.of(UsbExchange::Read).answerDelayed, 60000);
    EXPECT_EQ(faults.of(UsbExchange::Read).commandDelayed, 0);
}

TEST(Faults, faultOfAnExchange_isThatOfNoOther)
{
    for (const char *exchange : {"lookup", "select", "read"}) {
        const Faults faults = parsed((std::string(exchange) + "-answer-cut=5").c_str());
        for (const UsbExchange other :
             {UsbExchange::Lookup, UsbExchange::Select, UsbExchange::Read}) {
            EXPECT_EQ(faults.of(other).answerCut.has_value(),
                      exchangeName(other) == QLatin1String(exchange));
        }
    }
}

TEST(Faults, everyWordOfTheVocabulary_isReadForEveryExchange)
{
    for (const FaultRule &rule : faultRules()) {
        for (const char *exchange : {"lookup-", "select-", "read-"}) {
            std::string word = isExchangeFault(rule) ? exchange : "";
            word += rule.name;
            word += rule.argument == FaultArgument::Number ? "=1" : "";
            word += rule.argument == FaultArgument::Bytes ? "=01" : "";
            EXPECT_TRUE(isFaultSet(parsed(word.c_str()), rule)) << word;
        }
    }
}

TEST(Faults, readerOnUsb_hasAllOfThem)
{
    const FaultRuleList all = faultRules();
    EXPECT_EQ(faultRules(Road::Usb).size(), static_cast<std::size_t>(all.end() - all.begin()));
}

TEST(Faults, makersLibrary_takesItsOwnAndNoOther)
{
    std::vector<std::string> taken;
    for (const FaultRule &rule : faultRules()) {
        if (refusal(faultExample(rule).toUtf8(), Road::MakersLibrary).empty()) {
            taken.emplace_back(rule.name);
        }
    }
    EXPECT_THAT(taken, testing::ElementsAre("open-fails", "no-card", "transient-failures",
                                            "read-fails", "delay-ms", "photo-undecodable",
                                            "photo-length", "unknown-kind", "card-removed"));
    EXPECT_EQ(faultRules(Road::MakersLibrary).size(), taken.size());
}

TEST(Faults, faultOfTheReaderOnUsb_isRefusedForTheMakersLibraryWithTheRoadThatHasIt)
{
    EXPECT_EQ(refusal("no-card, unplugged-before=2", Road::MakersLibrary),
              "the reader maker's library has no fault \"unplugged-before\"; only the reader on "
              "USB has it: use idcard-virtual-reader");
    EXPECT_THAT(refusal("select-answer-missing", Road::MakersLibrary),
                HasSubstr("no fault \"select-answer-missing\""));
}

TEST(Faults, faultsOfADescription_areThoseOfAnyRoad)
{
    QString reason;
    EXPECT_TRUE(parseFaults({"unplugged", "no-card"}, &reason)) << reason.toStdString();
}

TEST(Faults, mostBytes_areTaken)
{
    const std::string digits(8192, 'a');
    EXPECT_EQ(
        parsed(("read-answer-replaced=" + digits).c_str()).of(UsbExchange::Read).answerReplaced,
        QByteArray(4096, '\xAA'));
}

TEST(Faults, wrongBytes_areRefusedWithFormAndMeaning)
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

TEST(Faults, exchangeFaultWithoutItsExchange_isNotKnown)
{
    for (const char *text : {"answer-missing", "E-answer-missing", "close-answer-missing",
                             "-answer-missing", "lookupanswer-missing", "lookup-unplugged"})
        EXPECT_THAT(refusal(text), HasSubstr("is not known"));
}

TEST(Faults, unknownFault_tellsWhatStandsForTheExchanges)
{
    EXPECT_THAT(refusal("lookup"), testing::EndsWith("(E: lookup, select or read)"));
}

TEST(Faults, exchangeFaultGivenTwice_isRefusedWithItsExchange)
{
    EXPECT_EQ(refusal("read-answer-cut=1,lookup-answer-cut=1,read-answer-cut=2"),
              "fault \"read-answer-cut\" is given twice");
}

TEST(Faults, overlaid_replacesFaultsOfEachExchangeAlone)
{
    const Faults faults = overlaidFaults(
        parsed("lookup-answer-cut=1,read-answer-cut=2,read-answer-replaced=AA,unplugged-before=1"),
        parsed("read-answer-cut=3,select-answer-missing,unplugged-before=2"));
    EXPECT_EQ(faults.of(UsbExchange::Lookup).answerCut, 1);
    EXPECT_EQ(faults.of(UsbExchange::Read).answerCut, 3);
    EXPECT_EQ(faults.of(UsbExchange::Read).answerReplaced, QByteArray("\xAA"));
    EXPECT_TRUE(faults.of(UsbExchange::Select).answerMissing);
    EXPECT_FALSE(faults.of(UsbExchange::Lookup).answerMissing);
    EXPECT_EQ(faults.unpluggedBefore, 2);
}

TEST(Faults, numberLeftOut_takesTheFaultsOwn)
{
    EXPECT_EQ(parsed("no-card").noCard, EVERY_TIME);
    EXPECT_EQ(parsed("unknown-kind").unknownKind, 9);
}

TEST(Faults, numbersAtTheirLimits_areTaken)
{
    EXPECT_EQ(parsed("delay-ms=60000").delayMs, 60000);
    EXPECT_EQ(parsed("photo-length=0").photoLength, 0);
    EXPECT_EQ(parsed("photo-length=38862").photoLength, 38862);
    EXPECT_EQ(parsed("unknown-kind=0").unknownKind, 0);
    EXPECT_EQ(parsed("unknown-kind=5").unknownKind, 5);
    EXPECT_EQ(parsed("open-fails=65").openFails, 65);
}

TEST(Faults, wrongNumber_isRefusedWithFormAndMeaning)
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

TEST(Faults, unknownFault_isRefusedWithAllKnownOnes)
{
    const std::string message = refusal("delay-ms=5,no-crad");
    EXPECT_THAT(message, StartsWith("fault \"no-crad\" is not known; known faults: "));
    for (const FaultRule &rule : faultRules()) {
        EXPECT_THAT(message, HasSubstr(faultUsage(rule).toStdString()));
    }
}

TEST(Faults, unknownFaultForTheMakersLibrary_isRefusedWithItsFaultsAlone)
{
    const std::string message = refusal("earthquake", Road::MakersLibrary);
    EXPECT_THAT(message, HasSubstr("unknown-kind or unknown-kind=N, card-removed"));
    EXPECT_THAT(message, testing::Not(HasSubstr("unplugged")));
    EXPECT_THAT(message, testing::Not(HasSubstr("E: lookup")));
}

TEST(Faults, exampleOfEveryFault_isTakenAndItsNumberIsOne)
{
    for (const FaultRule &rule : faultRules()) {
        QString reason;
        if (rule.argument == simulator::FaultArgument::Number) {
            EXPECT_THAT(faultExample(rule).toStdString(), testing::EndsWith("=1"));
        }
        EXPECT_TRUE(parseFaults(faultExample(rule), Road::Usb, &reason)) << reason.toStdString();
    }
}

TEST(Faults, emptyEntry_isRefused)
{
    EXPECT_THAT(refusal("no-card,,delay-ms=5"), StartsWith("fault \"\" is not known"));
    EXPECT_THAT(refusal("no-card,"), StartsWith("fault \"\" is not known"));
}

TEST(Faults, faultGivenTwice_isRefused)
{
    EXPECT_EQ(refusal("delay-ms=5,delay-ms=6"), "fault \"delay-ms\" is given twice");
}

TEST(Faults, veryLongFault_isQuotedInPart)
{
    EXPECT_LT(refusal(std::string(100000, 'x').c_str()).size(), 1500U);
}

TEST(Faults, overlaid_replacesOnlyWhatIsSet)
{
    const Faults faults =
        overlaidFaults(parsed("delay-ms=5,read-fails=7"), parsed("read-fails=8,card-removed"));
    EXPECT_EQ(faults.delayMs, 5);
    EXPECT_EQ(faults.readFails, 8);
    EXPECT_TRUE(faults.cardRemoved);
    EXPECT_FALSE(faults.noCard);
}
