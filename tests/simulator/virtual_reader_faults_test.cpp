// Every fault of the simulated reader on USB.

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
    static const QVector<Exchange> table = {{"lookup", frames::lookup(), 15},
                                            {"select", frames::select(), 19},
                                            {"read", frames::read(), 2321}};
    return table;
}

class ExchangeFault : public testing::TestWithParam<int>
{
protected:
    static const Exchange &exchange() { return exchanges().at(GetParam()); }

    // A reader that has come through the exchanges before this one, and has the fault
    // "<exchange>-<fault>"; with it the others, which have it not, went well.
    static void prepare(ReaderOnUsb *reader, const QString &fault)
    {
        reader->set(QLatin1String(exchange().name) + QLatin1Char('-') + fault);
        for (int i = 0; i < GetParam(); ++i)
            EXPECT_EQ(reader->answer(exchanges().at(i).command).size(),
                      exchanges().at(i).answerSize);
    }

    static UsbTransfer written(const QString &fault)
    {
        ReaderOnUsb reader;
        prepare(&reader, fault);
        UsbTransfer transfer = reader->write(OUT_ENDPOINT, exchange().command);
        if (transfer.status != UsbStatus::DONE || transfer.count < 10) {
            EXPECT_EQ(reader->read(IN_ENDPOINT, ROOM).status, UsbStatus::PENDING);
        }
        return transfer;
    }

    static UsbTransfer answered(const QString &fault)
    {
        ReaderOnUsb reader;
        prepare(&reader, fault);
        return reader.ask(exchange().command, exchange().answerSize);
    }

    // What the reader answers when nothing is wrong.
    static QByteArray right()
    {
        ReaderOnUsb reader;
        for (int i = 0; i < GetParam(); ++i)
            reader.answer(exchanges().at(i).command);
        return reader.answer(exchange().command);
    }
};

void expectEnd(const UsbTransfer &transfer, UsbStatus status, int count, int delayMs = 0)
{
    EXPECT_EQ(transfer.status, status);
    EXPECT_EQ(transfer.count, count);
    EXPECT_EQ(transfer.delayMs, delayMs);
}

} // namespace

TEST_P(ExchangeFault, AnswerReplaced_ComesAsGiven)
{
    const UsbTransfer transfer = answered(QStringLiteral("answer-replaced=00fF80"));
    expectEnd(transfer, UsbStatus::DONE, 3);
    EXPECT_EQ(transfer.data.toHex(), "00ff80");
}

TEST_P(ExchangeFault, AnswerReplacedByALongerOne_EndsTooLong)
{
    const QString digits = QString(exchange().answerSize + 1, QLatin1Char('A')).repeated(2);
    const UsbTransfer transfer = answered(QStringLiteral("answer-replaced=") + digits);
    EXPECT_EQ(transfer.status, UsbStatus::TOO_LONG);
}

TEST_P(ExchangeFault, AnswerCut_EndsEarlyWithoutAFailure)
{
    const UsbTransfer transfer = answered(QStringLiteral("answer-cut=8"));
    expectEnd(transfer, UsbStatus::DONE, 8);
    EXPECT_EQ(transfer.data, right().left(8));
    expectEnd(answered(QStringLiteral("answer-cut=0")), UsbStatus::DONE, 0);
}

TEST_P(ExchangeFault, AnswerCutBeyondItsEnd_IsWhole)
{
    EXPECT_EQ(answered(QStringLiteral("answer-cut=4095")).data, right());
}

TEST_P(ExchangeFault, AnswerCorrupted_HasOneByteInverted)
{
    QByteArray expected = right();
    expected[9] = static_cast<char>(~expected.at(9));
    const UsbTransfer transfer = answered(QStringLiteral("answer-corrupted=9"));
    EXPECT_EQ(transfer.status, UsbStatus::DONE);
    EXPECT_EQ(transfer.data, expected);
    EXPECT_EQ(answered(QStringLiteral("answer-corrupted=4095")).data, right());
}

