// Bulk transfers: how they end, in which order, after which time, and what takes them back.

#include <gmock/gmock.h>

#include "simulator/usbip/usbip_connection.h"
#include "tests/usbip/client_messages.h"
#include "tests/usbip/recording_device.h"

using simulator::UsbipConnection;
using simulator::UsbipExport;
using simulator::UsbStatus;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

constexpr int EPIPE_STATUS = -32;
constexpr int EPROTO_STATUS = -71;
constexpr int EOVERFLOW_STATUS = -75;
constexpr int ECONNRESET_STATUS = -104;
constexpr int ESHUTDOWN_STATUS = -108;
constexpr int EREMOTEIO_STATUS = -121;

Reply submitted(unsigned int number, int status, int count, const QByteArray &data = {})
{
    return {Reply::Submitted, number, status, count, data};
}

Reply unlinked(unsigned int number, int status)
{
    return {Reply::Unlinked, number, status, 0, {}};
}

class Transfers : public testing::Test
{
protected:
    Transfers()
    {
        connection.receive(importRequest(), 0);
        connection.takeBytesToSend();
        device.calls.clear();
    }

    void send(const QByteArray &bytes, std::int64_t now = 0) { connection.receive(bytes, now); }
    /** What has been sent; the transfers 1 to 9 are reads. */
    std::vector<Reply> sent()
    {
        return replies(connection.takeBytesToSend(), {1, 2, 3, 4, 5, 6, 7, 8, 9});
    }
    std::vector<Reply> sentAt(std::int64_t now)
    {
        connection.advance(now);
        return sent();
    }

    RecordingDevice device;
    UsbipExport exported{device};
    UsbipConnection connection{exported};
};

TEST_F(Transfers, WriteReportsHowManyBytesWereTakenButNoMoreThanWereSent)
{
    device.writes = {taken(UsbStatus::DONE, 7), taken(UsbStatus::DONE, 1000),
                     taken(UsbStatus::DONE, -5)};
    send(bulkWrite(11, QByteArray(10, 'x')));
    send(bulkWrite(12, "abc"));
    send(bulkWrite(13, "abc"));
    EXPECT_THAT(sent(), ElementsAre(submitted(11, 0, 7), submitted(12, 0, 3), submitted(13, 0, 0)));
}

TEST_F(Transfers, ReadBringsWhatCameButNoMoreThanThereIsRoomFor)
{
    device.reads = {ended(UsbStatus::BROKEN, "abc"), ended(UsbStatus::DONE, "abcdef")};
    send(bulkRead(1, 64));
    send(bulkRead(2, 4));
    EXPECT_THAT(sent(),
                ElementsAre(submitted(1, EPROTO_STATUS, 3, "abc"), submitted(2, 0, 4, "abcd")));
}

TEST_F(Transfers, WriteOfNoBytesReachesTheDevice)
{
    device.writes = {taken(UsbStatus::DONE, 0)};
    send(bulkWrite(11, {}));
    EXPECT_THAT(sent(), ElementsAre(submitted(11, 0, 0)));
    EXPECT_THAT(device.calls, ElementsAre(DeviceCall{DeviceCall::Write, 0x02, {}, 0}));
}

TEST_F(Transfers, EndAsTheDeviceSays)
{
    const std::vector<std::pair<UsbStatus, int>> ends = {{UsbStatus::DONE, 0},
                                                         {UsbStatus::STALLED, EPIPE_STATUS},
                                                         {UsbStatus::BROKEN, EPROTO_STATUS},
                                                         {UsbStatus::TOO_LONG, EOVERFLOW_STATUS},
                                                         {UsbStatus::UNPLUGGED, ESHUTDOWN_STATUS}};
    for (const auto &[status, number] : ends) {
        device.reads = {ended(status)};
        send(bulkRead(1, 64));
        EXPECT_THAT(sent(), ElementsAre(submitted(1, number, 0)));
    }
}

