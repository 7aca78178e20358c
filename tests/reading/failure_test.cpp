// A failure as programs get it.

#include <set>

#include <gmock/gmock.h>

#include <QJsonObject>

#include "api/result_codes.h"
#include "apps/reading/failure.h"
#include "apps/results/usb_catalogue.h"
#include "reader/usb_codes.h"

using namespace app;

namespace
{

/** What the doctor can explain leads to it. */
QString remedyOf(const ResultEntry &entry)
{
    const bool canBeExplained = entry.exitStatus == ExitStatus::READER_NOT_OPENED ||
                                entry.exitStatus == ExitStatus::PHOTO_NOT_DECODED;
    return QString::fromUtf8(entry.remedy) +
           (canBeExplained ? " \"idcard-reader doctor\" says more about this machine." : "");
}

void expectTheRow(const ResultEntry &entry, const QJsonObject &json)
{
    EXPECT_EQ(json, (QJsonObject{{"code", entry.code},
                                 {"name", entry.constant},
                                 {"headline", QString::fromUtf8(entry.summary)},
                                 {"cause", QString::fromUtf8(entry.cause)},
                                 {"remedy", remedyOf(entry)},
                                 {"exitStatus", static_cast<int>(entry.exitStatus)}}));
}

TEST(Failure, OfAResultHoldsItsRowOfTheCatalogue)
{
    for (const ResultEntry &entry : resultCatalogue())
        expectTheRow(entry, toJson(resultFailure(entry)));
    for (const ResultEntry &entry : usbCatalogue())
        expectTheRow(entry, toJson(resultFailure(entry)));
}

TEST(Failure, OfAReadingHoldsTheRowOfItsCode)
{
    ReadOutcome outcome;
    outcome.code = IDCARD_RESULT_NO_CARD;
    expectTheRow(*findResult(IDCARD_RESULT_NO_CARD, false), toJson(failureOf(outcome)));
    EXPECT_EQ(failureOf(outcome).words, explain(outcome));
}

TEST(Failure, OfAnUnpluggedReaderSaysSo)
{
    UsbOutcome outcome;
    outcome.code = USB_READER_LOOKUP_READ_FAILED;
    outcome.isUnplugged = true;
    expectTheRow(unpluggedResult(*findUsbResult(USB_READER_LOOKUP_READ_FAILED)),
                 toJson(failureOf(outcome)));
}

TEST(Failure, OfAnUnknownCodeNamesTheCode)
{
    UsbOutcome outcome;
    outcome.code = -1234;
    const QJsonObject json = toJson(failureOf(outcome));
    EXPECT_EQ(json["code"], -1234);
    EXPECT_EQ(json["name"], "TOOL_UNKNOWN_CODE");
    EXPECT_EQ(json["exitStatus"], 1);
    EXPECT_TRUE(json["cause"].toString().contains("-1234"));
}

TEST(Failure, OfTheToolHasNoCodeAndTheWordsAsItsCause)
{
    const QJsonObject json = toJson(toolFailure(ToolFault::NOT_A_RECORD, "It is a letter."));
    EXPECT_EQ(json["code"], QJsonValue());
    EXPECT_EQ(json["name"], "TOOL_NOT_A_RECORD");
    EXPECT_EQ(json["cause"], "It is a letter.");
    EXPECT_EQ(json["exitStatus"], 2);
}

TEST(Failure, OfTheToolStandsInTheTableOnceInOrder)
{
    int index = 0;
    std::set<std::string> names;
    for (const ToolFaultEntry &entry : toolFaultCatalogue()) {
        EXPECT_EQ(static_cast<int>(entry.fault), index++);
        EXPECT_TRUE(names.insert(entry.name).second) << entry.name;
    }
}

} // namespace
