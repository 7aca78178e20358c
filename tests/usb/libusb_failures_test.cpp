// Failures of libusb itself, and how often what was made is released.

#include <gmock/gmock.h>
#include <libusb.h>

#include "tests/usb/exposed_reader.h"
#include "tests/usb/libusb_failures.h"
#include "tests/usb/usb_test.h"

namespace
{

using namespace usb_test;

class LibusbFailure : public UsbTest
{
protected:
    LibusbFailure() { setLibusbFailures({}); }

    void TearDown() override
    {
        const LibusbCalls &calls = libusbCalls();
        EXPECT_EQ(calls.listsFreed, calls.lists);
        EXPECT_EQ(calls.listsFreedWithDevices, calls.lists) << "the devices are unreferenced";
        EXPECT_EQ(calls.closed, calls.opened) << "each handle is closed exactly once";
        UsbTest::TearDown();
    }
};

TEST_F(LibusbFailure, Init_LeavesNothingToRelease)
{
    plugIn();
    setLibusbFailures({LIBUSB_ERROR_NO_MEM, 0, 0, 0});
    {
        const OpenedDevice opened;
        EXPECT_EQ(opened.lastError(), -2);
        EXPECT_THAT(opened.state(), testing::AllOf(testing::Ne(0), testing::Ne(1), testing::Ne(2)));
        EXPECT_EQ(opened.handle(), nullptr);
    }
    EXPECT_EQ(libusbCalls().exit, 0);
    EXPECT_EQ(libusbCalls().lists, 0);
    expectLog({"libusb_init() failed: LIBUSB_ERROR_NO_MEM"});
}

TEST_F(LibusbFailure, Init_LeavesAnObjectThatOnlyRefuses)
{
    setLibusbFailures({LIBUSB_ERROR_OTHER, 0, 0, 0});
    IdReader reader;
    EXPECT_EQ(reader.lastError(), -2);
    EXPECT_FALSE(reader.open(VENDOR, PRODUCT));
    EXPECT_FALSE(reader.lookup());
    EXPECT_EQ(reader.lastError(), -2);
    EXPECT_EQ(libusbCalls().lists, 0) << "libusb's default context is somebody else's";
    expectLog(
        {"libusb_init() failed: LIBUSB_ERROR_OTHER", "libusb_open_device_with_vid_pid() failed"});
}

TEST_F(LibusbFailure, DeviceList_IsReportedWithoutAListToFree)
{
    plugIn();
    setLibusbFailures({0, LIBUSB_ERROR_NO_MEM, 0, 0});
    {
        const OpenedDevice opened;
        EXPECT_EQ(opened.lastError(), -3);
        EXPECT_EQ(opened.state(), 0);
    }
    EXPECT_EQ(libusbCalls().listsFreed, 0);
    EXPECT_EQ(libusbCalls().exit, 1);
    expectLog({"libusb_get_device_list fail!", "libusb_open_device_with_vid_pid() failed",
               "open usb failed!"});
}

TEST_F(LibusbFailure, DescriptorAheadOfTheReader_EndsTheSearch)
{
    plugIn(UsbIds{VENDOR, PRODUCT});
    plugIn(UsbIds{VENDOR, PRODUCT});
    setLibusbFailures({0, 0, 1, 0});
    {
        const OpenedDevice opened;
        EXPECT_EQ(opened.lastError(), -4);
        EXPECT_EQ(opened.state(), 0);
    }
    EXPECT_EQ(libusbCalls().descriptors, 1) << "later devices are not tried";
    EXPECT_EQ(bus().holdings().timesOpened, 0);
    expectLog({"libusb_get_device_descriptor(1) fail!", "libusb_open_device_with_vid_pid() failed",
               "open usb failed!"});
}

TEST_F(LibusbFailure, DescriptorOfALaterDevice_IsReportedWithItsPosition)
{
    for (std::uint16_t product = 2; product <= 4; ++product)
        plugIn(UsbIds{VENDOR, product});
    setLibusbFailures({0, 0, 3, 0});
    const OpenedDevice opened;
    EXPECT_EQ(opened.lastError(), -4);
    EXPECT_EQ(libusbCalls().descriptors, 3);
    expectLog({"libusb_get_device_descriptor(3) fail!", "libusb_open_device_with_vid_pid() failed",
               "open usb failed!"});
}

TEST_F(LibusbFailure, DescriptorBehindTheReader_IsNotAskedFor)
{
    plugIn();
    plugIn();
    setLibusbFailures({0, 0, 2, 0});
    {
        const OpenedDevice opened;
        EXPECT_EQ(opened.lastError(), 0);
    }
    EXPECT_EQ(libusbCalls().descriptors, 1);
    expectLog(lines::OPENED);
}

TEST_F(LibusbFailure, AutoDetach_IsIgnored)
{
    plugIn();
    setLibusbFailures({0, 0, 0, LIBUSB_ERROR_NOT_SUPPORTED});
    {
        const OpenedDevice opened;
        EXPECT_EQ(opened.lastError(), 0);
        EXPECT_EQ(opened.state(), 2);
    }
    EXPECT_EQ(libusbCalls().released, 1);
    expectLog(lines::OPENED);
}

TEST_F(LibusbFailure, NoneAtAll_EverythingIsReleasedOnce)
{
    plugIn();
    {
        const OpenedDevice opened;
    }
    EXPECT_EQ(libusbCalls().init, 1);
    EXPECT_EQ(libusbCalls().released, 1);
    EXPECT_EQ(libusbCalls().closed, 1);
    EXPECT_EQ(libusbCalls().exit, 1);
    expectLog(lines::OPENED);
}

TEST_F(LibusbFailure, ReaderNotFound_OnlyTheContextIsReleased)
{
    {
        const OpenedDevice opened;
        EXPECT_EQ(opened.lastError(), -7);
    }
    EXPECT_EQ(libusbCalls().released, 0);
    EXPECT_EQ(libusbCalls().closed, 0);
    EXPECT_EQ(libusbCalls().exit, 1);
    expectLog({"libusb_open_device_with_vid_pid() failed", "open usb failed!"});
}

TEST_F(LibusbFailure, ClaimOrResetRefused_TheHandleIsClosedOnceAndNotReleased)
{
    for (const bool isClaim : {true, false}) {
        setLibusbFailures({});
        const UsbIds ids{VENDOR, static_cast<std::uint16_t>(isClaim ? 1 : 2)};
        ScriptedDevice &device = make(ids);
        device.setClaimedElsewhere(isClaim);
        device.setRefusesReset(!isClaim);
        add(device);
        {
            const OpenedDevice opened(ids.vendor, ids.product);
            EXPECT_EQ(libusbCalls().closed, 1) << "at once";
        }
        EXPECT_EQ(libusbCalls().closed, 1);
        EXPECT_EQ(libusbCalls().released, 0);
        EXPECT_EQ(libusbCalls().exit, 1);
        expectLog({"found usb device!",
                   isClaim ? "libusb_claim_interface failed: LIBUSB_ERROR_BUSY"
                           : "libusb_reset_device failed: LIBUSB_ERROR_OTHER",
                   "open usb failed!"});
    }
}

} // namespace
