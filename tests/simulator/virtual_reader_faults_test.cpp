// Every fault of the simulated reader on USB.

#include <functional>

#include <gmock/gmock.h>

#include "tests/simulator/usb_exchange.h"

using namespace simulator;

namespace
{

// An exchange, as it comes after those before it.
struct Exchange {
    const char *name;
    QByteArray command;
    int answerSize;
};

const QVector<Exchange> &exchanges()
{
    static const QVector<Exchange> table = {{"lookup", frames::LOOKUP, 15},
                                            {"select", frames::SELECT, 19},
                                            {"read", frames::READ, 2321}};
    return table;
}

class ExchangeFault : public testing::TestWithParam<int>
{
protected:
    static const Exchange &exchange() { return exchanges().at(GetParam()); }

    // Comes through the exchanges before this one, then has these faults; {} stands for the
    // exchange's name. With this exchange's faults the others, which have them not, go well.
    static void prepare(ReaderOnUsb *reader, const char *faults, bool isSetBefore = true)
    {
        const QString text =
            QString::fromUtf8(faults).replace(QStringLiteral("{}"), QLatin1String(exchange().name));
        if (isSetBefore)
            reader->set(text);
        for (int i = 0; i < GetParam(); ++i)
            EXPECT_EQ(reader->answer(exchanges().at(i).command).size(),
                      exchanges().at(i).answerSize);
        if (!isSetBefore)
            reader->set(text);
    }

    // What the reader answers when nothing is wrong.
    static QByteArray right()
    {
        ReaderOnUsb reader;
        prepare(&reader, "");
        return reader.answer(exchange().command);
    }
};

void expectEnd(const UsbTransfer &transfer, UsbStatus status, int count, int delayMs = 0)
{
    EXPECT_EQ(transfer.status, status);
    EXPECT_EQ(transfer.count, count);
    EXPECT_EQ(transfer.delayMs, delayMs);
}

QByteArray whole(const QByteArray &right)
{
    return right;
}

QByteArray nothing(const QByteArray & /*right*/)
{
    return {};
}

QByteArray withByte9Inverted(QByteArray right)
{
    right[9] = static_cast<char>(~right.at(9));
    return right;
}

// How a faulty answer ends, and with which bytes of the right one.
const struct {
    const char *faults;
    UsbStatus status;
    std::function<QByteArray(const QByteArray &right)> data;
    int delayMs;
} ANSWERS[] = {
    {"{}-answer-replaced=00fF80", UsbStatus::DONE,
     [](const QByteArray &) { return frames::hex("00 FF 80"); }, 0},
    {"{}-answer-cut=8", UsbStatus::DONE, [](const QByteArray &right) { return right.left(8); }, 0},
    {"{}-answer-cut=0", UsbStatus::DONE, nothing, 0},
    {"{}-answer-cut=4095", UsbStatus::DONE, whole, 0},
    {"{}-answer-corrupted=9", UsbStatus::DONE, withByte9Inverted, 0},
    {"{}-answer-corrupted=4095", UsbStatus::DONE, whole, 0},
    // Replaced, then corrupted, then cut.
    {"{}-answer-cut=2,{}-answer-corrupted=1,{}-answer-replaced=00112233", UsbStatus::DONE,
     [](const QByteArray &) { return frames::hex("00 EE"); }, 0},
    {"{}-answer-delayed=1500", UsbStatus::DONE, whole, 1500},
    {"{}-answer-too-long", UsbStatus::TOO_LONG, whole, 0},
    {"{}-answer-stalled", UsbStatus::STALLED, nothing, 0},
    {"{}-answer-broken", UsbStatus::BROKEN, nothing, 0},
    {"{}-answer-broken,{}-answer-delayed=5", UsbStatus::BROKEN, nothing, 5},
    {"{}-answer-missing,{}-answer-delayed=5", UsbStatus::PENDING, nothing, 0},
};

// How a command ends that has 10 bytes.
const struct {
    const char *faults;
    UsbStatus status;
    int count;
    int delayMs;
} COMMANDS[] = {
    {"{}-command-stalled", UsbStatus::STALLED, 0, 0},
    {"{}-command-broken", UsbStatus::BROKEN, 0, 0},
    {"{}-command-missing", UsbStatus::PENDING, 0, 0},
    {"{}-command-cut=0", UsbStatus::DONE, 0, 0},
    {"{}-command-cut=9", UsbStatus::DONE, 9, 0},
    {"{}-command-delayed=700", UsbStatus::DONE, 10, 700},
    {"{}-command-missing,{}-command-delayed=5", UsbStatus::PENDING, 0, 0},
    {"{}-command-stalled,{}-command-delayed=5", UsbStatus::STALLED, 0, 5},
};

} // namespace

