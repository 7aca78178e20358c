// The simulated reader on USB: its exchanges, the order in which they must come, its pipes.

#include <random>

#include <gmock/gmock.h>

#include "simulator/card/raw_record.h"
#include "tests/simulator/built_in_card.h"
#include "tests/simulator/usb_exchange.h"

using namespace simulator;

namespace
{

constexpr std::uint8_t LOOP_OUT = 0x06;
constexpr std::uint8_t LOOP_IN = 0x85;

QByteArray garbage(int size, std::mt19937 *random)
{
    QByteArray bytes;
    while (bytes.size() < size)
        bytes += static_cast<char>((*random)() & 0xFFU);
    return bytes;
}

} // namespace

TEST(VirtualReader, Card_IsReadOnceItIsFoundAndSelectedAndRefusedElse)
{
    ReaderOnUsb reader;
    EXPECT_EQ(reader.answer(frames::SELECT, 19), frames::notSelected(0xE3));
    EXPECT_EQ(reader.answer(frames::READ, 2321), frames::statusOnly(0xE3));
    EXPECT_EQ(reader.answer(frames::LOOKUP), frames::LOOKUP_ANSWER);
    EXPECT_EQ(reader.answer(frames::READ, 2321), frames::statusOnly(0xE3)) << "not selected";
    reader.selectCard();
    const QByteArray first = reader.answer(frames::READ, 2321);
    EXPECT_EQ(first.size(), 2321);
    EXPECT_EQ(reader.answer(frames::READ), first) << "again";
    EXPECT_EQ(reader.answer(frames::LOOKUP), frames::LOOKUP_ANSWER);
    EXPECT_EQ(reader.answer(frames::READ), frames::statusOnly(0xE3)) << "a lookup starts over";
}

TEST(VirtualReader, CardThatIsTaken_CannotBeSelectedNorRead)
{
    ReaderOnUsb found;
    EXPECT_EQ(found.answer(frames::LOOKUP), frames::LOOKUP_ANSWER);
    found->slot().takeCard();
    EXPECT_EQ(found.answer(frames::SELECT, 19), frames::notSelected(0x80));
    ReaderOnUsb selected;
    selected.selectCard();
    selected->slot().takeCard();
    EXPECT_EQ(selected.answer(frames::READ), frames::statusOnly(0x80));
}

TEST(VirtualReader, NoCard_IsAnsweredWithStatus80InAFrameOfFullLength)
{
    ReaderOnUsb reader("");
    EXPECT_EQ(reader.answer(frames::LOOKUP, 15), frames::NO_CARD_ANSWER);
}

TEST(VirtualReader, CardExchangedAfterSelect_GivesNoDataUntilItIsFoundItself)
{
    ReaderOnUsb reader;
    reader.selectCard();
    reader.put("hmt-taiwan");
    EXPECT_EQ(reader.answer(frames::READ), frames::statusOnly(0x80));
    reader.selectCard();
    EXPECT_EQ(reader.answer(frames::READ).size(), 1297);
}

TEST(VirtualReader, CardPutAfterAnother_IsReadWithItsOwnPhoto)
{
    ReaderOnUsb reader;
    for (const char *name : {"resident", "hmt-taiwan", "resident"}) {
        reader.put(name);
        reader.selectCard();
        EXPECT_EQ(reader.answer(frames::READ), readAnswer(builtInCard(name), {})) << name;
    }
}

TEST(VirtualReader, Reset_ForgetsAnswersAndTheSelectedCard)
{
    ReaderOnUsb reader;
    reader.selectCard();
    reader->write(OUT_ENDPOINT, frames::READ);
    reader->write(LOOP_OUT, "abc");
    reader->reset();
    EXPECT_EQ(reader->read(IN_ENDPOINT, ROOM).status, UsbStatus::PENDING);
    EXPECT_EQ(reader->read(LOOP_IN, ROOM).status, UsbStatus::PENDING);
    EXPECT_EQ(reader.answer(frames::READ), frames::statusOnly(0xE3));
}

TEST(VirtualReader, AnswerNotFetched_GivesWayToTheNext)
{
    ReaderOnUsb reader;
    reader->write(OUT_ENDPOINT, frames::LOOKUP);
    EXPECT_EQ(reader.answer(frames::SELECT), frames::SELECT_ANSWER);
    EXPECT_EQ(reader->read(IN_ENDPOINT, ROOM).status, UsbStatus::PENDING);
}