TEST_P(ExchangeFault, AnswerDelayed_ComesAfterItsTime)
{
    const UsbTransfer transfer = answered(QStringLiteral("answer-delayed=1500"));
    expectEnd(transfer, UsbStatus::DONE, exchange().answerSize, 1500);
}

TEST_P(ExchangeFault, AnswerMissing_NeverComesAndTheNextDoes)
{
    ReaderOnUsb reader;
    prepare(&reader, QStringLiteral("answer-missing"));
    for (int attempt = 0; attempt < 2; ++attempt)
        expectEnd(reader.ask(exchange().command), UsbStatus::PENDING, 0);
    expectEnd(reader->read(IN_ENDPOINT, ROOM), UsbStatus::PENDING, 0);
    EXPECT_EQ(reader.answer("?"), frames::statusOnly(0xE1));
}

TEST_P(ExchangeFault, AnswerStalledOrBroken_IsLostWithTheTransfer)
{
    const std::pair<const char *, UsbStatus> cases[] = {{"answer-stalled", UsbStatus::STALLED},
                                                        {"answer-broken", UsbStatus::BROKEN}};
    for (const auto &[fault, status] : cases) {
        ReaderOnUsb reader;
        prepare(&reader, QLatin1String(fault));
        expectEnd(reader.ask(exchange().command), status, 0);
        expectEnd(reader->read(IN_ENDPOINT, ROOM), UsbStatus::PENDING, 0);
    }
}

TEST_P(ExchangeFault, AnswerTooLong_FillsTheRoomAndMore)
{
    const UsbTransfer transfer = answered(QStringLiteral("answer-too-long"));
    expectEnd(transfer, UsbStatus::TOO_LONG, exchange().answerSize);
}

TEST_P(ExchangeFault, CommandStalledBrokenOrMissing_IsNotTaken)
{
    expectEnd(written(QStringLiteral("command-stalled")), UsbStatus::STALLED, 0);
    expectEnd(written(QStringLiteral("command-broken")), UsbStatus::BROKEN, 0);
    expectEnd(written(QStringLiteral("command-missing")), UsbStatus::PENDING, 0);
}

TEST_P(ExchangeFault, CommandCut_IsTakenInPartAndNotAnswered)
{
    expectEnd(written(QStringLiteral("command-cut=0")), UsbStatus::DONE, 0);
    expectEnd(written(QStringLiteral("command-cut=9")), UsbStatus::DONE, 9);
}

TEST_P(ExchangeFault, CommandDelayed_IsTakenAfterItsTime)
{
    expectEnd(written(QStringLiteral("command-delayed=700")), UsbStatus::DONE, 10, 700);
}

TEST_P(ExchangeFault, WhatIsMissing_IsNotDelayed)
{
    const QString name = QLatin1String(exchange().name);
    expectEnd(written(QStringLiteral("command-missing,%1-command-delayed=5").arg(name)),
              UsbStatus::PENDING, 0);
    expectEnd(answered(QStringLiteral("answer-missing,%1-answer-delayed=5").arg(name)),
              UsbStatus::PENDING, 0);
}

TEST_P(ExchangeFault, WhatFails_IsDelayedAsWell)
{
    const QString name = QLatin1String(exchange().name);
    expectEnd(written(QStringLiteral("command-stalled,%1-command-delayed=5").arg(name)),
              UsbStatus::STALLED, 0, 5);
    expectEnd(answered(QStringLiteral("answer-broken,%1-answer-delayed=5").arg(name)),
              UsbStatus::BROKEN, 0, 5);
}

TEST_P(ExchangeFault, AnswerChangedInSeveralWays_IsReplacedThenCorruptedThenCut)
{
    const QString name = QLatin1String(exchange().name);
    const UsbTransfer transfer = answered(
        QStringLiteral("answer-cut=2,%1-answer-corrupted=1,%1-answer-replaced=00112233").arg(name));
    EXPECT_EQ(transfer.data.toHex(), "00ee");
}