TEST_F(Transfers, ShortReadFailsWhenTheClientRefusesIt)
{
    device.reads = {ended(UsbStatus::DONE, "abc"), ended(UsbStatus::DONE, "abcd")};
    SubmitFields fields;
    fields.flags = 1;
    fields.length = 4;
    send(submit(fields));
    EXPECT_THAT(sent(), ElementsAre(submitted(1, EREMOTEIO_STATUS, 3, "abc")));
    send(submit(fields));
    EXPECT_THAT(sent(), ElementsAre(submitted(1, 0, 4, "abcd")));
}

TEST_F(Transfers, DelayedReadEndsWhenItsTimeHasCome)
{
    device.reads = {ended(UsbStatus::DONE, "late", 300)};
    send(bulkRead(1, 64), 1000);
    EXPECT_EQ(connection.nextTime(), 1300);
    EXPECT_THAT(sentAt(1299), IsEmpty());
    EXPECT_THAT(sentAt(1300), ElementsAre(submitted(1, 0, 4, "late")));
    EXPECT_EQ(connection.nextTime(), std::nullopt);
}

TEST_F(Transfers, OtherEndpointsAreServedMeanwhile)
{
    device.reads = {ended(UsbStatus::DONE, "late", 300), ended(UsbStatus::DONE, "loop")};
    device.writes = {taken(UsbStatus::DONE, 1)};
    send(bulkRead(1, 64) + bulkWrite(11, "x") + bulkRead(2, 64, 5) +
         control(3, hex("8008000000000100")));
    EXPECT_THAT(sent(), ElementsAre(submitted(11, 0, 1), submitted(2, 0, 4, "loop"),
                                    submitted(3, 0, 1, QByteArray(1, '\0'))));
    EXPECT_THAT(sentAt(300), ElementsAre(submitted(1, 0, 4, "late")));
}

TEST_F(Transfers, OneEndpointServesThemOneAfterTheOther)
{
    device.reads = {ended(UsbStatus::DONE, "first", 100), ended(UsbStatus::DONE, "second", 50),
                    ended(UsbStatus::DONE, "third")};
    send(bulkRead(1, 64) + bulkRead(2, 64) + bulkRead(3, 64));
    EXPECT_EQ(device.calls.size(), 1U);
    EXPECT_THAT(sentAt(100), ElementsAre(submitted(1, 0, 5, "first")));
    EXPECT_THAT(sentAt(149), IsEmpty());
    EXPECT_THAT(sentAt(150),
                ElementsAre(submitted(2, 0, 6, "second"), submitted(3, 0, 5, "third")));
}

TEST_F(Transfers, ThoseOfTwoEndpointsThatAreDueAtOnceEndInTheirOrder)
{
    device.reads = {ended(UsbStatus::DONE, "first", 100), ended(UsbStatus::DONE, "second", 100)};
    send(bulkRead(1, 64) + bulkRead(2, 64, 5));
    EXPECT_THAT(sentAt(100),
                ElementsAre(submitted(1, 0, 5, "first"), submitted(2, 0, 6, "second")));
}

TEST_F(Transfers, NegativeDelayIsNone)
{
    device.reads = {ended(UsbStatus::DONE, "now", -20)};
    send(bulkRead(1, 64), 5);
    EXPECT_THAT(sent(), ElementsAre(submitted(1, 0, 3, "now")));
}

TEST_F(Transfers, PendingReadNeverEndsByItself)
{
    device.reads = {ended(UsbStatus::PENDING, {}, 5)};
    send(bulkRead(1, 64));
    EXPECT_EQ(connection.nextTime(), std::nullopt);
    EXPECT_THAT(sentAt(1000000), IsEmpty());
}

TEST_F(Transfers, PendingReadIsTriedAgainAfterAWrite)
{
    device.reads = {ended(UsbStatus::PENDING), ended(UsbStatus::DONE, "answer")};
    device.writes = {taken(UsbStatus::DONE, 7)};
    send(bulkRead(1, 64));
    send(bulkWrite(11, "command"));
    EXPECT_THAT(sent(), ElementsAre(submitted(11, 0, 7), submitted(1, 0, 6, "answer")));
}