TEST_P(ExchangeFault, OfTheAnswer_EndsItSoAndLeavesNothing)
{
    for (const auto &fault : ANSWERS) {
        SCOPED_TRACE(fault.faults);
        const QByteArray expected = fault.data(right());
        ReaderOnUsb reader;
        prepare(&reader, fault.faults);
        const UsbTransfer transfer = reader.ask(exchange().command, exchange().answerSize);
        expectEnd(transfer, fault.status, expected.size(), fault.delayMs);
        EXPECT_EQ(transfer.data, expected);
        expectEnd(reader->read(IN_ENDPOINT, ROOM), UsbStatus::PENDING, 0);
    }
}

TEST_P(ExchangeFault, OfTheCommand_EndsItSoAndItIsNotAnsweredUnlessItWasTaken)
{
    for (const auto &fault : COMMANDS) {
        SCOPED_TRACE(fault.faults);
        ReaderOnUsb reader;
        prepare(&reader, fault.faults);
        expectEnd(reader->write(OUT_ENDPOINT, exchange().command), fault.status, fault.count,
                  fault.delayMs);
        const UsbTransfer answer = reader->read(IN_ENDPOINT, ROOM);
        EXPECT_EQ(answer.status, fault.count == 10 ? UsbStatus::DONE : UsbStatus::PENDING);
    }
}

TEST_P(ExchangeFault, AnswerReplacedByALongerOne_EndsTooLong)
{
    const QByteArray digits(2 * (exchange().answerSize + 1), 'A');
    ReaderOnUsb reader;
    prepare(&reader, "{}-answer-replaced=" + digits);
    EXPECT_EQ(reader.ask(exchange().command, exchange().answerSize).status, UsbStatus::TOO_LONG);
}

TEST_P(ExchangeFault, AnswerMissing_NeverComesAndTheNextDoes)
{
    ReaderOnUsb reader;
    prepare(&reader, "{}-answer-missing");
    for (int attempt = 0; attempt < 2; ++attempt)
        expectEnd(reader.ask(exchange().command), UsbStatus::PENDING, 0);
    expectEnd(reader->read(IN_ENDPOINT, ROOM), UsbStatus::PENDING, 0);
    EXPECT_EQ(reader.answer("?"), frames::statusOnly(0xE1));
}

TEST_P(ExchangeFault, UnpluggedBeforeOrDuringATransfer_MovesNothingOrHalfAndTheReaderStaysAway)
{
    for (const bool isDuring : {false, true}) {
        const QByteArray fault = isDuring ? "unplugged-during=" : "unplugged-before=";
        const int number = 2 * GetParam() + 1;
        ReaderOnUsb reader;
        prepare(&reader, fault + QByteArray::number(number), false);
        EXPECT_TRUE(reader->isPluggedIn());
        expectEnd(reader->write(OUT_ENDPOINT, exchange().command), UsbStatus::UNPLUGGED,
                  isDuring ? 5 : 0);
        EXPECT_FALSE(reader->isPluggedIn());

        ReaderOnUsb other;
        prepare(&other, fault + QByteArray::number(number + 1), false);
        const UsbTransfer transfer = other.ask(exchange().command);
        const int half = isDuring ? exchange().answerSize / 2 : 0;
        expectEnd(transfer, UsbStatus::UNPLUGGED, half);
        EXPECT_EQ(transfer.data, right().left(half));
        EXPECT_FALSE(other->isPluggedIn());
    }
}

