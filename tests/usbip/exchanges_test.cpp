// Whole exchanges of a USB/IP client, byte for byte as the protocol's documentation has them and as
// the usbip tool and the kernel's vhci send them.

#include <gmock/gmock.h>

#include "simulator/usbip/usbip_connection.h"
#include "tests/usbip/client_messages.h"
#include "tests/usbip/recording_device.h"

using simulator::UsbipConnection;
using simulator::UsbipExport;
using simulator::UsbStatus;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

QByteArray zeros(int count)
{
    return QByteArray(count, '\0');
}

// What the list of devices and the import have in common.
QByteArray deviceEntry()
{
    const QByteArray path("/sys/devices/idcard-virtual-reader/usb1/1-1");
    return path + zeros(256 - path.size()) + hex("31 2D 31") + zeros(29) + // bus id 1-1
           hex("00 00 00 01") +                                            // bus
           hex("00 00 00 02") +                                            // device
           hex("00 00 00 03") +                                            // high speed
           hex("12 09 00 01 01 00") + // vendor, product, release
           hex("00 00 00") +          // class, subclass, protocol
           hex("01 01 01");           // configuration, configurations, interfaces
}

class Exchange : public testing::Test
{
protected:
    QByteArray answerTo(const QByteArray &request)
    {
        connection.receive(request, 0);
        return connection.takeBytesToSend();
    }

    void attach()
    {
        ASSERT_EQ(answerTo(importRequest()).size(), IMPORT_REPLY_SIZE);
        device.calls.clear();
    }

    RecordingDevice device;
    UsbipExport exported{device};
    UsbipConnection connection{exported};
};

TEST_F(Exchange, DeviceListNamesTheReaderAndItsInterface)
{
    const QByteArray expected =
        hex("01 11 00 05 00 00 00 00 00 00 00 01") + deviceEntry() + hex("FF 00 00 00");
    EXPECT_EQ(answerTo(hex("01 11 80 05 00 00 00 00")).toHex(' '), expected.toHex(' '));
    EXPECT_TRUE(connection.isOver());
    EXPECT_THAT(connection.problem().toStdString(), IsEmpty());
}

TEST_F(Exchange, DeviceListIsEmptyWhileTheReaderIsUnplugged)
{
    device.pluggedIn = false;
    EXPECT_EQ(answerTo(listRequest()), hex("01 11 00 05 00 00 00 00 00 00 00 00"));
}

TEST_F(Exchange, ImportHandsTheReaderOver)
{
    const QByteArray request = hex("01 11 80 03 00 00 00 00 31 2D 31") + zeros(29);
    const QByteArray expected = hex("01 11 00 03 00 00 00 00") + deviceEntry();
    EXPECT_EQ(answerTo(request).toHex(' '), expected.toHex(' '));
    EXPECT_TRUE(connection.hasDevice());
    EXPECT_TRUE(exported.isImported);
    EXPECT_FALSE(connection.isOver());
    EXPECT_THAT(device.calls, ElementsAre(DeviceCall{DeviceCall::Reset, 0, {}, 0}));
}

TEST_F(Exchange, ImportOfWhatThereIsNot_IsRefusedWithTheReason)
{
    const auto answerToImport = [this](const QByteArray &busId) {
        UsbipConnection other(exported);
        other.receive(importRequest(busId), 0);
        EXPECT_TRUE(other.isOver());
        EXPECT_FALSE(exported.isImported);
        return other.takeBytesToSend();
    };
    EXPECT_EQ(answerToImport("1-2"), hex("01 11 00 03 00 00 00 04"));
    device.pluggedIn = false;
    EXPECT_EQ(answerToImport("1-1"), hex("01 11 00 03 00 00 00 04"));
}

TEST_F(Exchange, SecondImportIsRefusedAsInUse)
{
    attach();
    UsbipConnection second(exported);
    second.receive(importRequest(), 0);
    EXPECT_EQ(second.takeBytesToSend(), hex("01 11 00 03 00 00 00 01"));
    EXPECT_TRUE(second.isOver());
    EXPECT_TRUE(connection.hasDevice());
    EXPECT_TRUE(exported.isImported);
}

TEST_F(Exchange, ImportSucceedsAgainAfterTheFirstConnectionHasGone)
{
    {
        UsbipConnection first(exported);
        first.receive(importRequest(), 0);
        ASSERT_TRUE(first.hasDevice());
    }
    EXPECT_EQ(answerTo(importRequest()).size(), IMPORT_REPLY_SIZE);
}

