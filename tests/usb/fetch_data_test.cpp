// Fetching the card's record.

#include <chrono>
#include <map>
#include <optional>

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

const UsbTransfer TAKEN = taken(UsbStatus::DONE, frames::READ.size());

class FetchData : public UsbTest
{
protected:
    /** A reader that is ready and ends the read's command and answer so. */
    void addReader(const UsbTransfer &command, const std::optional<UsbTransfer> &answer)
    {
        ScriptedDevice &device = make();
        expectReady(device);
        device.expectWrite(0x02, frames::READ, command);
        if (answer)
            device.expectRead(0x81, frames::READ_CAPACITY, *answer);
        add(device);
    }

    /** The read gives `code` and these lines, leaves its results alone and ends all else. */
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

        // No request now reaches the bus, whose script is at its end, and of the
        // log.
        unsigned short length = 4711;
        EXPECT_FALSE(reader.fetch_data(out, fp));
        EXPECT_FALSE(reader.lookup());
        EXPECT_FALSE(reader.select());
        EXPECT_FALSE(reader.write_pipe2(1, 2));
        EXPECT_FALSE(reader.write_pipe6(8, 1, 2, nullptr, 3));
        EXPECT_FALSE(reader.read_pipe81(length));
        EXPECT_FALSE(reader.read_pipe85(8));
        EXPECT_EQ(length, 4711);
        EXPECT_EQ(out, QByteArray("before"));
        EXPECT_EQ(fp, UNTOUCHED);
        EXPECT_EQ(reader.lastError(), code);
        expectLog(lines::READY + log);
    }

    void expectData(const QByteArray &answer, FP_INFO_TYPE expected, const std::string &prints)
    {
        addReader(TAKEN, ended(UsbStatus::DONE, answer));
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

TEST_F(FetchData, CardWithoutFingerprints_IsTheWholeFrame)
{
    expectData(frames::readAnswer(0), FP_INFO_NONE, "0");
}

TEST_F(FetchData, CardWithOneFingerprint_IsTheWholeFrame)
{
    expectData(frames::readAnswer(512), FP_INFO_ONE, "512");
}

TEST_F(FetchData, CardWithTwoFingerprints_IsTheWholeFrame)
{
    expectData(frames::readAnswer(1024), FP_INFO_TWO, "1024");
}

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

TEST_F(FetchData, Twice_AsksTheReaderTwice)
{
    ScriptedDevice &device = make();
    expectReady(device);
    const QByteArray first = frames::readAnswer(1024);
    const QByteArray second = frames::readAnswer(0);
    for (const QByteArray &answer : {first, second})
        device.expectWrite(0x02, frames::READ).expectRead(0x81, frames::READ_CAPACITY, answer);
    add(device);
    IdReader reader;
    QByteArray out;
    FP_INFO_TYPE fp = UNTOUCHED;
    EXPECT_TRUE(reader.fetch_data(out, fp));
    EXPECT_EQ(out, first);
    EXPECT_EQ(fp, FP_INFO_TWO);
    EXPECT_TRUE(reader.fetch_data(out, fp));
    EXPECT_EQ(out, second) << "in place of the first, not behind it";
    EXPECT_EQ(fp, FP_INFO_NONE);
    expectLog(lines::READY + Lines{"write pipe2 success!", "fetch_data_resp success!", "fplen=1024",
                                   "fetch data success, outbuf size=2321", "write pipe2 success!",
                                   "fetch_data_resp success!", "fplen=0",
                                   "fetch data success, outbuf size=1297"});
}

/** How a read fails. */
struct Failure {
    const char *name;
    UsbTransfer command;
    std::optional<UsbTransfer> answer; ///< none where it is not asked for
    int code;
    Lines log; ///< after that of a command that was taken
};

void PrintTo(const Failure &failure, std::ostream *stream)
{
    *stream << failure.name;
}

class FetchDataFailure : public FetchData, public testing::WithParamInterface<Failure>
{
};

TEST_P(FetchDataFailure, GivesItsCodeAndLeavesTheResults)
{
    const Failure &failure = GetParam();
    addReader(failure.command, failure.answer);
    const auto start = std::chrono::steady_clock::now();
    expectFailure(failure.code,
                  (failure.answer ? Lines{"write pipe2 success!"} : Lines()) + failure.log);
    if (failure.answer && failure.answer->status == UsbStatus::PENDING) {
        EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(4900));
    }
}