INSTANTIATE_TEST_SUITE_P(Exchanges, ExchangeFault, testing::Values(0, 1, 2),
                         [](const testing::TestParamInfo<int> &test) {
                             return std::string(exchanges().at(test.param).name);
                         });

TEST(VirtualReaderFault, UnpluggedInATransfer_ComesBackWhenPluggedIn)
{
    ReaderOnUsb reader("resident", QStringLiteral("unplugged-during=4"));
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(reader.answer(frames::LOOKUP), frames::LOOKUP_ANSWER);
        EXPECT_EQ(reader.ask(frames::SELECT).status, UsbStatus::UNPLUGGED);
        reader->plugIn();
    }
}

TEST(VirtualReaderFault, Unplugged_IsNotThereWhateverIsPluggedIn)
{
    ReaderOnUsb reader("resident", QStringLiteral("unplugged"));
    reader->plugIn();
    EXPECT_FALSE(reader->isPluggedIn());
    EXPECT_EQ(reader->write(OUT_ENDPOINT, frames::LOOKUP).status, UsbStatus::UNPLUGGED);
    EXPECT_EQ(reader->read(IN_ENDPOINT, ROOM).status, UsbStatus::UNPLUGGED);
    reader.set(QString());
    EXPECT_TRUE(reader->isPluggedIn());
}

TEST(VirtualReaderFault, Hindrances_AreEachReportedAlone)
{
    const char *faults[] = {"open-fails=3", "permission-denied", "claimed-elsewhere",
                            "reset-refused", ""};
    for (const char *fault : faults) {
        ReaderOnUsb reader("resident", QLatin1String(fault));
        EXPECT_TRUE(reader->isPluggedIn());
        EXPECT_EQ(reader->failsToOpen(), fault == faults[0]);
        EXPECT_EQ(reader->deniesAccess(), fault == faults[1]);
        EXPECT_EQ(reader->isClaimedElsewhere(), fault == faults[2]);
        EXPECT_EQ(reader->refusesReset(), fault == faults[3]);
    }
}

TEST(VirtualReaderFault, ResetRefused_LeavesTheReaderAsItIs)
{
    ReaderOnUsb reader("resident", QStringLiteral("reset-refused"));
    reader.selectCard();
    reader->reset();
    EXPECT_EQ(reader.answer(frames::READ).size(), 2321);
}

TEST(VirtualReaderFault, NoCard_IsCountedOverResets)
{
    ReaderOnUsb reader("resident", QStringLiteral("no-card=2"));
    EXPECT_EQ(reader.answer(frames::LOOKUP), frames::NO_CARD_ANSWER);
    reader->reset();
    EXPECT_EQ(reader.answer(frames::LOOKUP), frames::NO_CARD_ANSWER);
    EXPECT_EQ(reader.answer(frames::LOOKUP), frames::LOOKUP_ANSWER);
}

TEST(VirtualReaderFault, TransientFailures_AreEachOneFailedRead)
{
    ReaderOnUsb reader("resident", QStringLiteral("transient-failures=2"));
    reader.selectCard();
    EXPECT_EQ(reader.answer(frames::READ), frames::statusOnly(0xE4));
    reader->reset();
    reader.selectCard();
    EXPECT_EQ(reader.answer(frames::READ), frames::statusOnly(0xE4));
    EXPECT_EQ(reader.answer(frames::READ).size(), 2321);
}