TEST(VirtualReader, UnknownCommand_IsRefused)
{
    ReaderOnUsb reader;
    EXPECT_EQ(reader.answer(frames::frame(frames::hex("12 FF"))), frames::statusOnly(0xE1));
    EXPECT_EQ(reader.answer(frames::frame(frames::hex("20 01 00"))), frames::statusOnly(0xE1));
    EXPECT_EQ(reader.answer(frames::frame(QByteArray(65534, 'x'))), frames::statusOnly(0xE1));
}

TEST(VirtualReader, MalformedCommand_IsRefused)
{
    for (const char *bytes :
         {"AA", "AA AA AA 96", "AA AA AA 96 69 00", "AA AA AA 96 69 00 03 20 01",
          "AA AA AA 96 69 00 03 20 01 23", "AA AA AA 96 69 00 04 20 01 25",
          "AA AA AA 96 68 00 03 20 01 22", "AA AA AA 96 69 00 02 20 22",
          "AA AA AA 96 69 00 03 20 01 22 00", "AB AA AA 96 69 00 03"}) {
        ReaderOnUsb reader;
        EXPECT_EQ(reader.answer(frames::hex(bytes)), frames::statusOnly(0xE1)) << bytes;
    }
}

TEST(VirtualReader, EmptyCommand_IsTakenAndNotAnswered)
{
    ReaderOnUsb reader;
    reader->write(OUT_ENDPOINT, frames::LOOKUP);
    const UsbTransfer transfer = reader->write(OUT_ENDPOINT, {});
    EXPECT_EQ(transfer.status, UsbStatus::DONE);
    EXPECT_EQ(reader->read(IN_ENDPOINT, ROOM).data, frames::LOOKUP_ANSWER);
}

TEST(VirtualReader, GarbageOfAnyLength_IsRefusedAndLeavesTheReaderUsable)
{
    std::mt19937 random(1);
    ReaderOnUsb reader;
    for (int length = 1; length <= 64; ++length) {
        for (int round = 0; round < 20; ++round)
            EXPECT_EQ(reader.answer(garbage(length, &random)), frames::statusOnly(0xE1));
    }
    for (int length = 1; length <= 57; ++length)
        EXPECT_EQ(reader.answer(frames::hex("AA AA AA 96 69 01 FF") + garbage(length, &random)),
                  frames::statusOnly(0xE1));
    reader.selectCard();
}

TEST(VirtualReader, MoreBytesThanAFrameHas_StallAndAreNotKept)
{
    ReaderOnUsb reader;
    for (const std::uint8_t endpoint : {OUT_ENDPOINT, LOOP_OUT}) {
        const UsbTransfer transfer = reader->write(endpoint, QByteArray(65543, 'x'));
        EXPECT_EQ(transfer.status, UsbStatus::STALLED);
        EXPECT_EQ(transfer.count, 0);
    }
    EXPECT_EQ(reader->read(IN_ENDPOINT, ROOM).status, UsbStatus::PENDING);
    EXPECT_EQ(reader->read(LOOP_IN, ROOM).status, UsbStatus::PENDING);
}

TEST(VirtualReader, EndpointThatThereIsNot_Stalls)
{
    ReaderOnUsb reader;
    for (const int endpoint : {0x00, 0x01, 0x81, 0x85})
        EXPECT_EQ(reader->write(std::uint8_t(endpoint), frames::LOOKUP).status, UsbStatus::STALLED);
    for (const int endpoint : {0x80, 0x82, 0x02, 0x06})
        EXPECT_EQ(reader->read(std::uint8_t(endpoint), ROOM).status, UsbStatus::STALLED);
}

TEST(VirtualReader, BareHead_ComesBack)
{
    ReaderOnUsb reader;
    const QByteArray head = frames::hex("AA AA AA 96 69 12 34");
    EXPECT_EQ(reader.answer(head, 7), head);
}

TEST(VirtualReader, LoopBack_ReturnsWhatWasWrittenLast)
{
    ReaderOnUsb reader;
    reader->write(LOOP_OUT, "first");
    const UsbTransfer written = reader->write(LOOP_OUT, "second");
    EXPECT_EQ(written.status, UsbStatus::DONE);
    EXPECT_EQ(written.count, 6);
    const UsbTransfer read = reader->read(LOOP_IN, 6);
    EXPECT_EQ(read.status, UsbStatus::DONE);
    EXPECT_EQ(read.data, "second");
    EXPECT_EQ(reader->read(LOOP_IN, 6).status, UsbStatus::PENDING);
}