TEST_P(ExchangeFault, UnpluggedBeforeATransfer_MovesNothingAndTheReaderStaysAway)
{
    const int number = 2 * GetParam() + 1;
    ReaderOnUsb reader;
    for (int i = 0; i < GetParam(); ++i)
        reader.answer(exchanges().at(i).command);
    reader.set(QStringLiteral("unplugged-before=%1").arg(number));
    EXPECT_TRUE(reader->isPluggedIn());
    expectEnd(reader->write(OUT_ENDPOINT, exchange().command), UsbStatus::UNPLUGGED, 0);
    EXPECT_FALSE(reader->isPluggedIn());

    ReaderOnUsb other;
    for (int i = 0; i < GetParam(); ++i)
        other.answer(exchanges().at(i).command);
    other.set(QStringLiteral("unplugged-before=%1").arg(number + 1));
    expectEnd(other.ask(exchange().command), UsbStatus::UNPLUGGED, 0);
    EXPECT_FALSE(other->isPluggedIn());
}

TEST_P(ExchangeFault, UnpluggedDuringATransfer_MovesHalfOfItAndTheReaderStaysAway)
{
    const int number = 2 * GetParam() + 1;
    ReaderOnUsb reader;
    for (int i = 0; i < GetParam(); ++i)
        reader.answer(exchanges().at(i).command);
    reader.set(QStringLiteral("unplugged-during=%1").arg(number));
    expectEnd(reader->write(OUT_ENDPOINT, exchange().command), UsbStatus::UNPLUGGED, 5);
    EXPECT_FALSE(reader->isPluggedIn());

    ReaderOnUsb other;
    for (int i = 0; i < GetParam(); ++i)
        other.answer(exchanges().at(i).command);
    other.set(QStringLiteral("unplugged-during=%1").arg(number + 1));
    const UsbTransfer transfer = other.ask(exchange().command);
    expectEnd(transfer, UsbStatus::UNPLUGGED, exchange().answerSize / 2);
    EXPECT_EQ(transfer.data, right().left(exchange().answerSize / 2));
    EXPECT_FALSE(other->isPluggedIn());
}

INSTANTIATE_TEST_SUITE_P(Exchanges, ExchangeFault, testing::Values(0, 1, 2),
                         [](const testing::TestParamInfo<int> &test) {
                             return std::string(exchanges().at(test.param).name);
                         });

TEST(VirtualReaderFault, UnpluggedInATransfer_ComesBackWhenPluggedIn)
{
    ReaderOnUsb reader("resident", QStringLiteral("unplugged-during=4"));
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(reader.answer(frames::lookup()), frames::found());
        EXPECT_EQ(reader.ask(frames::select()).status, UsbStatus::UNPLUGGED);
        reader->plugIn();
    }
}

TEST(VirtualReaderFault, Unplugged_IsNotThereWhateverIsPluggedIn)
{
    ReaderOnUsb reader("resident", QStringLiteral("unplugged"));
    reader->plugIn();
    EXPECT_FALSE(reader->isPluggedIn());
    EXPECT_EQ(reader->write(OUT_ENDPOINT, frames::lookup()).status, UsbStatus::UNPLUGGED);
    EXPECT_EQ(reader->read(IN_ENDPOINT, ROOM).status, UsbStatus::UNPLUGGED);
    reader.set(QString());
    EXPECT_TRUE(reader->isPluggedIn());
}

TEST(VirtualReaderFault, Hindrances_AreEachToldAlone)
{
    const char *faults[] = {"open-fails=3", "permission-denied", "claimed-elsewhere",
                            "reset-refused"};
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
    EXPECT_EQ(reader.answer(frames::read()).size(), 2321);
}

