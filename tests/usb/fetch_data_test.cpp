// Fetching the card's record.

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
    /** A reader that is ready and answers the read with `answer`. */
    ScriptedDevice &addReader(const QByteArray &answer)
    {
        UsbTransfer transfer;
        transfer.data = answer;
        transfer.count = answer.size();
        return addReader(transfer);
    }

    ScriptedDevice &addReader(const UsbTransfer &answer)
    {
        ScriptedDevice &device = make();
        expectReady(device);
        device.expectWrite(0x02, frames::READ).expectRead(0x81, frames::READ_CAPACITY, answer);
        add(device);
        return device;
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

        // Whatever is asked now asks nothing of the bus, whose script is at its end, and of the
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

    /** A read whose answer is the frame with `printBytes` of fingerprints after `change`. */
    template <typename Change>
    void expectRefused(int printBytes, Change change, int code, const Lines &log)
    {
        QByteArray answer = frames::readAnswer(printBytes);
        change(answer);
        addReader(answer);
        expectFailure(code, Lines{"write pipe2 success!", "fetch_data_resp success!"} + log);
    }

    void expectData(const QByteArray &answer, FP_INFO_TYPE expected, const std::string &prints)
    {
        addReader(answer);
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

TEST_F(FetchData, StatusOnlyAnswer_MeansNoData)
{
    addReader(frames::NO_DATA_ANSWER);
    expectFailure(-24, {"write pipe2 success!", "total length(11), no card data for reading!"});
}

TEST_F(FetchData, AnswerOf1500Bytes_IsOfNoKnownLength)
{
    addReader(frames::readAnswer(1024).left(1500));
    expectFailure(-16, {"write pipe2 success!", "total length(1500) invalid!"});
}

TEST_F(FetchData, EmptyAnswer_IsOfNoKnownLength)
{
    addReader(QByteArray());
    expectFailure(-16, {"write pipe2 success!", "total length(0) invalid!"});
}

TEST_F(FetchData, LengthsBesideTheKnownOnes_AreInvalid)
{
    ScriptedDevice *device = nullptr;
    Lines expected;
    for (const int size : {1, 10, 12, 1296, 1298, 1808, 1810, 2320}) {
        device = &make(UsbIds{VENDOR, static_cast<std::uint16_t>(size)});
        expectReady(*device);
        device->expectWrite(0x02, frames::READ)
            .expectRead(0x81, frames::READ_CAPACITY, frames::readAnswer(1024).left(size));
        add(*device);
        IdReader reader(VENDOR, static_cast<unsigned short>(size));
        QByteArray out;
        FP_INFO_TYPE fp = UNTOUCHED;
        EXPECT_FALSE(reader.fetch_data(out, fp));
        EXPECT_EQ(reader.lastError(), -16) << size;
        expectLog(lines::READY + Lines{"write pipe2 success!",
                                       "total length(" + std::to_string(size) + ") invalid!"});
    }
}

TEST_F(FetchData, WrongPreamble_IsRefused)
{
    expectRefused(1024, [](QByteArray &answer) { answer[4] = '\x68'; }, -17,
                  {"found preamble not matched!!!"});
}

TEST_F(FetchData, WrongStatus_IsRefused)
{
    expectRefused(512, [](QByteArray &answer) { answer[9] = '\x91'; }, -18,
                  {"found resp data not matched!!!"});
}

TEST_F(FetchData, WrongPhotoLength_IsRefused)
{
    expectRefused(0, [](QByteArray &answer) { answer[13] = '\x01'; }, -18,
                  {"found resp data not matched!!!"});
}

TEST_F(FetchData, LengthFieldThatDisagreesWithTheSize_IsRefusedWithItsValue)
{
    expectRefused(1024, [](QByteArray &answer) { answer[5] = '\x05'; }, -19,
                  {"total data length(1290) not matched!!!"});
}

TEST_F(FetchData, LargestLengthField_IsRefusedWithItsValue)
{
    const auto change = [](QByteArray &answer) { answer[5] = answer[6] = '\xFF'; };
    expectRefused(1024, change, -19, {"total data length(65535) not matched!!!"});
}

TEST_F(FetchData, PrintLength0201_IsRefused)
{
    expectRefused(512, [](QByteArray &answer) { answer[15] = 1; }, -20,
                  {"fplen=513", "fplen invalid!"});
}

TEST_F(FetchData, PrintLength0005_IsRefusedWithTheLowByte)
{
    expectRefused(0, [](QByteArray &answer) { answer[15] = 5; }, -20,
                  {"fplen=5", "fplen invalid!"});
}

TEST_F(FetchData, LargestPrintLength_IsRefused)
{
    const auto change = [](QByteArray &answer) { answer[14] = answer[15] = '\xFF'; };
    expectRefused(1024, change, -20, {"fplen=65535", "fplen invalid!"});
}

TEST_F(FetchData, SeveralThingsWrong_FirstCheckNamesTheFailure)
{
    const auto change = [](QByteArray &answer) {
        answer[6] = 0;  // length
        answer[7] = 1;  // status
        answer[15] = 5; // print length
    };
    expectRefused(1024, change, -18, {"found resp data not matched!!!"});
}

TEST_F(FetchData, AnswerStalled_IsAReadFailure)
{
    addReader(ended(UsbStatus::STALLED));
    expectFailure(-21, {"write pipe2 success!", "fetch_data_resp error(-9)!"});
}

TEST_F(FetchData, AnswerBrokenOffAtAFullFrame_IsAReadFailureAllTheSame)
{
    UsbTransfer answer = ended(UsbStatus::BROKEN);
    answer.data = frames::readAnswer(0);
    answer.count = answer.data.size();
    addReader(answer);
    expectFailure(-21, {"write pipe2 success!", "fetch_data_resp error(-1)!"});
}

TEST_F(FetchData, AnswerTooLong_IsAReadFailure)
{
    UsbTransfer answer = ended(UsbStatus::TOO_LONG);
    answer.data = frames::readAnswer(1024);
    answer.count = answer.data.size();
    addReader(answer);
    expectFailure(-21, {"write pipe2 success!", "fetch_data_resp error(-8)!"});
}

TEST_F(FetchData, UnpluggedWhileReading_IsAReadFailure)
{
    addReader(ended(UsbStatus::UNPLUGGED));
    expectFailure(-21, {"write pipe2 success!", "fetch_data_resp error(-4)!"});
}

TEST_F(FetchData, NotAnswered_GivesUpAfterFiveSeconds)
{
    addReader(ended(UsbStatus::PENDING));
    const auto start = std::chrono::steady_clock::now();
    expectFailure(-21, {"write pipe2 success!", "fetch_data_resp error(-7)!"});
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(4900));
}

TEST_F(FetchData, CommandStalled_IsAWriteFailure)
{
    ScriptedDevice &device = make();
    expectReady(device);
    device.expectWrite(0x02, frames::READ, ended(UsbStatus::STALLED));
    add(device);
    expectFailure(-22, {"write pipe2 error(-9)!"});
}

TEST_F(FetchData, CommandTakenInPart_IsAWriteFailure)
{
    UsbTransfer part;
    part.count = 4;
    ScriptedDevice &device = make();
    expectReady(device);
    device.expectWrite(0x02, frames::READ, part);
    add(device);
    expectFailure(-22, {"write pipe2 error(0)!"});
}

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
