// Several programs, and those that leave.

#include <gmock/gmock.h>

#include "tests/service/service_process.h"

using testing::ContainsRegex;

namespace
{

/** A reader that does not answer, and a second program. */
class ServiceClients : public ServiceTest
{
protected:
    void SetUp() override { serveCard({"--fault", "delay-ms=60000"}); }

    BusClient m_other{m_bus.address()};
};

} // namespace

TEST_F(ServiceClients, ReadingOfAnother_IsRefusedAndSaysSinceWhen)
{
    const QDBusPendingCall reading = beginReading();
    const QDBusMessage answer = m_other.read();
    EXPECT_EQ(errorOf(answer), "Busy");
    EXPECT_THAT(messageOf(answer),
                ContainsRegex("since [0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}[.]"));
    EXPECT_FALSE(reading.isFinished());
}

TEST_F(ServiceClients, SecondReadingOfTheSame_IsRefused)
{
    const QDBusPendingCall reading = m_client.beginRead();
    EXPECT_EQ(errorOf(m_client.read()), "Busy");
    EXPECT_FALSE(reading.isFinished());
}

TEST_F(ServiceClients, WrongArgumentsDuringAReading_AreWrongArguments)
{
    const QDBusPendingCall reading = beginReading();
    EXPECT_EQ(errorOf(m_other.read({"everything"})), "InvalidArgument");
}

TEST_F(ServiceClients, DescriptionDuringAReading_IsGivenAtOnce)
{
    const QDBusPendingCall reading = beginReading();
    const QDBusMessage answer = m_other.ask("DescribeError", {"USB_READER_NO_DATA", "en"});
    EXPECT_EQ(answer.type(), QDBusMessage::ReplyMessage);
    EXPECT_FALSE(reading.isFinished());
}

TEST_F(ServiceClients, CancelByTheReader_EndsTheReadingAndFreesTheReader)
{
    const QDBusPendingCall reading = beginReading();
    EXPECT_EQ(errorOf(m_client.ask("Cancel")), "");
    EXPECT_EQ(errorAtTheEnd(reading), "Cancelled");
    EXPECT_EQ(m_client.state(), "idle");
}

TEST_F(ServiceClients, CancelTwiceBeforeTheReadingHasBegun_EndsItAndIsAnsweredTwice)
{
    const QDBusPendingCall reading = m_client.beginRead();
    const QDBusPendingCall first = m_client.begin("Cancel");
    const QDBusPendingCall second = m_client.begin("Cancel");
    EXPECT_EQ(errorAtTheEnd(first), "");
    EXPECT_EQ(errorAtTheEnd(second), "");
    EXPECT_EQ(errorAtTheEnd(reading), "Cancelled");
}

TEST_F(ServiceClients, CancelByAnother_IsRefusedAndTheReadingGoesOn)
{
    const QDBusPendingCall reading = beginReading();
    EXPECT_EQ(errorOf(m_other.ask("Cancel")), "Busy");
    EXPECT_EQ(m_other.state(), "reading");
    EXPECT_FALSE(reading.isFinished());
}

TEST_F(ServiceClients, ClientThatLeaves_FreesTheReader)
{
    beginReading(m_other);
    m_other.leave();
    EXPECT_TRUE(becomes("idle"));
}

TEST_F(ServiceClients, ClientThatLeavesWhileItCancels_FreesTheReader)
{
    beginReading(m_other);
    m_other.begin("Cancel");
    m_other.leave();
    EXPECT_TRUE(becomes("idle"));
}

TEST_F(ServiceClients, ClientsThatLeaveAtOnce_KeepNothingFromTheNext)
{
    for (int i = 0; i < 20; ++i) {
        BusClient hasty(m_bus.address());
        hasty.beginRead();
    }
    // Sooner than a reading of theirs would end by itself.
    EXPECT_TRUE(waitFor([&] { return errorOf(m_client.read({}, 1000)) == "TimedOut"; }, 15000));
}
