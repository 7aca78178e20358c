// Finding and selecting a card, as the constructor and the two calls do.

#include <chrono>
#include <thread>

#include <gmock/gmock.h>

#include "tests/usb/exposed_reader.h"
#include "tests/usb/usb_test.h"

namespace
{

using namespace usb_test;
using simulator::UsbStatus;
using simulator::UsbTransfer;

using ReaderExchanges = UsbTest;

constexpr int LOOKUP_SIZE = 15;
constexpr int SELECT_SIZE = 19;

/** Some of the bytes that were asked for, and an end that is none of success. */
UsbTransfer partOf(const QByteArray &answer, int size, UsbStatus status)
{
    UsbTransfer transfer = ended(status);
    transfer.data = answer.left(size);
    transfer.count = size;
    return transfer;
}

/** A write of which only `count` bytes were taken. */
UsbTransfer taken(int count, UsbStatus status = UsbStatus::DONE)
{
    UsbTransfer transfer = ended(status);
    transfer.count = count;
    return transfer;
}

TEST_F(ReaderExchanges, CardOnTheReader_IsFoundAndSelected)
{
    ScriptedDevice &device = make();
    expectReady(device);
    add(device);
    const IdReader reader;
    EXPECT_EQ(reader.lastError(), 0);
    EXPECT_EQ(reader.state(), 2);
    expectLog({"found usb device!", "open usb device success!", "write pipe2 success!",
               "lookup_resp success!", "lookup success!", "write pipe2 success!",
               "select_resp success!", "select success!"});
}

TEST_F(ReaderExchanges, NoReader_LeavesTheOpenCodeAndAsksNothing)
{
    IdReader reader;
    EXPECT_EQ(reader.lastError(), -7);
    EXPECT_FALSE(reader.lookup());
    EXPECT_FALSE(reader.select());
    EXPECT_EQ(reader.lastError(), -7);
    expectLog({"libusb_open_device_with_vid_pid() failed", "open usb failed!"});
}

TEST_F(ReaderExchanges, LookupAnsweredNoCard_IsAMismatchWithoutSelect)
{
    ScriptedDevice &device = make();
    device.expectWrite(0x02, frames::LOOKUP).expectRead(0x81, LOOKUP_SIZE, frames::NO_CARD_ANSWER);
    add(device);
    const IdReader reader;
    EXPECT_EQ(reader.lastError(), -10);
    expectLog(lines::OPENED +
              Lines{"write pipe2 success!", "lookup_resp success!", "found data not matched!!!"});
}

TEST_F(ReaderExchanges, LookupAnswerWithAnotherLastByte_IsAMismatch)
{
    QByteArray answer = frames::LOOKUP_ANSWER;
    answer[14] = '\x96';
    ScriptedDevice &device = make();
    device.expectWrite(0x02, frames::LOOKUP).expectRead(0x81, LOOKUP_SIZE, answer);
    add(device);
    const IdReader reader;
    EXPECT_EQ(reader.lastError(), -10);
    expectLog(lines::OPENED +
              Lines{"write pipe2 success!", "lookup_resp success!", "found data not matched!!!"});
}

TEST_F(ReaderExchanges, ShortLookupAnswer_IsLoggedAsAnErrorAndAccepted)
{
    ScriptedDevice &device = make();
    device.expectWrite(0x02, frames::LOOKUP)
        .expectRead(0x81, LOOKUP_SIZE, frames::NO_CARD_ANSWER.left(8))
        .expectWrite(0x02, frames::SELECT)
        .expectRead(0x81, SELECT_SIZE, frames::SELECT_ANSWER);
    add(device);
    const IdReader reader;
    EXPECT_EQ(reader.lastError(), 0);
    expectLog(
        lines::OPENED +
        Lines{"write pipe2 success!", "lookup_resp error(0), actual_length=8!", "lookup success!"} +
        lines::SELECTED);
}

TEST_F(ReaderExchanges, EmptyLookupAnswer_IsAcceptedToo)
{
    ScriptedDevice &device = make();
    device.expectWrite(0x02, frames::LOOKUP)
        .expectRead(0x81, LOOKUP_SIZE, QByteArray())
        .expectWrite(0x02, frames::SELECT)
        .expectRead(0x81, SELECT_SIZE, frames::SELECT_ANSWER);
    add(device);
    const IdReader reader;
    EXPECT_EQ(reader.lastError(), 0);
    expectLog(
        lines::OPENED +
        Lines{"write pipe2 success!", "lookup_resp error(0), actual_length=0!", "lookup success!"} +
        lines::SELECTED);
}

TEST_F(ReaderExchanges, LookupAnswerStalled_IsAReadFailureWithoutSelect)
{
    ScriptedDevice &device = make();
    device.expectWrite(0x02, frames::LOOKUP)
        .expectRead(0x81, LOOKUP_SIZE, ended(UsbStatus::STALLED));
    add(device);
    const IdReader reader;
    EXPECT_EQ(reader.lastError(), -11);
    expectLog(lines::OPENED +
              Lines{"write pipe2 success!", "lookup_resp error(-9), actual_length=0!"});
}

TEST_F(ReaderExchanges, LookupAnswerBrokenOffInTheMiddle_TellsHowMuchCame)
{
    ScriptedDevice &device = make();
    device.expectWrite(0x02, frames::LOOKUP)
        .expectRead(0x81, LOOKUP_SIZE, partOf(frames::LOOKUP_ANSWER, 7, UsbStatus::BROKEN));
    add(device);
    const IdReader reader;
    EXPECT_EQ(reader.lastError(), -11);
    expectLog(lines::OPENED +
              Lines{"write pipe2 success!", "lookup_resp error(-1), actual_length=7!"});
}

TEST_F(ReaderExchanges, LookupAnswerTooLong_IsAReadFailure)
{
    ScriptedDevice &device = make();
    device.expectWrite(0x02, frames::LOOKUP)
        .expectRead(0x81, LOOKUP_SIZE, partOf(frames::LOOKUP_ANSWER, 15, UsbStatus::TOO_LONG));
    add(device);
    const IdReader reader;
    EXPECT_EQ(reader.lastError(), -11);
    EXPECT_THAT(takeLog().back(), testing::StartsWith("lookup_resp error(-8), actual_length="));
}

TEST_F(ReaderExchanges, LookupNotAnswered_GivesUpAfterFiveSeconds)
{
    ScriptedDevice &device = make();
    device.expectWrite(0x02, frames::LOOKUP)
        .expectRead(0x81, LOOKUP_SIZE, ended(UsbStatus::PENDING));
    add(device);
    const auto start = std::chrono::steady_clock::now();
    const IdReader reader;
    const auto took = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(reader.lastError(), -11);
    EXPECT_GE(took, std::chrono::milliseconds(4900));
    EXPECT_LT(took, std::chrono::milliseconds(7000));
    EXPECT_TRUE(bus().calls(device).contains(QStringLiteral("discard")));
    expectLog(lines::OPENED +
              Lines{"write pipe2 success!", "lookup_resp error(-7), actual_length=0!"});
}

TEST_F(ReaderExchanges, LookupAnsweredAfterAWhile_IsAwaited)
{
    UsbTransfer late;
    late.data = frames::LOOKUP_ANSWER;
    late.count = late.data.size();
    late.delayMs = 300;
    ScriptedDevice &device = make();
    device.expectWrite(0x02, frames::LOOKUP)
        .expectRead(0x81, LOOKUP_SIZE, late)
        .expectWrite(0x02, frames::SELECT)
        .expectRead(0x81, SELECT_SIZE, frames::SELECT_ANSWER);
    add(device);
    const auto start = std::chrono::steady_clock::now();
    const IdReader reader;
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(300));
    EXPECT_EQ(reader.lastError(), 0);
    expectLog(lines::READY);
}