TEST(VirtualReaderFault, NoCard_IsCountedOverResets)
{
    ReaderOnUsb reader("resident", QStringLiteral("no-card=2"));
    EXPECT_EQ(reader.answer(frames::lookup()), frames::notFound());
    reader->reset();
    EXPECT_EQ(reader.answer(frames::lookup()), frames::notFound());
    EXPECT_EQ(reader.answer(frames::lookup()), frames::found());
}

TEST(VirtualReaderFault, TransientFailures_AreEachOneFailedRead)
{
    ReaderOnUsb reader("resident", QStringLiteral("transient-failures=2"));
    reader.selectCard();
    EXPECT_EQ(reader.answer(frames::read()), frames::statusOnly(0xE4));
    reader->reset();
    reader.selectCard();
    EXPECT_EQ(reader.answer(frames::read()), frames::statusOnly(0xE4));
    EXPECT_EQ(reader.answer(frames::read()).size(), 2321);
}

TEST(VirtualReaderFault, ReadFails_GivesNoDataEver)
{
    ReaderOnUsb reader("resident", QStringLiteral("read-fails=7"));
    reader.selectCard();
    for (int round = 0; round < 3; ++round)
        EXPECT_EQ(reader.answer(frames::read()), frames::statusOnly(0xE4));
}

TEST(VirtualReaderFault, CardRemoved_GivesNoDataAndIsNotFoundAgain)
{
    ReaderOnUsb reader("resident", QStringLiteral("card-removed"));
    reader.selectCard();
    EXPECT_EQ(reader.answer(frames::read()), frames::statusOnly(0x80));
    EXPECT_EQ(reader.answer(frames::lookup()), frames::notFound());
}

TEST(VirtualReaderFault, Delay_IsThatOfTheReadAnswerAlone)
{
    ReaderOnUsb reader("resident", QStringLiteral("delay-ms=300,read-answer-delayed=50"));
    EXPECT_EQ(reader.ask(frames::lookup()).delayMs, 0);
    EXPECT_EQ(reader.ask(frames::select()).delayMs, 0);
    EXPECT_EQ(reader.ask(frames::read()).delayMs, 350);
}

TEST(VirtualReaderFault, DelayedAnswerInSeveralTransfers_IsDelayedOnce)
{
    ReaderOnUsb reader("resident", QStringLiteral("delay-ms=300"));
    reader.selectCard();
    EXPECT_EQ(reader.ask(frames::read(), 512).delayMs, 300);
    const UsbTransfer rest = reader->read(IN_ENDPOINT, ROOM);
    EXPECT_EQ(rest.count, 2321 - 512);
    EXPECT_EQ(rest.delayMs, 0);
}

TEST(VirtualReaderFault, FaultsOfTextAndPhoto_AreInTheAnswer)
{
    ReaderOnUsb usual;
    usual.selectCard();
    const QByteArray right = usual.answer(frames::read());
    ReaderOnUsb reader("resident", QStringLiteral("unknown-kind,photo-length=7,photo-undecodable"));
    reader.selectCard();
    const QByteArray answer = reader.answer(frames::read());
    EXPECT_EQ(answer.size(), right.size());
    EXPECT_EQ(answer.mid(12, 2).toHex(), "0007");
    EXPECT_EQ(answer.at(16 + 248), '?');
    EXPECT_NE(answer.mid(272, 1024), right.mid(272, 1024));
}

TEST(VirtualReaderFault, FaultOfTheCardsDescription_CountsAsThoseSetBesideItAndGoesWithTheCard)
{
    ReaderOnUsb reader("resident-transient-failures", "delay-ms=3");
    reader.selectCard();
    EXPECT_EQ(reader.answer(frames::read()), frames::statusOnly(0xE4));
    reader->slot().takeCard();
    EXPECT_FALSE(reader->slot().faults().transientFailures);
    EXPECT_EQ(reader->slot().faults().delayMs, 3);
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
    reader.write(OUT_ENDPOINT, frames::lookup());
    EXPECT_EQ(reader.read(IN_ENDPOINT, ROOM).data, QByteArray("\x01"));
}
