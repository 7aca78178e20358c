// Connections with hostile input: nothing they send may crash the server, make
// it grow, or keep the reader from the next client.

#include <random>

#include <gmock/gmock.h>

#include "simulator/usbip/usbip_connection.h"
#include "tests/usbip/client_messages.h"
#include "tests/usbip/recording_device.h"

using simulator::UsbipConnection;
using simulator::UsbipExport;
using simulator::UsbStatus;
using testing::HasSubstr;

namespace
{

/** Most that may wait to be sent: what is let in, and the answers of all that was waiting. */
constexpr int MOST_SENT = UsbipConnection::MOST_BYTES_TO_SEND +
                          static_cast<int>(UsbipConnection::MOST_PENDING_TRANSFERS + 2) *
                              (simulator::USBIP_LONGEST_TRANSFER + 48);

/** Always there: fills every read, takes every write. */
class WillingDevice : public RecordingDevice
{
public:
    simulator::UsbTransfer write(std::uint8_t /*endpoint*/, const QByteArray &bytes) override
    {
        return taken(UsbStatus::DONE, bytes.size());
    }
    simulator::UsbTransfer read(std::uint8_t /*endpoint*/, int capacity) override
    {
        return ended(UsbStatus::DONE, QByteArray(capacity, 'r'));
    }
};

/** What a connection made of all the bytes that it was given. */
struct Outcome {
    QByteArray sent;
    bool isOver = false;
    std::string problem;
};

Outcome outcomeOf(const QByteArray &bytes)
{
    WillingDevice device;
    UsbipExport exported(device);
    Outcome outcome;
    {
        UsbipConnection connection(exported);
        connection.receive(bytes, 0);
        connection.advance(1000000);
        for (;;) {
            const QByteArray more = connection.takeBytesToSend();
            EXPECT_LE(more.size(), MOST_SENT);
            if (more.isEmpty())
                break;
            outcome.sent += more;
            connection.advance(1000000);
        }
        outcome.isOver = connection.isOver();
        outcome.problem = connection.problem().toStdString();
    }
    EXPECT_FALSE(exported.isImported) << "the reader is kept from the next client";
    return outcome;
}

std::string problemAfterImport(const QByteArray &transfer)
{
    return outcomeOf(importRequest() + transfer).problem;
}

std::vector<QByteArray> validMessages()
{
    return {bulkRead(1, 64), bulkWrite(2, "command"), control(3, hex("8006000100001200")),
            control(4, hex("0009010000000000")), unlink(5, 1)};
}

TEST(HostileBytes, EveryPrefixOfAMessageWaitsForTheRest)
{
    const auto expectWaiting = [](const QByteArray &before, const QByteArray &message,
                                  int answered) {
        for (int size = 0; size < message.size(); ++size) {
            const Outcome outcome = outcomeOf(before + message.left(size));
            EXPECT_EQ(outcome.sent.size(), answered) << size;
            EXPECT_FALSE(outcome.isOver) << size;
        }
    };
    expectWaiting({}, listRequest(), 0);
    expectWaiting({}, importRequest(), 0);
    for (const QByteArray &message : validMessages())
        expectWaiting(importRequest(), message, IMPORT_REPLY_SIZE);
}

TEST(HostileBytes, EveryMutationOfEveryByteIsSurvived)
{
    std::vector<QByteArray> streams = {listRequest(), importRequest()};
    for (const QByteArray &message : validMessages())
        streams.push_back(importRequest() + message + bulkRead(77, 16));
    for (const QByteArray &stream : streams) {
        for (int place = 0; place < stream.size(); ++place) {
            for (const int change : {0x01, 0x02, 0x40, 0x80, 0xFF}) {
                QByteArray mutated = stream;
                mutated[place] = static_cast<char>(mutated.at(place) ^ change);
                const Outcome outcome = outcomeOf(mutated);
                EXPECT_LE(outcome.sent.size(), IMPORT_REPLY_SIZE + 3 * (48 + 65536));
            }
        }
    }
}

TEST(HostileBytes, RandomStreamsAreSurvived)
{
    std::mt19937 random(20260101);
    for (int round = 0; round < 3000; ++round) {
        QByteArray bytes = round % 2 == 0 ? importRequest() : QByteArray();
        const int size = static_cast<int>(random() % 600);
        for (int i = 0; i < size; ++i)
            bytes.append(static_cast<char>(random() % 3 == 0 ? random() : random() % 3));
        outcomeOf(bytes);
    }
}

TEST(HostileBytes, RandomOrdersOfPlausibleMessagesAreSurvived)
{
    std::mt19937 random(20260102);
    for (int round = 0; round < 300; ++round) {
        QByteArray bytes = importRequest();
        for (int i = 0; i < 40; ++i) {
            const auto number = static_cast<unsigned int>(random() % 50);
            switch (random() % 4) {
            case 0:
                bytes += bulkRead(number, static_cast<unsigned int>(random() % 5000));
                break;
            case 1:
                bytes += bulkWrite(number, QByteArray(static_cast<int>(random() % 200), 'w'));
                break;
            case 2:
                bytes += unlink(number + 1000, static_cast<unsigned int>(random() % 50));
                break;
            default:
                bytes += control(number, QByteArray(8, static_cast<char>(random() % 16)));
                break;
            }
        }
        outcomeOf(bytes);
    }
}

TEST(HostileBytes, WhatThereIsNotIsRefusedWithoutAnAnswer)
{
    for (const auto &[request, problem] :
         {std::pair(hex("01 06 80 05 00 00 00 00"), "version 0x106"),
          {QByteArray("GET / HTTP/1.1\r\n\r\n"), "version 0x4745"}, // a web browser's
          {hex("01 11 80 07 00 00 00 00"), "0x8007"},
          {importRequest(QByteArray(32, '1')), "no end"}}) {
        const Outcome outcome = outcomeOf(request);
        EXPECT_THAT(outcome.problem, HasSubstr(problem));
        EXPECT_EQ(outcome.sent, QByteArray()) << problem;
    }
}

TEST(HostileBytes, ATransferThatThereCannotBeIsRefused)
{
    EXPECT_THAT(problemAfterImport(QByteArray(48, '\3')), HasSubstr("command 0x3030303"));
    const auto problemWith = [](auto field, unsigned int value) {
        SubmitFields fields;
        fields.*field = value;
        return problemAfterImport(submit(fields));
    };
    EXPECT_THAT(problemWith(&SubmitFields::device, 0x00010003), HasSubstr("0x10003"));
    EXPECT_THAT(problemWith(&SubmitFields::packets, 4), HasSubstr("isochronous"));
    EXPECT_THAT(problemWith(&SubmitFields::endpoint, 16), HasSubstr("endpoint 16"));
    QByteArray direction = bulkRead(1, 16);
    direction[15] = 2;
    EXPECT_THAT(problemAfterImport(direction), HasSubstr("direction 2"));
}

TEST(HostileBytes, ALengthBeyondTheMostIsRefusedBeforeItsBytesCome)
{
    for (const unsigned int length : {65537U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        for (const bool isIn : {false, true}) {
            SubmitFields fields;
            fields.isIn = isIn;
            fields.length = length;
            EXPECT_THAT(problemAfterImport(submit(fields)), HasSubstr(std::to_string(length)));
        }
    }
}

TEST(HostileBytes, TheLongestTransfersAreServed)
{
    const Outcome outcome =
        outcomeOf(importRequest() + bulkRead(1, 65536) + bulkWrite(2, QByteArray(65536, 'w')));
    EXPECT_FALSE(outcome.isOver);
    EXPECT_EQ(outcome.sent.size(), IMPORT_REPLY_SIZE + 48 + 65536 + 48);
}

TEST(HostileBytes, ANumberGivenTwiceIsRefused)
{
    RecordingDevice device;
    device.reads = {ended(UsbStatus::PENDING)};
    UsbipExport exported(device);
    UsbipConnection connection(exported);
    connection.receive(importRequest() + bulkRead(1, 16) + bulkRead(1, 16), 0);
    EXPECT_TRUE(connection.isOver());
    EXPECT_THAT(connection.problem().toStdString(), HasSubstr("number 1"));
}

TEST(HostileBytes, AControlTransferThatContradictsItselfStalls)
{
    const QByteArray setup = hex("8006000100001200");
    QByteArray outward = control(1, setup);
    outward[15] = 0;
    outward += QByteArray(18, 'x');
    QByteArray tight = control(2, setup);
    tight[27] = 4;
    SubmitFields withoutData; // no contradiction: nothing has a direction
    withoutData.endpoint = 0;
    withoutData.setup = hex("0009010000000000");
    const Outcome outcome = outcomeOf(importRequest() + outward + tight + submit(withoutData));
    const auto sent = replies(outcome.sent.mid(IMPORT_REPLY_SIZE));
    ASSERT_EQ(sent.size(), 3U);
    EXPECT_EQ(sent[0].status, -32);
    EXPECT_EQ(sent[1].status, -32);
    EXPECT_EQ(sent[2].status, 0);
}

TEST(HostileBytes, TooManyWaitingTransfersEndTheConnection)
{
    RecordingDevice device;
    device.reads = {ended(UsbStatus::PENDING)};
    UsbipExport exported(device);
    UsbipConnection connection(exported);
    connection.receive(importRequest(), 0);
    unsigned int sent = 0;
    while (!connection.isOver() && sent < 5000)
        connection.receive(bulkRead(++sent, 16), 0);
    EXPECT_EQ(sent, UsbipConnection::MOST_PENDING_TRANSFERS + 1);
    EXPECT_THAT(connection.problem().toStdString(), HasSubstr("64"));
    EXPECT_FALSE(exported.isImported);
}

TEST(HostileBytes, ThousandsOfTransfersAreServedToAClientThatReads)
{
    QByteArray bytes = importRequest();
    for (unsigned int number = 0; number < 5000; ++number)
        bytes += bulkRead(number, 100);
    const Outcome outcome = outcomeOf(bytes);
    EXPECT_FALSE(outcome.isOver);
    EXPECT_EQ(outcome.sent.size(), IMPORT_REPLY_SIZE + 5000 * (48 + 100));
}

TEST(HostileBytes, AClientThatDoesNotReadIsServedNoFurther)
{
    WillingDevice device;
    UsbipExport exported(device);
    UsbipConnection connection(exported);
    connection.receive(importRequest(), 0);
    unsigned int sent = 0;
    while (connection.wantsBytes() && sent < 5000)
        connection.receive(bulkRead(++sent, 65536), 0);
    EXPECT_LT(sent, 10U);
    connection.receive(bulkRead(++sent, 65536), 0);
    EXPECT_TRUE(connection.isOver());
    EXPECT_THAT(connection.problem().toStdString(), HasSubstr("without reading"));
    EXPECT_LE(connection.takeBytesToSend().size(), MOST_SENT);
}

TEST(HostileBytes, NothingIsTakenAfterTheEnd)
{
    WillingDevice device;
    UsbipExport exported(device);
    UsbipConnection connection(exported);
    connection.receive(listRequest() + importRequest(), 0);
    EXPECT_EQ(connection.takeBytesToSend().size(), LIST_REPLY_SIZE);
    connection.receive(importRequest(), 0);
    EXPECT_EQ(connection.takeBytesToSend(), QByteArray());
    EXPECT_FALSE(exported.isImported);
}

} // namespace
