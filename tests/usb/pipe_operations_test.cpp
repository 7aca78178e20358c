// The raw operations on the reader's four endpoints: what is on the wire, and in the log.

#include <gmock/gmock.h>

#include "tests/usb/exposed_reader.h"
#include "tests/usb/usb_test.h"

namespace
{

using namespace usb_test;
using simulator::UsbStatus;

class PipeOperations : public UsbTest
{
protected:
    PipeOperations() : m_device(make()) { expectReady(m_device); }

    ScriptedDevice &device() { return m_device; }

    /** The device, whose script is complete, with a reader at work on it. */
    IdReader &reader()
    {
        if (!m_reader) {
            add(m_device);
            m_reader = std::make_unique<IdReader>();
            EXPECT_EQ(m_reader->lastError(), 0);
            expectLog(lines::READY);
        }
        return *m_reader;
    }

    void TearDown() override
    {
        EXPECT_EQ(reader().lastError(), 0) << "pipe operations leave it alone";
        m_reader.reset();
        UsbTest::TearDown();
    }

private:
    ScriptedDevice &m_device;
    std::unique_ptr<IdReader> m_reader;
};

// A failure leaves the object as it is: the next operation still runs.

TEST_F(PipeOperations, WritePipe2_SendsAFrameHeadAndLogsTheResult)
{
    const QByteArray head = QByteArray::fromHex("AAAAAA966912FF");
    device()
        .expectWrite(0x02, head)
        .expectWrite(0x02, head, ended(UsbStatus::STALLED))
        .expectWrite(0x02, head, taken(UsbStatus::DONE, 6))
        .expectWrite(0x02, head);
    for (const bool succeeds : {true, false, false, true})
        EXPECT_EQ(reader().write_pipe2(0x12, 0xFF), succeeds);
    expectLog({"write pipe2 success!", "write pipe2 error(-9)!", "write pipe2 error(0)!",
               "write pipe2 success!"});
}

TEST_F(PipeOperations, WritePipe6WithoutData_SendsZerosAndLogsTheResult)
{
    const QByteArray block = QByteArray::fromHex("0102000000000000000F");
    device()
        .expectWrite(0x06, block)
        .expectWrite(0x06, block, taken(UsbStatus::DONE, 9))
        .expectWrite(0x06, block, ended(UsbStatus::BROKEN));
    for (const bool succeeds : {true, false, false})
        EXPECT_EQ(reader().write_pipe6(10, 1, 2, nullptr, 0x0F), succeeds);
    expectLog({"write pipe6 success!", "write pipe6 error(0)!", "write pipe6 error(-1)!"});
}

TEST_F(PipeOperations, ReadPipe81_ReportsTheLengthOfAnyHeadAndLogsIt)
{
    device()
        .expectRead(0x81, 7, QByteArray::fromHex("AAAAAA966909A0"))
        .expectRead(0x81, 7, QByteArray::fromHex("0102030405FFFF"));
    for (const int expected : {0x09A0, 0xFFFF}) {
        unsigned short length = 0;
        EXPECT_TRUE(reader().read_pipe81(length));
        EXPECT_EQ(length, expected);
    }
    expectLog({"write pipe81 success!", "pipe81_data[0]=0xAA", "pipe81_data[1]=0xAA",
               "pipe81_data[2]=0xAA", "pipe81_data[3]=0x96", "pipe81_data[4]=0x69",
               "pipe81_data[5]=0x09", "pipe81_data[6]=0xA0"});
    expectLog({"write pipe81 success!", "pipe81_data[0]=0x01", "pipe81_data[1]=0x02",
               "pipe81_data[2]=0x03", "pipe81_data[3]=0x04", "pipe81_data[4]=0x05",
               "pipe81_data[5]=0xFF", "pipe81_data[6]=0xFF"});
}

TEST_F(PipeOperations, ReadPipe81ThatFails_LeavesTheLengthAlone)
{
    device()
        .expectRead(0x81, 7, QByteArray::fromHex("AAAAAA966909"))
        .expectRead(0x81, 7, ended(UsbStatus::TOO_LONG));
    for (int i = 0; i < 2; ++i) {
        unsigned short length = 4711;
        EXPECT_FALSE(reader().read_pipe81(length));
        EXPECT_EQ(length, 4711);
    }
    expectLog({"write pipe81 error(0)!", "write pipe81 error(-8)!"});
}

TEST_F(PipeOperations, ReadPipe85_LogsEveryByteOfAWholeBlockWithTwoDigits)
{
    device()
        .expectRead(0x85, 4, QByteArray::fromHex("00097FFF"))
        .expectRead(0x85, 0, QByteArray())
        .expectRead(0x85, 5, QByteArray::fromHex("00097FFF"))
        .expectRead(0x85, 5, ended(UsbStatus::STALLED));
    EXPECT_TRUE(reader().read_pipe85(4));
    EXPECT_TRUE(reader().read_pipe85(0));
    EXPECT_FALSE(reader().read_pipe85(5));
    EXPECT_FALSE(reader().read_pipe85(5));
    expectLog({"write pipe85 success!", "pipe85_data[0]=0x00", "pipe85_data[1]=0x09",
               "pipe85_data[2]=0x7F", "pipe85_data[3]=0xFF", "write pipe85 success!",
               "write pipe85 error(0)!", "write pipe85 error(-9)!"});
}

TEST_F(PipeOperations, ReadPipe85NotAnswered_GivesUpAfterFiveSeconds)
{
    device().expectRead(0x85, 5, ended(UsbStatus::PENDING));
    EXPECT_FALSE(reader().read_pipe85(5));
    expectLog({"write pipe85 error(-7)!"});
}

} // namespace
