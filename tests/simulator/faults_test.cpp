// The vocabulary of faults as text.

#include <gmock/gmock.h>

#include "simulator/faults.h"

using namespace simulator;
using testing::HasSubstr;
using testing::StartsWith;

namespace
{

Faults parsed(const char *text)
{
    QString reason;
    const std::optional<Faults> faults = parseFaults(QString::fromUtf8(text), &reason);
    EXPECT_TRUE(faults) << text << ": " << reason.toStdString();
    return faults.value_or(Faults());
}

std::string refusal(const char *text)
{
    QString reason;
    return parseFaults(QString::fromUtf8(text), &reason) ? std::string() : reason.toStdString();
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
    for (const char *text :
         {"open-fails",         "open-fails=144",         "open-fails=",
          "open-fails=x",       "open-fails=99999999999", "no-card=-1",
          "no-card=",           "transient-failures",     "transient-failures=-1",
          "read-fails=144",     "read-fails=65",          "delay-ms=60001",
          "delay-ms=-1",        "delay-ms=1.5",           "photo-undecodable=1",
          "photo-length=38863", "photo-length=-1",        "unknown-kind=1",
          "unknown-kind=4",     "card-removed=",          "card-removed=0"}) {
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