TEST(VirtualReaderFault, ReadFails_GivesNoDataEver)
{
    ReaderOnUsb reader("resident", QStringLiteral("read-fails=7"));
    reader.selectCard();
    for (int round = 0; round < 3; ++round)
        EXPECT_EQ(reader.answer(frames::READ), frames::statusOnly(0xE4));
}

TEST(VirtualReaderFault, CardRemoved_GivesNoDataAndIsNotFoundAgain)
{
    ReaderOnUsb reader("resident", QStringLiteral("card-removed"));
    reader.selectCard();
    EXPECT_EQ(reader.answer(frames::READ), frames::statusOnly(0x80));
    EXPECT_EQ(reader.answer(frames::LOOKUP), frames::NO_CARD_ANSWER);
}

TEST(VirtualReaderFault, Delay_IsThatOfTheReadAnswerAlone)
{
    ReaderOnUsb reader("resident", QStringLiteral("delay-ms=300,read-answer-delayed=50"));
    EXPECT_EQ(reader.ask(frames::LOOKUP).delayMs, 0);
    EXPECT_EQ(reader.ask(frames::SELECT).delayMs, 0);
    EXPECT_EQ(reader.ask(frames::READ).delayMs, 350);
}

TEST(VirtualReaderFault, DelayedAnswerInSeveralTransfers_IsDelayedOnce)
{
    ReaderOnUsb reader("resident", QStringLiteral("delay-ms=300"));
    reader.selectCard();
    EXPECT_EQ(reader.ask(frames::READ, 512).delayMs, 300);
    const UsbTransfer rest = reader->read(IN_ENDPOINT, ROOM);
    EXPECT_EQ(rest.count, 2321 - 512);
    EXPECT_EQ(rest.delayMs, 0);
}

TEST(VirtualReaderFault, FaultsOfTextAndPhoto_AreInTheAnswer)
{
    ReaderOnUsb usual;
    usual.selectCard();
    const QByteArray right = usual.answer(frames::READ);
    ReaderOnUsb reader("resident", QStringLiteral("unknown-kind,photo-length=7,photo-undecodable"));
    reader.selectCard();
    const QByteArray answer = reader.answer(frames::READ);
    EXPECT_EQ(answer.size(), right.size());
    EXPECT_EQ(answer.mid(12, 2).toHex(), "0007");
    EXPECT_EQ(answer.at(16 + 248), '?');
    EXPECT_NE(answer.mid(272, 1024), right.mid(272, 1024));
}

TEST(VirtualReaderFault, FaultOfTheCardsDescription_CountsAsThoseSetBesideItAndGoesWithTheCard)
{
    ReaderOnUsb reader("resident-transient-failures", "delay-ms=3");
    reader.selectCard();
    EXPECT_EQ(reader.answer(frames::READ), frames::statusOnly(0xE4));
    reader->slot().takeCard();
    EXPECT_FALSE(reader->slot().faults().has(FaultKind::TRANSIENT_FAILURES));
    EXPECT_EQ(reader->slot().faults().number(FaultKind::DELAY_MS), 3);
}

TEST(VirtualReaderFault, Environment_CountsWhenItIsFollowed)
{
    qputenv("IDCARD_SIMULATOR_CARD", "hmt-macao");
    qputenv("IDCARD_SIMULATOR_FAULTS", "lookup-answer-replaced=01,claimed-elsewhere");
    VirtualReader reader;
    EXPECT_FALSE(reader.isClaimedElsewhere());
    QString problem;
    EXPECT_TRUE(reader.slot().followEnvironment(&problem)) << problem.toStdString();
    qunsetenv("IDCARD_SIMULATOR_CARD");
    qunsetenv("IDCARD_SIMULATOR_FAULTS");
    EXPECT_TRUE(reader.isClaimedElsewhere());
    reader.write(OUT_ENDPOINT, frames::LOOKUP);
    EXPECT_EQ(reader.read(IN_ENDPOINT, ROOM).data, QByteArray("\x01"));
}
