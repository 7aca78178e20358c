// The catalogues of texts against the enumerations of the codes, for `readIDCard` and for the USB
// road, and what the programs say of a result.

#include <set>

#include <gmock/gmock.h>

#include <QRegularExpression>

#include "apps/reading/card_reader.h"
#include "apps/reading/usb_reading.h"
#include "apps/results/result_catalogue.h"
#include "apps/results/usb_catalogue.h"
#include "tests/support/files.h"

using namespace app;

namespace
{

using NamedCode = std::pair<int, std::string>;

std::set<NamedCode> codesOfHeader(const char *header)
{
    static const QRegularExpression enumerator(
        QStringLiteral("((?:IDCARD_RESULT|USB_READER)_\\w+)\\s*=\\s*(-?\\d+)"));
    std::set<NamedCode> codes;
    auto matches = enumerator.globalMatch(sourceText(header));
    while (matches.hasNext()) {
        const auto match = matches.next();
        codes.emplace(match.captured(2).toInt(), match.captured(1).toStdString());
    }
    return codes;
}

struct Catalogue {
    const char *name;
    const char *header;
    std::size_t codes;
    const std::vector<ResultEntry> &(*entries)();
};

void PrintTo(const Catalogue &catalogue, std::ostream *stream)
{
    *stream << catalogue.name;
}

class Results : public testing::TestWithParam<Catalogue>
{
};

TEST_P(Results, AreExactlyTheCodesAndNamesOfTheHeader)
{
    std::set<NamedCode> codes;
    for (const ResultEntry &entry : GetParam().entries())
        codes.emplace(entry.code, entry.constant);
    EXPECT_EQ(codes.size(), GetParam().codes);
    EXPECT_EQ(codes, codesOfHeader(GetParam().header));
}

TEST_P(Results, AreWrittenInSentencesThatFitATable)
{
    for (const ResultEntry &entry : GetParam().entries()) {
        for (const char *text : {entry.summary, entry.cause, entry.remedy})
            EXPECT_THAT(text, testing::MatchesRegex("[A-Z][^|]+\\.")) << entry.code;
    }
}

INSTANTIATE_TEST_SUITE_P(Catalogues, Results,
                         testing::Values(Catalogue{"readIDCard", "api/result_codes.h", 12,
                                                   resultCatalogue},
                                         Catalogue{"USB", "reader/usb_codes.h", 23, usbCatalogue}),
                         testing::PrintToStringParamName());

TEST(ResultCatalogue, ExitStatusesAreUniqueAndAscending)
{
    int expected = 0;
    for (const ExitStatusEntry &entry : exitStatusCatalogue())
        EXPECT_EQ(static_cast<int>(entry.status), expected++);
    EXPECT_EQ(expected, 12);
}

TEST(FindResult, CodesLeadToTheirExitStatus)
{
    const struct {
        int code;
        bool hasRecord;
        ExitStatus status;
    } cases[] = {{0, true, ExitStatus::DONE},
                 {0, false, ExitStatus::NOTHING_READ},
                 {-5, false, ExitStatus::READER_NOT_OPENED},
                 {-23, false, ExitStatus::READ_FAILED},
                 {-24, false, ExitStatus::NO_CARD},
                 {-26, false, ExitStatus::PHOTO_NOT_DECODED},
                 {-40, false, ExitStatus::PROGRAM_FAILED}};
    for (const auto &c : cases) {
        ASSERT_NE(findResult(c.code, c.hasRecord), nullptr) << c.code;
        EXPECT_EQ(findResult(c.code, c.hasRecord)->exitStatus, c.status) << c.code;
    }
}

TEST(FindResult, NumberThatIsNoResultHasNoRow)
{
    for (const int code : {1, -1, -25, -41})
        EXPECT_EQ(findResult(code, false), nullptr) << code;
}

TEST(Explain, EveryFailureReportsCodeCauseAndRemedyInLinesThatFitATerminal)
{
    for (const ResultEntry &entry : resultCatalogue()) {
        ReadOutcome outcome;
        outcome.code = entry.code;
        const QString text = QStringLiteral("idcard-reader: ") + explain(outcome);
        for (const QString &line : text.split(QLatin1Char('\n')))
            EXPECT_LE(line.size(), 79) << line.toStdString();
        if (entry.exitStatus == ExitStatus::DONE)
            continue;
        EXPECT_THAT(
            text.simplified().toStdString(),
            testing::AllOf(testing::StartsWith("idcard-reader: " + std::string(entry.summary)),
                           testing::HasSubstr("Code: " + std::to_string(entry.code) + " (" +
                                              entry.constant + ")"),
                           testing::HasSubstr(entry.cause), testing::HasSubstr(entry.remedy)));
    }
}

TEST(Explain, NumberThatIsNoResultIsReported)
{
    ReadOutcome outcome;
    outcome.code = -77;
    EXPECT_THAT(explain(outcome).toStdString(), testing::HasSubstr("-77"));
    EXPECT_EQ(outcome.exitStatus(), ExitStatus::PROGRAM_FAILED);
}

/** A failure of the USB road. */
UsbOutcome usbFailure(int code)
{
    UsbOutcome outcome;
    outcome.ids = {0x1209, 0x0001};
    outcome.code = code;
    return outcome;
}

TEST(ExplainUsb, EveryFailureReportsCodeDeviceCauseAndRemedyInLinesThatFitATerminal)
{
    for (const ResultEntry &entry : usbCatalogue()) {
        UsbOutcome outcome = usbFailure(entry.code);
        outcome.device.emplace();
        outcome.device->node = QStringLiteral("/dev/bus/usb/001/002");
        const QString text = QStringLiteral("idcard-reader: ") + explain(outcome);
        EXPECT_THAT(text.simplified().toStdString(),
                    testing::AllOf(testing::HasSubstr(entry.summary),
                                   testing::HasSubstr("Code: " + std::to_string(entry.code) + " (" +
                                                      entry.constant + ")"),
                                   testing::HasSubstr("Device: 1209:0001 at /dev/bus/usb/001/002"),
                                   testing::HasSubstr(entry.cause),
                                   testing::HasSubstr(entry.remedy)));
        for (const QString &line : text.split(QLatin1Char('\n')))
            EXPECT_LE(line.size(), 79) << line.toStdString();
    }
}

TEST(ExplainUsb, FailuresLeadToTheirExitStatus)
{
    EXPECT_EQ(usbFailure(-2).exitStatus(), ExitStatus::READER_NOT_OPENED);
    EXPECT_EQ(usbFailure(-6).exitStatus(), ExitStatus::READER_NOT_OPENED);
    EXPECT_EQ(usbFailure(-9).exitStatus(), ExitStatus::READER_NOT_OPENED);
    EXPECT_EQ(usbFailure(-10).exitStatus(), ExitStatus::NO_CARD);
    EXPECT_EQ(usbFailure(-13).exitStatus(), ExitStatus::READ_FAILED);
    EXPECT_EQ(usbFailure(-18).exitStatus(), ExitStatus::NOTHING_READ);
    EXPECT_EQ(usbFailure(-21).exitStatus(), ExitStatus::READ_FAILED);
    EXPECT_EQ(usbFailure(-24).exitStatus(), ExitStatus::NO_CARD);
    EXPECT_EQ(usbFailure(0).exitStatus(), ExitStatus::DONE);
}

TEST(ExplainUsb, ReaderThatIsGoneIsUnpluggedWhateverTheCode)
{
    for (const int code : {-5, -8, -10, -21, -24}) {
        UsbOutcome outcome = usbFailure(code);
        outcome.isUnplugged = true;
        EXPECT_EQ(outcome.exitStatus(), ExitStatus::READ_FAILED);
        EXPECT_THAT(explain(outcome).toStdString(),
                    testing::AllOf(testing::StartsWith("The reader was unplugged while"),
                                   testing::HasSubstr("Code: " + std::to_string(code))));
    }
}

TEST(ExplainUsb, MissingPermissionNamesProgramAndGroup)
{
    EXPECT_THAT(explain(usbFailure(-6)).toStdString(),
                testing::AllOf(testing::HasSubstr("\"idcard-reader-access\" as root"),
                               testing::HasSubstr("idcard-reader. A user")));
}

TEST(ExplainUsb, NumberThatIsNoCodeIsReported)
{
    EXPECT_THAT(explain(usbFailure(-23)).toStdString(), testing::HasSubstr("-23"));
    EXPECT_EQ(usbFailure(-23).exitStatus(), ExitStatus::PROGRAM_FAILED);
}

} // namespace