TEST_F(ReaderExchanges, LookupCommandStalled_IsAWriteFailureWithoutARead)
{
    ScriptedDevice &device = make();
    device.expectWrite(0x02, frames::LOOKUP, ended(UsbStatus::STALLED));
    add(device);
    const IdReader reader;
    EXPECT_EQ(reader.lastError(), -12);
    expectLog(lines::OPENED + Lines{"write pipe2 error(-9)!"});
}

TEST_F(ReaderExchanges, LookupCommandTakenInPart_IsAWriteFailureWithResultZero)
{
    ScriptedDevice &device = make();
    device.expectWrite(0x02, frames::LOOKUP, taken(9));
    add(device);
    const IdReader reader;
    EXPECT_EQ(reader.lastError(), -12);
    expectLog(lines::OPENED + Lines{"write pipe2 error(0)!"});
}

TEST_F(ReaderExchanges, UnpluggedAtTheLookupCommand_IsAWriteFailure)
{
    ScriptedDevice &device = make();
    device.expectWrite(0x02, frames::LOOKUP, ended(UsbStatus::UNPLUGGED));
    add(device);
    const IdReader reader;
    EXPECT_EQ(reader.lastError(), -12);
    EXPECT_EQ(reader.state(), 2);
    expectLog(lines::OPENED + Lines{"write pipe2 error(-4)!"});
}

TEST_F(ReaderExchanges, SelectAnswerWithAnotherStatus_IsAMismatch)
{
    QByteArray answer = frames::SELECT_ANSWER;
    answer[9] = '\x81';
    ScriptedDevice &device = make();
    device.expectWrite(0x02, frames::LOOKUP)
        .expectRead(0x81, LOOKUP_SIZE, frames::LOOKUP_ANSWER)
        .expectWrite(0x02, frames::SELECT)
        .expectRead(0x81, SELECT_SIZE, answer);
    add(device);
    const IdReader reader;
    EXPECT_EQ(reader.lastError(), -13);
    expectLog(lines::OPENED + lines::LOOKED_UP +
              Lines{"write pipe2 success!", "select_resp success!", "found data not matched!!!"});
}

