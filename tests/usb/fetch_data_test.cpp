// Fetching the card's record. Transfers that fail and answers of another length are in the table of
// the faults.

#include <map>

#include <gmock/gmock.h>

#include "tests/usb/exposed_reader.h"
#include "tests/usb/usb_test.h"

namespace
{

using namespace usb_test;
using simulator::UsbStatus;
using simulator::UsbTransfer;

/** No value that the library sets. */
constexpr auto UNTOUCHED = static_cast<FP_INFO_TYPE>(77);

class FetchData : public UsbTest
{
protected:
    /** A reader that is ready and ends the read's answer so. */
    void addReader(const UsbTransfer &answer)
    {
        ScriptedDevice &device = makeReady();
        device.expectWrite(0x02, frames::READ).expectRead(0x81, frames::READ_CAPACITY, answer);
        add(device);
    }

    /** The read gives `code` and these lines, and leaves its results alone. */
    void expectFailure(int code, const Lines &log)
    {
        IdReader reader;
        ASSERT_EQ(reader.lastError(), 0);
        QByteArray out("before");
        FP_INFO_TYPE fp = UNTOUCHED;
        EXPECT_FALSE(reader.fetch_data(out, fp));
        EXPECT_EQ(reader.lastError(), code);
        EXPECT_EQ(out, QByteArray("before"));
        EXPECT_EQ(fp, UNTOUCHED);
        expectLog(lines::READY + Lines{"write pipe2 success!"} + log);
    }

    void expectData(const QByteArray &answer, FP_INFO_TYPE expected, const std::string &prints)
    {
        addReader(ended(UsbStatus::DONE, answer));
        IdReader reader;
        QByteArray out("before");
        FP_INFO_TYPE fp = UNTOUCHED;
        EXPECT_TRUE(reader.fetch_data(out, fp));
        EXPECT_EQ(reader.lastError(), 0);
        EXPECT_EQ(out, answer);
        EXPECT_EQ(fp, expected);
        expectLog(lines::READY +
                  Lines{"write pipe2 success!", "fetch_data_resp success!", "fplen=" + prints,
                        "fetch data success, outbuf size=" + std::to_string(answer.size())});
    }
};

TEST_F(FetchData, PrintLengthThatDisagreesWithTheSize_IsNotNoticed)
{
    QByteArray answer = frames::readAnswer(0);
    answer[14] = 4;
    expectData(answer, FP_INFO_NONE, "1024");
}

TEST_F(FetchData, WrongChecksum_IsNotNoticed)
{
    QByteArray answer = frames::readAnswer(1024);
    answer[answer.size() - 1] = static_cast<char>(answer.back() ^ 0x55);
    expectData(answer, FP_INFO_TWO, "1024");
}

TEST_F(FetchData, AgainAndAgain_AsksTheReaderEachTimeAndGivesTheWholeFrame)
{
    const std::pair<int, FP_INFO_TYPE> cards[] = {
        {1024, FP_INFO_TWO}, {0, FP_INFO_NONE}, {512, FP_INFO_ONE}};
    ScriptedDevice &device = makeReady();
    for (const auto &[prints, type] : cards)
        device.expectWrite(0x02, frames::READ)
            .expectRead(0x81, frames::READ_CAPACITY, frames::readAnswer(prints));
    add(device);
    IdReader reader;
    expectLog(lines::READY);
    QByteArray out("before");
    FP_INFO_TYPE fp = UNTOUCHED;
    for (const auto &[prints, type] : cards) {
        EXPECT_TRUE(reader.fetch_data(out, fp));
        EXPECT_EQ(reader.lastError(), 0);
        EXPECT_EQ(out, frames::readAnswer(prints)) << "in place of the one before, not behind it";
        EXPECT_EQ(fp, type);
        expectLog({"write pipe2 success!", "fetch_data_resp success!",
                   "fplen=" + std::to_string(prints),
                   "fetch data success, outbuf size=" + std::to_string(out.size())});
    }
}

/** A frame that is refused, beside those of the table of the faults. */
struct Refusal {
    const char *name;
    int printBytes;
    std::map<int, char> bytes; ///< that are others
    int code;
    Lines reason;
};

void PrintTo(const Refusal &refusal, std::ostream *stream)
{
    *stream << refusal.name;
}

class FetchDataRefusal : public FetchData, public testing::WithParamInterface<Refusal>
{
};

TEST_P(FetchDataRefusal, GivesItsCodeAndLeavesTheResults)
{
    QByteArray answer = frames::readAnswer(GetParam().printBytes);
    for (const auto &[offset, byte] : GetParam().bytes)
        answer[offset] = byte;
    addReader(ended(UsbStatus::DONE, answer));
    expectFailure(GetParam().code, Lines{"fetch_data_resp success!"} + GetParam().reason);
}

INSTANTIATE_TEST_SUITE_P(
    Frames, FetchDataRefusal,
    testing::Values(
        Refusal{"PhotoLength", 0, {{13, '\x01'}}, -18, {"found resp data not matched!!!"}},
        Refusal{"LargestLength",
                1024,
                {{5, '\xFF'}, {6, '\xFF'}},
                -19,
                {"total data length(65535) not matched!!!"}},
        Refusal{"PrintLength0201", 512, {{15, 1}}, -20, {"fplen=513", "fplen invalid!"}},
        Refusal{"PrintLength0005", 0, {{15, 5}}, -20, {"fplen=5", "fplen invalid!"}},
        Refusal{"LargestPrintLength",
                1024,
                {{14, '\xFF'}, {15, '\xFF'}},
                -20,
                {"fplen=65535", "fplen invalid!"}},
        Refusal{"SeveralThings_FirstCheckNamesIt",
                1024,
                {{6, 0}, {7, 1}, {15, 5}},
                -18,
                {"found resp data not matched!!!"}}),
    [](const testing::TestParamInfo<Refusal> &refusal) { return refusal.param.name; });

TEST_F(FetchData, FrameThatIsWholeWhenTheTransferBreaks_IsNoRecord)
{
    addReader(ended(UsbStatus::BROKEN, frames::readAnswer(0)));
    expectFailure(-21, {"fetch_data_resp error(-1)!"});
}

TEST_F(FetchData, AfterOpenFailedOnTheSameObject_TouchesNothing)
{
    ScriptedDevice &device = makeReady();
    add(device);
    IdReader reader;
    EXPECT_FALSE(reader.open(VENDOR, 0x0002));
    QByteArray out("before");
    FP_INFO_TYPE fp = UNTOUCHED;
    EXPECT_FALSE(reader.fetch_data(out, fp));
    EXPECT_EQ(reader.lastError(), -7);
    EXPECT_EQ(out, QByteArray("before"));
    expectLog(lines::READY + Lines{"libusb_open_device_with_vid_pid() failed"});
}

} // namespace
