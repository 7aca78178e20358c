// Failures of libusb itself, and how often what was made is released. Every call of a whole read
// fails in turn in tests/failure_injection/libusb_calls_test.cpp.

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
    LibusbFailure() { setCallFailure({}); }

    void TearDown() override
    {
        const LibusbCalls &calls = libusbCalls();
        EXPECT_EQ(calls.listsFreed, calls.lists);
        EXPECT_EQ(calls.listsFreedWithDevices, calls.lists) << "the devices are unreferenced";
        EXPECT_EQ(calls.closed, calls.opened) << "each handle is closed exactly once";
        UsbTest::TearDown();
    }
};

TEST_F(LibusbFailure, Init_LeavesAnObjectThatOnlyRefuses)
{
    setCallFailure({"libusb_init", 1, LIBUSB_ERROR_OTHER});
    {
        IdReader reader;
        EXPECT_EQ(reader.lastError(), -2);
        EXPECT_THAT(reader.state(), testing::AllOf(testing::Ne(0), testing::Ne(1), testing::Ne(2)));
        EXPECT_EQ(reader.handle(), nullptr);
        EXPECT_FALSE(reader.open(VENDOR, PRODUCT));
        EXPECT_FALSE(reader.lookup());
        EXPECT_EQ(reader.lastError(), -2);
    }
    EXPECT_EQ(libusbCalls().lists, 0) << "libusb's default context is somebody else's";
    EXPECT_EQ(libusbCalls().exit, 0);
    expectLog(
        {"libusb_init() failed: LIBUSB_ERROR_OTHER", "libusb_open_device_with_vid_pid() failed"});
}

TEST_F(LibusbFailure, DeviceListOrDescriptor_EndsTheSearch)
{
    for (std::uint16_t product = 2; product <= 4; ++product)
        plugIn(UsbIds{VENDOR, product});
    const struct {
        CallFailure call;
        int code;
        int descriptors;
        const char *line;
    } cases[] = {
        {{"libusb_get_device_list", 1, LIBUSB_ERROR_NO_MEM}, -3, 0, "libusb_get_device_list fail!"},
        {{"libusb_get_device_descriptor", 1, LIBUSB_ERROR_IO},
         -4,
         1,
         "libusb_get_device_descriptor(1) fail!"},
        {{"libusb_get_device_descriptor", 3, LIBUSB_ERROR_IO},
         -4,
         3,
         "libusb_get_device_descriptor(3) fail!"},
    };
    for (const auto &c : cases) {
        setCallFailure(c.call);
        {
            const OpenedDevice opened;
            EXPECT_EQ(opened.lastError(), c.code);
            EXPECT_EQ(opened.state(), 0);
        }
        EXPECT_EQ(libusbCalls().descriptors, c.descriptors) << "later devices are not tried";
        EXPECT_EQ(libusbCalls().listsFreed, libusbCalls().lists);
        EXPECT_EQ(libusbCalls().exit, 1);
        expectLog({c.line, "libusb_open_device_with_vid_pid() failed", "open usb failed!"});
    }
}

TEST_F(LibusbFailure, DescriptorBehindTheReader_IsNotAskedFor)
{
    plugIn();
    plugIn();
    setCallFailure({"libusb_get_device_descriptor", 2, LIBUSB_ERROR_IO});
    {
        const OpenedDevice opened;
        EXPECT_EQ(opened.lastError(), 0);
    }
    EXPECT_EQ(libusbCalls().descriptors, 1);
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

} // namespace