TEST_F(ReaderExchanges, ShortSelectAnswer_IsAcceptedWithTheTextOfLookup)
{
    ScriptedDevice &device = make();
    device.expectWrite(0x02, frames::LOOKUP)
        .expectRead(0x81, LOOKUP_SIZE, frames::LOOKUP_ANSWER)
        .expectWrite(0x02, frames::SELECT)
        .expectRead(0x81, SELECT_SIZE, frames::SELECT_ANSWER.left(18));
    add(device);
    const IdReader reader;
    EXPECT_EQ(reader.lastError(), 0);
    expectLog(lines::OPENED + lines::LOOKED_UP +
              Lines{"write pipe2 success!", "lookup_resp error(0), actual_length=18!",
                    "select success!"});
}

TEST_F(ReaderExchanges, SelectAnswerStalled_MeansNoData)
{
    ScriptedDevice &device = make();
    device.expectWrite(0x02, frames::LOOKUP)
        .expectRead(0x81, LOOKUP_SIZE, frames::LOOKUP_ANSWER)
        .expectWrite(0x02, frames::SELECT)
        .expectRead(0x81, SELECT_SIZE, ended(UsbStatus::STALLED));
    add(device);
    const IdReader reader;
    EXPECT_EQ(reader.lastError(), -24);
    expectLog(lines::OPENED + lines::LOOKED_UP +
              Lines{"write pipe2 success!", "select_resp error(-9), actual_length=0!",
                    "CARD_SELECT_RESP_FAIL=>READ_NO_DATA"});
}

TEST_F(ReaderExchanges, SelectNotAnswered_MeansNoDataAfterFiveSeconds)
{
    ScriptedDevice &device = make();
    device.expectWrite(0x02, frames::LOOKUP)
        .expectRead(0x81, LOOKUP_SIZE, frames::LOOKUP_ANSWER)
        .expectWrite(0x02, frames::SELECT)
        .expectRead(0x81, SELECT_SIZE, ended(UsbStatus::PENDING));
    add(device);
    const auto start = std::chrono::steady_clock::now();
    const IdReader reader;
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(4900));
    EXPECT_EQ(reader.lastError(), -24);
    expectLog(lines::OPENED + lines::LOOKED_UP +
              Lines{"write pipe2 success!", "select_resp error(-7), actual_length=0!",
                    "CARD_SELECT_RESP_FAIL=>READ_NO_DATA"});
}

TEST_F(ReaderExchanges, SelectCommandStalled_IsAWriteFailure)
{
    ScriptedDevice &device = make();
    device.expectWrite(0x02, frames::LOOKUP)
        .expectRead(0x81, LOOKUP_SIZE, frames::LOOKUP_ANSWER)
        .expectWrite(0x02, frames::SELECT, ended(UsbStatus::STALLED));
    add(device);
    const IdReader reader;
    EXPECT_EQ(reader.lastError(), -15);
    expectLog(lines::OPENED + lines::LOOKED_UP + Lines{"write pipe2 error(-9)!"});
}

TEST_F(ReaderExchanges, SelectCalledAgain_KeepsTheCodeOfARead)
{
    ScriptedDevice &device = make();
    expectReady(device);
    device.expectWrite(0x02, frames::SELECT)
        .expectRead(0x81, SELECT_SIZE, ended(UsbStatus::STALLED));
    add(device);
    IdReader reader;
    EXPECT_FALSE(reader.select());
    EXPECT_EQ(reader.lastError(), -14) << "only the constructor makes -24 of it";
    expectLog(lines::READY +
              Lines{"write pipe2 success!", "select_resp error(-9), actual_length=0!"});
}

TEST_F(ReaderExchanges, LookupAndSelectCalledAgain_RunTheirExchanges)
{
    ScriptedDevice &device = make();
    expectReady(device);
    expectReady(device);
    add(device);
    IdReader reader;
    EXPECT_TRUE(reader.lookup());
    EXPECT_TRUE(reader.select());
    EXPECT_EQ(reader.lastError(), 0);
    expectLog(lines::READY + lines::LOOKED_UP + lines::SELECTED);
}

TEST_F(ReaderExchanges, WriteThatIsNeverTaken_EndsWhenTheReaderIsUnplugged)
{
    ScriptedDevice &device = make();
    device.expectWrite(0x02, frames::LOOKUP, ended(UsbStatus::PENDING));
    add(device);
    constexpr std::chrono::milliseconds AFTER{7000}; // longer than any read waits
    std::thread hand([this, &device, AFTER] {
        std::this_thread::sleep_for(AFTER);
        bus().change([&device] { device.setPluggedIn(false); });
    });
    const auto start = std::chrono::steady_clock::now();
    const IdReader reader;
    const auto took = std::chrono::steady_clock::now() - start;
    hand.join();
    EXPECT_GE(took, AFTER);
    EXPECT_LT(took, AFTER + std::chrono::seconds(2));
    EXPECT_EQ(reader.lastError(), -12);
    expectLog(lines::OPENED + Lines{"write pipe2 error(-4)!"});
}

} // namespace