TEST_F(Transfers, PendingWriteBlocksItsEndpointUntilItIsUnlinked)
{
    device.writes = {ended(UsbStatus::PENDING), taken(UsbStatus::DONE, 2)};
    send(bulkWrite(11, "a") + bulkWrite(12, "bb"));
    EXPECT_THAT(sent(), IsEmpty());
    send(unlink(13, 11));
    EXPECT_THAT(sent(), ElementsAre(unlinked(13, ECONNRESET_STATUS), submitted(12, 0, 2)));
}

TEST_F(Transfers, UnlinkedDelayedReadNeverEnds)
{
    device.reads = {ended(UsbStatus::DONE, "late", 300)};
    send(bulkRead(1, 64));
    send(unlink(13, 1));
    EXPECT_THAT(sent(), ElementsAre(unlinked(13, ECONNRESET_STATUS)));
    EXPECT_THAT(sentAt(300), IsEmpty());
}

TEST_F(Transfers, UnlinkedBeforeItsTurnNeverReachesTheDevice)
{
    device.reads = {ended(UsbStatus::DONE, "first", 100)};
    send(bulkRead(1, 64) + bulkRead(2, 64) + unlink(13, 2));
    EXPECT_THAT(sentAt(100),
                ElementsAre(unlinked(13, ECONNRESET_STATUS), submitted(1, 0, 5, "first")));
    EXPECT_EQ(device.calls.size(), 1U);
}

TEST_F(Transfers, UnlinkOfWhatNeverWasAnswersZero)
{
    send(unlink(13, 4711));
    EXPECT_THAT(sent(), ElementsAre(unlinked(13, 0)));
}

TEST_F(Transfers, NumberCanBeUsedAgainAfterTheTransferEnded)
{
    device.reads = {ended(UsbStatus::DONE, "a"), ended(UsbStatus::DONE, "b")};
    send(bulkRead(1, 64));
    send(bulkRead(1, 64));
    EXPECT_THAT(sent(), ElementsAre(submitted(1, 0, 1, "a"), submitted(1, 0, 1, "b")));
}

TEST_F(Transfers, UnplugEndsTheConnectionAndGivesTheReaderBack)
{
    device.reads = {ended(UsbStatus::PENDING)};
    send(bulkRead(1, 64));
    device.pluggedIn = false;
    EXPECT_THAT(sentAt(10), IsEmpty());
    EXPECT_TRUE(connection.isOver());
    EXPECT_FALSE(exported.isImported);
    EXPECT_THAT(connection.problem().toStdString(), HasSubstr("unplugged"));
}

TEST_F(Transfers, TransferDuringWhichTheReaderGoesEndsBeforeTheConnection)
{
    device.reads = {ended(UsbStatus::UNPLUGGED, {}, 40)};
    send(bulkRead(1, 64), 0);
    device.pluggedIn = false;
    EXPECT_THAT(sentAt(39), IsEmpty());
    EXPECT_FALSE(connection.isOver());
    EXPECT_THAT(sentAt(40), ElementsAre(submitted(1, ESHUTDOWN_STATUS, 0)));
    EXPECT_TRUE(connection.isOver());
}

TEST_F(Transfers, NothingReachesAReaderThatIsGoing)
{
    device.reads = {ended(UsbStatus::UNPLUGGED, {}, 40)};
    send(bulkRead(1, 64));
    device.pluggedIn = false;
    send(bulkWrite(11, "x") + control(12, hex("0009010000000000")));
    EXPECT_THAT(sent(), ElementsAre(submitted(11, ESHUTDOWN_STATUS, 0),
                                    submitted(12, ESHUTDOWN_STATUS, 0)));
    EXPECT_EQ(device.calls.size(), 1U);
}

} // namespace
