// The standard requests of the control endpoint.

#include <gmock/gmock.h>

#include "simulator/usbip/usb_control.h"
#include "tests/usbip/client_messages.h"
#include "tests/usbip/recording_device.h"

using simulator::UsbControlEndpoint;
using simulator::UsbSetup;
using simulator::UsbStatus;
using simulator::UsbTransfer;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

const DeviceCall RESET{DeviceCall::Reset, 0, {}, 0};

class Control : public testing::Test
{
protected:
    UsbTransfer ask(const char *setup)
    {
        std::array<std::uint8_t, UsbSetup::SIZE> bytes = {};
        const QByteArray given = hex(setup);
        std::copy(given.begin(), given.end(), bytes.begin());
        return endpoint.answer(UsbSetup(bytes));
    }

    void expectAnswer(const char *setup, const QByteArray &data)
    {
        const UsbTransfer transfer = ask(setup);
        EXPECT_EQ(transfer.status, UsbStatus::DONE) << setup;
        EXPECT_EQ(transfer.data.toHex(' '), data.toHex(' ')) << setup;
        EXPECT_EQ(transfer.count, data.size()) << setup;
    }

    void expectDone(const char *setup) { expectAnswer(setup, {}); }
    void expectStall(const QByteArray &setup)
    {
        EXPECT_EQ(ask(setup.constData()).status, UsbStatus::STALLED) << setup.constData();
    }

    RecordingDevice device;
    UsbControlEndpoint endpoint{device};
};

TEST_F(Control, DeviceDescriptorIsCutToTheRoomThereIs)
{
    expectAnswer("80 06 00 01 00 00 08 00", device.ownDescriptors.left(8));
    expectAnswer("80 06 00 01 00 00 12 00", device.ownDescriptors.left(18));
    expectAnswer("80 06 00 01 00 00 FF FF", device.ownDescriptors.left(18));
}

TEST_F(Control, OnlyTheFirstConfigurationHasADescriptor)
{
    expectAnswer("80 06 00 02 00 00 FF 00", device.ownDescriptors.mid(18));
    expectStall("80 06 01 02 00 00 FF 00");
}

TEST_F(Control, DescriptorsThatThereAreNotStall)
{
    expectStall("80 06 00 04 00 00 FF 00"); // interface
    expectStall("80 06 00 06 00 00 0A 00"); // qualifier: what it would be at another speed
    expectStall("80 06 00 07 00 00 FF 00"); // configuration at another speed
    expectStall("80 06 00 0F 00 00 05 00"); // capabilities
}

TEST_F(Control, DeviceHasNoTextsAndARequestForOneStalls)
{
    EXPECT_EQ(device.ownDescriptors.mid(14, 3), QByteArray(3, '\0')) << "it names none";
    expectStall("80 06 00 03 00 00 FF 00"); // their languages
    for (int text = 1; text < 256; ++text) {
        const QByteArray index = QByteArray(1, static_cast<char>(text)).toHex();
        expectStall("8006" + index + "030904FF00");
    }
}

TEST_F(Control, ChosenConfigurationIsReportedAndResetsTheDevice)
{
    expectAnswer("80 08 00 00 00 00 01 00", hex("00"));
    expectStall("00 09 02 00 00 00 00 00");
    expectStall("00 09 01 01 00 00 00 00");
    expectDone("00 05 02 00 00 00 00 00"); // an address, which is taken without effect
    EXPECT_THAT(device.calls, IsEmpty());
    expectDone("00 09 01 00 00 00 00 00");
    expectDone("00 09 01 00 00 00 00 00");
    EXPECT_THAT(device.calls, ElementsAre(RESET, RESET));
    expectAnswer("80 08 00 00 00 00 01 00", hex("01"));
    expectDone("00 09 00 00 00 00 00 00");
    expectAnswer("80 08 00 00 00 00 01 00", hex("00"));
}

TEST_F(Control, DeviceThatRefusesResetsStallsOnBeingSetUpAgainAndWorksWhenFoundAgain)
{
    device.resetRefused = true;
    expectDone("00 09 01 00 00 00 00 00");
    expectStall("00 09 01 00 00 00 00 00");
    EXPECT_THAT(device.calls, ElementsAre(RESET));
    expectDone("00 09 01 00 00 00 00 00");
}

TEST_F(Control, StatusIsTwoZeroBytesOfEveryRecipient)
{
    expectAnswer("80 00 00 00 00 00 02 00", hex("00 00"));
    expectAnswer("81 00 00 00 00 00 02 00", hex("00 00"));
    expectAnswer("82 00 00 00 81 00 02 00", hex("00 00"));
    expectAnswer("82 00 00 00 00 00 02 00", hex("00 00"));
    expectStall("81 00 00 00 01 00 02 00");
    expectStall("82 00 00 00 83 00 02 00");
    expectStall("82 00 00 00 81 01 02 00");
}

TEST_F(Control, HaltOfAnEndpointIsCleared)
{
    expectDone("02 01 00 00 81 00 00 00");
    expectDone("02 01 00 00 02 00 00 00");
    expectStall("02 01 00 00 01 00 00 00"); // 0x01 is no endpoint of it
    expectStall("02 01 01 00 81 00 00 00"); // another feature
    EXPECT_THAT(device.calls, IsEmpty());
}

TEST_F(Control, InterfaceHasOneSetting)
{
    expectDone("01 0B 00 00 00 00 00 00");
    expectAnswer("81 0A 00 00 00 00 01 00", hex("00"));
    expectStall("01 0B 01 00 00 00 00 00");
    expectStall("01 0B 00 00 01 00 00 00");
}

TEST_F(Control, RequestsOfOtherKindsStall)
{
    for (int kind = 0; kind < 256; ++kind) {
        if ((kind & 0x60) == 0 && (kind & 0x1F) <= 2)
            continue;
        const QByteArray setup = QByteArray(1, static_cast<char>(kind)).toHex() + "06000100001200";
        expectStall(setup);
    }
}

TEST_F(Control, EveryRequestEndsAndStaysWithinItsRoom)
{
    for (int type = 0; type < 256; ++type) {
        for (int request = 0; request < 16; ++request) {
            for (int descriptor = 0; descriptor < 16; ++descriptor) {
                UsbSetup setup;
                setup.requestType = static_cast<std::uint8_t>(type);
                setup.request = static_cast<std::uint8_t>(request);
                setup.value = static_cast<std::uint16_t>(descriptor << 8);
                setup.length = 3;
                const UsbTransfer transfer = endpoint.answer(setup);
                EXPECT_LE(transfer.data.size(), 3);
                EXPECT_NE(transfer.status, UsbStatus::PENDING);
            }
        }
    }
}

} // namespace
