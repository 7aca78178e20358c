// Finding, opening, claiming and resetting a reader, and giving it back.

#include <array>
#include <cstdint>
#include <cstring>

#include <gmock/gmock.h>
#include <libusb.h>

#include "tests/usb/exposed_reader.h"
#include "tests/usb/usb_test.h"

namespace
{

using namespace usb_test;
using testing::AnyOf;
using testing::ElementsAre;

class DeviceAccess : public UsbTest
{
protected:
    /** What the log says of a search that finds nothing. */
    void expectNotFound()
    {
        expectLog({"libusb_open_device_with_vid_pid() failed", "open usb failed!"});
    }

    /** An object that opens the reader, and goes. */
    static void openAndClose()
    {
        const OpenedDevice opened;
        EXPECT_EQ(opened.lastError(), 0);
    }

    /** The object has the code of an open that failed, and holds no device. */
    static void expectFailed(const OpenedDevice &opened, int code, int state)
    {
        EXPECT_EQ(opened.lastError(), code);
        EXPECT_EQ(opened.state(), state);
        EXPECT_EQ(opened.handle(), nullptr);
    }

    /** Without the questions that opening a node brings with it. */
    QStringList calls(const ScriptedDevice &device)
    {
        QStringList calls = bus().calls(device);
        calls.removeAll(QStringLiteral("capabilities"));
        return calls;
    }
};

/** A reader that goes when it has been claimed. */
class LeavingDevice : public ScriptedDevice
{
public:
    bool isPluggedIn() const override { return !m_hasLeft; }
    bool isClaimedElsewhere() const override
    {
        m_hasLeft = true;
        return false;
    }

private:
    mutable bool m_hasLeft = false;
};

const QStringList WHOLE_USE = {"open",  "claim",   "release",      "reset",
                               "claim", "release", "attach driver"};

TEST_F(DeviceAccess, ReaderOnTheBus_IsOpenedClaimedAndReset)
{
    ScriptedDevice &device = plugIn();
    const OpenedDevice opened;
    EXPECT_EQ(opened.lastError(), 0);
    EXPECT_EQ(opened.state(), 2);
    EXPECT_NE(opened.context(), nullptr);
    EXPECT_NE(opened.handle(), nullptr);
    EXPECT_EQ(device.resets(), 1);
    EXPECT_EQ(bus().holdings(), (Holdings{1, 1, 0, 1}));
    expectLog({"found usb device!", "open usb device success!"});
}

TEST_F(DeviceAccess, Layout_IsThatOfTheTable)
{
    plugIn();
    const OpenedDevice opened;
    std::array<unsigned char, 32> bytes{};
    static_assert(sizeof(opened) == sizeof(bytes));
    std::memcpy(bytes.data(), static_cast<const void *>(&opened), sizeof(bytes));
    const auto number = [&bytes](std::size_t offset) {
        std::int32_t value = -99;
        std::memcpy(&value, bytes.data() + offset, sizeof(value));
        return value;
    };
    const auto pointer = [&bytes](std::size_t offset) {
        void *value = nullptr;
        std::memcpy(&value, bytes.data() + offset, sizeof(value));
        return value;
    };
    EXPECT_EQ(pointer(0), opened.context());
    EXPECT_EQ(number(8), 0x0001);
    EXPECT_EQ(number(12), 0x1209);
    EXPECT_EQ(pointer(16), opened.handle());
    EXPECT_EQ(number(24), 0);
    EXPECT_EQ(number(28), 2);
    expectLog(lines::OPENED);
}

TEST_F(DeviceAccess, Destructor_ReleasesTheInterfaceThenClosesTheNode)
{
    ScriptedDevice &device = plugIn();
    openAndClose();
    EXPECT_EQ(calls(device), WHOLE_USE);
    EXPECT_EQ(bus().leftOvers(), QStringList());
    EXPECT_EQ(bus().holdings(), (Holdings{0, 0, 0, 1}));
    expectLog(lines::OPENED);
}

TEST_F(DeviceAccess, LargestIds_AreFoundAndKept)
{
    plugIn(UsbIds{0xFFFF, 0xFFFE});
    const OpenedDevice opened(0xFFFF, 0xFFFE);
    EXPECT_EQ(opened.lastError(), 0);
    EXPECT_EQ(opened.vendorId(), 0xFFFFU);
    EXPECT_EQ(opened.productId(), 0xFFFEU);
    expectLog(lines::OPENED);
}

TEST_F(DeviceAccess, NoDeviceOrOthersOnly_IsNotFoundAndNothingOpened)
{
    {
        const OpenedDevice opened;
        expectFailed(opened, -7, 0);
        EXPECT_NE(opened.context(), nullptr);
    }
    expectNotFound();
    for (const UsbIds ids : {UsbIds{0x120A, PRODUCT}, {VENDOR, 0x0002}, {PRODUCT, VENDOR}})
        plugIn(ids);
    const OpenedDevice opened;
    expectFailed(opened, -7, 0);
    EXPECT_EQ(bus().holdings().timesOpened, 0);
    expectNotFound();
}

TEST_F(DeviceAccess, ReaderAmongOthers_IsTheOneThatIsOpened)
{
    const ScriptedDevice &before = plugIn(UsbIds{VENDOR, 0x0002});
    const ScriptedDevice &device = plugIn();
    const ScriptedDevice &after = plugIn(UsbIds{0x120A, PRODUCT});
    openAndClose();
    EXPECT_EQ(calls(before), QStringList());
    EXPECT_EQ(calls(device), WHOLE_USE);
    EXPECT_EQ(calls(after), QStringList());
    expectLog(lines::OPENED);
}

TEST_F(DeviceAccess, TwoReadersWithTheSameIds_FirstOfTheListIsOpened)
{
    ScriptedDevice &one = plugIn();
    ScriptedDevice &other = plugIn();
    libusb_context *context = nullptr;
    ASSERT_EQ(libusb_init(&context), 0);
    libusb_device **list = nullptr;
    ASSERT_EQ(libusb_get_device_list(context, &list), 2);
    const int first = libusb_get_device_address(list[0]);
    libusb_free_device_list(list, 1);
    libusb_exit(context);

    ScriptedDevice &expected = bus().address(one).device == first ? one : other;
    ScriptedDevice &ignored = &expected == &one ? other : one;
    openAndClose();
    EXPECT_EQ(calls(expected), WHOLE_USE);
    EXPECT_EQ(calls(ignored), QStringList());
    expectLog(lines::OPENED);
}

TEST_F(DeviceAccess, FirstOfTwoReadersInUse_SecondIsNotTried)
{
    plugIn();
    plugIn();
    const OpenedDevice holder;
    const OpenedDevice late;
    EXPECT_EQ(holder.lastError(), 0);
    EXPECT_EQ(late.lastError(), -8);
    expectLog(lines::OPENED + Lines{"found usb device!",
                                    "libusb_claim_interface failed: LIBUSB_ERROR_BUSY",
                                    "open usb failed!"});
}

TEST_F(DeviceAccess, PermissionGiven_OrdinaryUserOpensTheReader)
{
    plugIn();
    {
        const OrdinaryUser user;
        openAndClose();
    }
    expectLog(lines::OPENED);
}

TEST_F(DeviceAccess, ClaimedElsewhere_ClosesTheNodeAtOnce)
{
    ScriptedDevice &device = make();
    device.setClaimedElsewhere(true);
    add(device);
    const OpenedDevice opened;
    expectFailed(opened, -8, 1);
    EXPECT_EQ(calls(device), (QStringList{"open", "claim"}));
    EXPECT_EQ(bus().leftOvers(), QStringList()) << "before the destructor";
    expectLog({"found usb device!", "libusb_claim_interface failed: LIBUSB_ERROR_BUSY",
               "open usb failed!"});
}

TEST_F(DeviceAccess, GoneBeforeTheReset_IsAResetFailure)
{
    auto &device = make<LeavingDevice>();
    add(device);
    const OpenedDevice opened;
    expectFailed(opened, -9, 1);
    EXPECT_EQ(bus().leftOvers(), QStringList()) << "before the destructor";
    // libusb has heard of it from udev meanwhile, or hears of it from the kernel now.
    EXPECT_THAT(takeLog(), ElementsAre("found usb device!",
                                       AnyOf("libusb_reset_device failed: LIBUSB_ERROR_NO_DEVICE",
                                             "libusb_reset_device failed: LIBUSB_ERROR_NOT_FOUND"),
                                       "open usb failed!"));
}

TEST_F(DeviceAccess, BoundToAKernelDriver_IsDetachedAndReattached)
{
    ScriptedDevice &device = make();
    add(device, {QStringLiteral("usbserial_generic"), true});
    {
        const OpenedDevice opened;
        EXPECT_EQ(opened.lastError(), 0);
        EXPECT_EQ(bus().boundDriver(device), QString());
    }
    EXPECT_EQ(calls(device), WHOLE_USE);
    EXPECT_EQ(bus().boundDriver(device), QStringLiteral("usbserial_generic"));
    expectLog(lines::OPENED);
}

TEST_F(DeviceAccess, BoundToADriverOfAnOldKernel_IsTakenOverInTwoSteps)
{
    ScriptedDevice &device = make();
    add(device, {QStringLiteral("usbserial_generic"), false});
    {
        const OpenedDevice opened;
        EXPECT_EQ(opened.lastError(), 0);
        EXPECT_EQ(bus().boundDriver(device), QString());
    }
    EXPECT_EQ(calls(device),
              (QStringList{"open", "get driver", "detach driver", "claim", "release", "reset",
                           "get driver", "detach driver", "claim", "release", "attach driver"}));
    EXPECT_EQ(bus().boundDriver(device), QStringLiteral("usbserial_generic"));
    expectLog(lines::OPENED);
}

TEST_F(DeviceAccess, OpenOnALiveObject_ReleasesWhatItHeld)
{
    ScriptedDevice &device = plugIn();
    {
        OpenedDevice opened;
        EXPECT_TRUE(opened.open(VENDOR, PRODUCT));
        EXPECT_EQ(opened.lastError(), 0);
        EXPECT_EQ(opened.state(), 2);
    }
    EXPECT_EQ(calls(device), WHOLE_USE + WHOLE_USE);
    EXPECT_EQ(bus().leftOvers(), QStringList());
    EXPECT_EQ(bus().holdings().timesOpened, 2);
    expectLog(lines::OPENED + lines::OPENED);
}

TEST_F(DeviceAccess, OpenOfAnotherReaderOnALiveObject_GoesOverToIt)
{
    ScriptedDevice &one = plugIn();
    ScriptedDevice &other = plugIn(UsbIds{0x120A, 0x0002});
    {
        OpenedDevice opened;
        EXPECT_TRUE(opened.open(0x120A, 0x0002));
        EXPECT_EQ(calls(one), WHOLE_USE);
        EXPECT_EQ(opened.vendorId(), VENDOR) << "of the constructor";
        EXPECT_EQ(opened.productId(), PRODUCT) << "of the constructor";
    }
    EXPECT_EQ(calls(other), WHOLE_USE);
    expectLog(lines::OPENED + lines::OPENED);
}

TEST_F(DeviceAccess, OpenOfAnAbsentReaderOnALiveObject_LeavesNothingOpen)
{
    ScriptedDevice &device = plugIn();
    OpenedDevice opened;
    EXPECT_FALSE(opened.open(VENDOR, 0x0002));
    expectFailed(opened, -7, 0);
    EXPECT_EQ(bus().leftOvers(), QStringList()) << "before the destructor";
    EXPECT_EQ(calls(device), WHOLE_USE);
    expectLog(lines::OPENED + Lines{"libusb_open_device_with_vid_pid() failed"});
}

TEST_F(DeviceAccess, OpenAfterAFailedClaim_OpensAndKeepsTheCode)
{
    ScriptedDevice &device = make();
    device.setClaimedElsewhere(true);
    add(device);
    OpenedDevice opened;
    EXPECT_EQ(opened.lastError(), -8);
    bus().change([&device] { device.setClaimedElsewhere(false); });
    EXPECT_TRUE(opened.open(VENDOR, PRODUCT));
    EXPECT_EQ(opened.lastError(), -8);
    EXPECT_EQ(opened.state(), 2);
    EXPECT_EQ(bus().holdings(), (Holdings{1, 1, 0, 2}));
    expectLog(Lines{"found usb device!", "libusb_claim_interface failed: LIBUSB_ERROR_BUSY",
                    "open usb failed!"} +
              lines::OPENED);
}

TEST_F(DeviceAccess, OpenTwiceWithFailures_ClosesEachNodeOnce)
{
    ScriptedDevice &device = make();
    device.setRefusesReset(true);
    add(device);
    OpenedDevice opened;
    EXPECT_FALSE(opened.open(VENDOR, PRODUCT));
    expectFailed(opened, -9, 1);
    EXPECT_EQ(bus().leftOvers(), QStringList());
    EXPECT_EQ(bus().holdings().timesOpened, 2);
    const Lines refused = {"found usb device!", "libusb_reset_device failed: LIBUSB_ERROR_OTHER"};
    expectLog(refused + Lines{"open usb failed!"} + refused);
}

TEST_F(DeviceAccess, ReaderPluggedInLater_IsFoundByTheNextObject)
{
    ScriptedDevice &device = make();
    device.setPluggedIn(false);
    add(device);
    {
        const OpenedDevice early;
        EXPECT_EQ(early.lastError(), -7);
    }
    bus().change([&device] { device.setPluggedIn(true); });
    startAccount();
    openAndClose();
    expectNotFound();
    expectLog(lines::OPENED);
}

TEST_F(DeviceAccess, ReaderPluggedInMoreOftenThanABusHasNumbers_IsFound)
{
    constexpr int TIMES = 300; // more than a byte counts
    ScriptedDevice &device = plugIn();
    for (int i = 0; i < TIMES; ++i) {
        bus().change([&device] { device.setPluggedIn(false); });
        bus().change([&device] { device.setPluggedIn(true); });
    }
    startAccount();
    openAndClose();
    expectLog(lines::OPENED);
}

TEST_F(DeviceAccess, Search_HandsTheHandleToItsCaller)
{
    plugIn();
    const ScriptedDevice &other = plugIn(UsbIds{VENDOR, 0x0002});
    OpenedDevice opened;
    libusb_context *context = nullptr;
    ASSERT_EQ(libusb_init(&context), 0);
    libusb_device_handle *const handle =
        opened.libusb_open_device_with_vid_pid_ex(context, VENDOR, 0x0002);
    ASSERT_NE(handle, nullptr);
    EXPECT_NE(handle, opened.handle());
    EXPECT_EQ(opened.lastError(), 0);
    EXPECT_EQ(opened.state(), 2);
    EXPECT_EQ(calls(other), QStringList{"open"});
    EXPECT_EQ(bus().holdings(), (Holdings{2, 1, 0, 2}));
    libusb_close(handle);
    libusb_exit(context);
    expectLog(lines::OPENED + Lines{"found usb device!"});
}

TEST_F(DeviceAccess, SearchForAnAbsentReader_SetsTheCodeAndTouchesNothing)
{
    plugIn();
    OpenedDevice opened;
    EXPECT_EQ(opened.libusb_open_device_with_vid_pid_ex(opened.context(), VENDOR, 0x0002), nullptr);
    EXPECT_EQ(opened.lastError(), -7);
    EXPECT_EQ(opened.state(), 2);
    EXPECT_EQ(bus().holdings(), (Holdings{1, 1, 0, 1}));
    expectLog(lines::OPENED);
}

} // namespace