/** An answer of a length that no frame has. */
Failure ofLength(const char *name, int size)
{
    const bool isStatus = size == frames::NO_DATA_ANSWER.size();
    return {name,
            TAKEN,
            ended(UsbStatus::DONE,
                  isStatus ? frames::NO_DATA_ANSWER : frames::readAnswer(1024).left(size)),
            isStatus ? -24 : -16,
            {"total length(" + std::to_string(size) +
             (isStatus ? "), no card data for reading!" : ") invalid!")}};
}

/** The frame with `printBytes` of fingerprints in which some bytes are others. */
Failure refused(const char *name, int printBytes, const std::map<int, char> &bytes, int code,
                const Lines &reason)
{
    QByteArray answer = frames::readAnswer(printBytes);
    for (const auto &[offset, byte] : bytes)
        answer[offset] = byte;
    return {name, TAKEN, ended(UsbStatus::DONE, answer), code,
            Lines{"fetch_data_resp success!"} + reason};
}

/** An answer that ends as no success does, though the frame came. */
Failure broken(const char *name, UsbStatus status, int printBytes, const char *result)
{
    const QByteArray answer = printBytes < 0 ? QByteArray() : frames::readAnswer(printBytes);
    return {name,
            TAKEN,
            ended(status, answer),
            -21,
            {std::string("fetch_data_resp error(") + result + ")!"}};
}

INSTANTIATE_TEST_SUITE_P(Lengths, FetchDataFailure,
                         testing::Values(ofLength("StatusOnly", 11), ofLength("Empty", 0),
                                         ofLength("Of1", 1), ofLength("Of10", 10),
                                         ofLength("Of12", 12), ofLength("Of1296", 1296),
                                         ofLength("Of1298", 1298), ofLength("Of1500", 1500),
                                         ofLength("Of1808", 1808), ofLength("Of1810", 1810),
                                         ofLength("Of2320", 2320)));

INSTANTIATE_TEST_SUITE_P(
    Refused, FetchDataFailure,
    testing::Values(
        refused("Preamble", 1024, {{4, '\x68'}}, -17, {"found preamble not matched!!!"}),
        refused("Status", 512, {{9, '\x91'}}, -18, {"found resp data not matched!!!"}),
        refused("PhotoLength", 0, {{13, '\x01'}}, -18, {"found resp data not matched!!!"}),
        refused("Length", 1024, {{5, '\x05'}}, -19, {"total data length(1290) not matched!!!"}),
        refused("LargestLength", 1024, {{5, '\xFF'}, {6, '\xFF'}}, -19,
                {"total data length(65535) not matched!!!"}),
        refused("PrintLength0201", 512, {{15, 1}}, -20, {"fplen=513", "fplen invalid!"}),
        refused("PrintLength0005IsToldByItsLowByte", 0, {{15, 5}}, -20,
                {"fplen=5", "fplen invalid!"}),
        refused("LargestPrintLength", 1024, {{14, '\xFF'}, {15, '\xFF'}}, -20,
                {"fplen=65535", "fplen invalid!"}),
        refused("SeveralThingsFirstCheckNamesIt", 1024, {{6, 0}, {7, 1}, {15, 5}}, -18,
                {"found resp data not matched!!!"})));

INSTANTIATE_TEST_SUITE_P(
    Transfers, FetchDataFailure,
    testing::Values(
        broken("Stalled", UsbStatus::STALLED, -1, "-9"),
        broken("BrokenOffAtAFullFrame", UsbStatus::BROKEN, 0, "-1"),
        broken("TooLong", UsbStatus::TOO_LONG, 1024, "-8"),
        broken("Unplugged", UsbStatus::UNPLUGGED, -1, "-4"),
        Failure{"CommandStalled", ended(UsbStatus::STALLED), {}, -22, {"write pipe2 error(-9)!"}},
        Failure{
            "CommandTakenInPart", taken(UsbStatus::DONE, 4), {}, -22, {"write pipe2 error(0)!"}}));

INSTANTIATE_TEST_SUITE_P(NotAnsweredInFiveSeconds, FetchDataFailure,
                         testing::Values(broken("GivesUp", UsbStatus::PENDING, -1, "-7")));

TEST_F(FetchData, ReaderGoneBeforeTheCommand_IsAWriteFailure)
{
    ScriptedDevice &device = make();
    expectReady(device);
    add(device);
    IdReader reader;
    bus().change([&device] { device.setPluggedIn(false); });
    QByteArray out;
    FP_INFO_TYPE fp = UNTOUCHED;
    EXPECT_FALSE(reader.fetch_data(out, fp));
    EXPECT_EQ(reader.lastError(), -22);
    expectLog(lines::READY + Lines{"write pipe2 error(-4)!"});
}

TEST_F(FetchData, AfterOpenFailedOnTheSameObject_TouchesNothing)
{
    ScriptedDevice &device = make();
    expectReady(device);
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