TEST(VirtualReader, LoopBack_CarriesAsMuchAsAPipeOperationCanWrite)
{
    ReaderOnUsb reader;
    const QByteArray bytes(65535, 'x');
    reader->write(LOOP_OUT, bytes);
    EXPECT_EQ(reader->read(LOOP_IN, bytes.size()).data, bytes);
}

TEST(VirtualReader, AnswerLongerThanTheRoom_EndsTooLongAndIsLost)
{
    ReaderOnUsb reader;
    for (const int room : {0, 1, 7, 14, -1}) {
        const UsbTransfer transfer = reader.ask(frames::LOOKUP, room);
        EXPECT_EQ(transfer.status, UsbStatus::TOO_LONG) << room;
        EXPECT_EQ(transfer.data, frames::LOOKUP_ANSWER.left(std::max(room, 0))) << room;
        EXPECT_EQ(transfer.count, transfer.data.size()) << room;
        EXPECT_EQ(reader->read(IN_ENDPOINT, ROOM).status, UsbStatus::PENDING) << room;
    }
}

TEST(VirtualReader, AnswerLongerThanWholePackets_ComesInSeveralTransfers)
{
    ReaderOnUsb reader;
    reader.selectCard();
    const QByteArray whole = reader.answer(frames::READ);
    QByteArray parts = reader.answer(frames::READ, 1024);
    EXPECT_EQ(parts.size(), 1024);
    parts += reader->read(IN_ENDPOINT, 512).data;
    EXPECT_EQ(parts.size(), 1536);
    const UsbTransfer last = reader->read(IN_ENDPOINT, 1000);
    EXPECT_EQ(last.status, UsbStatus::DONE);
    EXPECT_EQ(parts + last.data, whole);
}

TEST(VirtualReader, AnswerOfWholePacketsThatFillsTheRoom_IsFollowedByAnEmptyTransfer)
{
    ReaderOnUsb reader;
    const QByteArray bytes(1024, 'x');
    reader->write(LOOP_OUT, bytes);
    EXPECT_EQ(reader->read(LOOP_IN, 1024).data, bytes);
    const UsbTransfer end = reader->read(LOOP_IN, 1024);
    EXPECT_EQ(end.status, UsbStatus::DONE);
    EXPECT_EQ(end.count, 0);
    EXPECT_EQ(reader->read(LOOP_IN, 1024).status, UsbStatus::PENDING);
}

TEST(VirtualReader, AnswerOfWholePacketsInMoreRoom_EndsWithOneTransfer)
{
    ReaderOnUsb reader;
    reader->write(LOOP_OUT, QByteArray(1024, 'x'));
    EXPECT_EQ(reader->read(LOOP_IN, 1025).count, 1024);
    EXPECT_EQ(reader->read(LOOP_IN, 1025).status, UsbStatus::PENDING);
}

TEST(VirtualReader, Unplugged_AnswersNothingUntilItIsPluggedInAsNew)
{
    ReaderOnUsb reader;
    reader.selectCard();
    reader->write(OUT_ENDPOINT, frames::READ);
    reader->unplug();
    EXPECT_FALSE(reader->isPluggedIn());
    EXPECT_EQ(reader->write(OUT_ENDPOINT, frames::LOOKUP).status, UsbStatus::UNPLUGGED);
    EXPECT_EQ(reader->read(IN_ENDPOINT, ROOM).status, UsbStatus::UNPLUGGED);
    reader->plugIn();
    EXPECT_TRUE(reader->isPluggedIn());
    EXPECT_EQ(reader->read(IN_ENDPOINT, ROOM).status, UsbStatus::PENDING);
    EXPECT_EQ(reader.answer(frames::READ), frames::statusOnly(0xE3));
}

TEST(VirtualReader, Descriptors_DescribeAVendorSpecificHighSpeedDeviceWithFourBulkEndpoints)
{
    const VirtualReader reader(CardSlot(), UsbIds{0x1234, 0xABCD});
    EXPECT_EQ(reader.descriptors().toHex(),
              frames::hex("12 01 00 02 00 00 00 40 34 12 CD AB 00 01 00 00 00 01"
                          "09 02 2E 00 01 01 00 80 32"
                          "09 04 00 00 04 FF 00 00 00"
                          "07 05 02 02 00 02 00"
                          "07 05 81 02 00 02 00"
                          "07 05 06 02 00 02 00"
                          "07 05 85 02 00 02 00")
                  .toHex());
}
