// Finding and selecting a card, as the constructor and the two calls do. What becomes of them when
// a transfer fails or an answer is another is in the table of the faults.

#include <gmock/gmock.h>

#include "tests/usb/exposed_reader.h"
#include "tests/usb/usb_test.h"

namespace
{

using namespace usb_test;
using simulator::UsbStatus;

using ReaderExchanges = UsbTest;

TEST_F(ReaderExchanges, NoReader_LeavesTheOpenCodeAndAsksNothing)
{
    IdReader reader;
    EXPECT_EQ(reader.lastError(), -7);
    EXPECT_FALSE(reader.lookup());
    EXPECT_FALSE(reader.select());
    EXPECT_EQ(reader.lastError(), -7);
    expectLog({"libusb_open_device_with_vid_pid() failed", "open usb failed!"});
}

TEST_F(ReaderExchanges, SelectCalledAgain_KeepsTheCodeOfARead)
{
    ScriptedDevice &device = makeReady();
    device.expectWrite(0x02, frames::SELECT)
        .expectRead(0x81, frames::SELECT_ANSWER.size(), ended(UsbStatus::STALLED));
    add(device);
    IdReader reader;
    EXPECT_FALSE(reader.select());
    EXPECT_EQ(reader.lastError(), -14) << "only the constructor makes -24 of it";
    expectLog(lines::READY +
              Lines{"write pipe2 success!", "select_resp error(-9), actual_length=0!"});
}

TEST_F(ReaderExchanges, LookupAndSelectCalledAgain_RunTheirExchanges)
{
    ScriptedDevice &device = makeReady();
    expectReady(device);
    add(device);
    IdReader reader;
    EXPECT_TRUE(reader.lookup());
    EXPECT_TRUE(reader.select());
    EXPECT_EQ(reader.lastError(), 0);
    expectLog(lines::READY + lines::LOOKED_UP + lines::SELECTED);
}

} // namespace