TEST_F(Exchange, ControlTransfersOfTheKernelAreAnsweredByteForByte)
{
    const struct {
        const char *what;
        const char *request;
        const char *answer;
    } transfers[] = {
        {"first device descriptor, with room for sixty-four bytes",
         "00 00 00 01 00 00 00 01 00 01 00 02 00 00 00 01 00 00 00 00"
         "00 00 02 00 00 00 00 40 00 00 00 00 00 00 00 00 00 00 00 00"
         "80 06 00 01 00 00 40 00",
         "00 00 00 03 00 00 00 01 00 00 00 00 00 00 00 00 00 00 00 00"
         "00 00 00 00 00 00 00 12 00 00 00 00 00 00 00 00 00 00 00 00"
         "00 00 00 00 00 00 00 00"
         "12 01 00 02 00 00 00 40 09 12 01 00 00 01 00 00 00 01"},
        {"head of the configuration",
         "00 00 00 01 00 00 00 02 00 01 00 02 00 00 00 01 00 00 00 00"
         "00 00 02 00 00 00 00 09 00 00 00 00 00 00 00 00 00 00 00 00"
         "80 06 00 02 00 00 09 00",
         "00 00 00 03 00 00 00 02 00 00 00 00 00 00 00 00 00 00 00 00"
         "00 00 00 00 00 00 00 09 00 00 00 00 00 00 00 00 00 00 00 00"
         "00 00 00 00 00 00 00 00"
         "09 02 2E 00 01 01 00 80 32"},
        {"whole configuration",
         "00 00 00 01 00 00 00 03 00 01 00 02 00 00 00 01 00 00 00 00"
         "00 00 02 00 00 00 00 2E 00 00 00 00 00 00 00 00 00 00 00 00"
         "80 06 00 02 00 00 2E 00",
         "00 00 00 03 00 00 00 03 00 00 00 00 00 00 00 00 00 00 00 00"
         "00 00 00 00 00 00 00 2E 00 00 00 00 00 00 00 00 00 00 00 00"
         "00 00 00 00 00 00 00 00"
         "09 02 2E 00 01 01 00 80 32 09 04 00 00 04 FF 00 00 00"
         "07 05 02 02 00 02 00 07 05 81 02 00 02 00"
         "07 05 06 02 00 02 00 07 05 85 02 00 02 00"},
        {"text, which there is not",
         "00 00 00 01 00 00 00 04 00 01 00 02 00 00 00 01 00 00 00 00"
         "00 00 02 00 00 00 00 FF 00 00 00 00 00 00 00 00 00 00 00 00"
         "80 06 00 03 00 00 FF 00",
         "00 00 00 03 00 00 00 04 00 00 00 00 00 00 00 00 00 00 00 00"
         "FF FF FF E0 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
         "00 00 00 00 00 00 00 00"},
        {"choice of the configuration",
         "00 00 00 01 00 00 00 04 00 01 00 02 00 00 00 00 00 00 00 00"
         "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
         "00 09 01 00 00 00 00 00",
         "00 00 00 03 00 00 00 04 00 00 00 00 00 00 00 00 00 00 00 00"
         "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
         "00 00 00 00 00 00 00 00"},
    };
    attach();
    for (const auto &transfer : transfers)
        EXPECT_EQ(answerTo(hex(transfer.request)).toHex(' '), hex(transfer.answer).toHex(' '))
            << transfer.what;
}

TEST_F(Exchange, CommandIsWrittenAndItsAnswerRead)
{
    attach();
    const QByteArray command = hex("AA AA AA 96 69 00 03 20 01 22");
    const QByteArray found = hex("AA AA AA 96 69 00 08 00 00 9F 00 00 00 00 97");
    device.writes = {taken(UsbStatus::DONE, 10)};
    device.reads = {ended(UsbStatus::DONE, found)};
    EXPECT_EQ(answerTo(hex("00 00 00 01 00 00 00 06 00 01 00 02 00 00 00 00 00 00 00 02"
                           "00 00 00 00 00 00 00 0A 00 00 00 00 FF FF FF FF 00 00 00 00"
                           "00 00 00 00 00 00 00 00"
                           "AA AA AA 96 69 00 03 20 01 22")),
              hex("00 00 00 03 00 00 00 06 00 00 00 00 00 00 00 00 00 00 00 00"
                  "00 00 00 00 00 00 00 0A 00 00 00 00 00 00 00 00 00 00 00 00"
                  "00 00 00 00 00 00 00 00"));
    EXPECT_EQ(answerTo(hex("00 00 00 01 00 00 00 07 00 01 00 02 00 00 00 01 00 00 00 01"
                           "00 00 02 00 00 00 00 0F 00 00 00 00 00 00 00 00 00 00 00 00"
                           "00 00 00 00 00 00 00 00")),
              hex("00 00 00 03 00 00 00 07 00 00 00 00 00 00 00 00 00 00 00 00"
                  "00 00 00 00 00 00 00 0F 00 00 00 00 00 00 00 00 00 00 00 00"
                  "00 00 00 00 00 00 00 00"
                  "AA AA AA 96 69 00 08 00 00 9F 00 00 00 00 97"));
    EXPECT_THAT(device.calls, ElementsAre(DeviceCall{DeviceCall::Write, 0x02, command, 0},
                                          DeviceCall{DeviceCall::Read, 0x81, {}, 15}));
}

TEST_F(Exchange, UnlinkTakesAWaitingReadBack)
{
    attach();
    device.reads = {ended(UsbStatus::PENDING)};
    EXPECT_EQ(answerTo(bulkRead(8, 64)), QByteArray());
    EXPECT_EQ(answerTo(hex("00 00 00 02 00 00 00 09 00 01 00 02 00 00 00 00 00 00 00 00"
                           "00 00 00 08 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
                           "00 00 00 00 00 00 00 00")),
              hex("00 00 00 04 00 00 00 09 00 00 00 00 00 00 00 00 00 00 00 00"
                  "FF FF FF 98 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
                  "00 00 00 00 00 00 00 00"));
}

TEST_F(Exchange, ByteByByteIsAnsweredAsInOnePiece)
{
    device.writes = {taken(UsbStatus::DONE, 3)};
    device.reads = {ended(UsbStatus::DONE, "abc")};
    const QByteArray all = importRequest() + bulkWrite(1, "xyz") + bulkRead(2, 64) +
                           control(3, hex("8006000100001200"));
    QByteArray sent;
    for (const char byte : all)
        sent += answerTo(QByteArray(1, byte));

    RecordingDevice other;
    other.writes = {taken(UsbStatus::DONE, 3)};
    other.reads = {ended(UsbStatus::DONE, "abc")};
    UsbipExport otherExport(other);
    UsbipConnection inOnePiece(otherExport);
    inOnePiece.receive(all, 0);
    EXPECT_EQ(sent, inOnePiece.takeBytesToSend());
    EXPECT_EQ(sent.size(), IMPORT_REPLY_SIZE + 3 * 48 + 3 + 18);
}

} // namespace
