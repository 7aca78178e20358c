// Finding and selecting a card, as the constructor and the two calls do.

#include <chrono>
#include <optional>
#include <thread>

#include <gmock/gmock.h>

#include "tests/usb/exposed_reader.h"
#include "tests/usb/usb_test.h"

namespace
{

using namespace usb_test;
using simulator::UsbStatus;
using simulator::UsbTransfer;

using ReaderExchanges = UsbTest;

constexpr int COMMAND_SIZE = 10;
const UsbTransfer TAKEN = taken(UsbStatus::DONE, COMMAND_SIZE);

/** One of the constructor's two exchanges that does not end as it should, and what comes of it. */
struct Ending {
    const char *name;
    bool isSelect; ///< after a lookup that found the card
    UsbTransfer command;
    std::optional<UsbTransfer> answer; ///< none where it is not asked for
    int code;                          ///< 0: what follows is done as ever
    Lines log;                         ///< after what succeeds before
};

void PrintTo(const Ending &ending, std::ostream *stream)
{
    *stream << ending.name;
}

UsbTransfer answered(const QByteArray &bytes, int delayMs = 0)
{
    return ended(UsbStatus::DONE, bytes, delayMs);
}

QByteArray changed(QByteArray answer, int offset, char byte)
{
    answer[offset] = byte;
    return answer;
}

const Lines WRITTEN = {"write pipe2 success!"};
const Lines LOOKUP_MISMATCH = WRITTEN + Lines{"lookup_resp success!", "found data not matched!!!"};

Lines lookupFailed(const char *how)
{
    return WRITTEN + Lines{std::string("lookup_resp error(") + how + "!"};
}

Lines selectFailed(const char *how)
{
    return WRITTEN + Lines{std::string("select_resp error(") + how + "!",
                           "CARD_SELECT_RESP_FAIL=>READ_NO_DATA"};
}

class ExchangeEnding : public UsbTest, public testing::WithParamInterface<Ending>
{
};

TEST_P(ExchangeEnding, GivesItsCodeAndLog)
{
    const Ending &ending = GetParam();
    ScriptedDevice &device = make();
    if (ending.isSelect)
        device.expectWrite(0x02, frames::LOOKUP)
            .expectRead(0x81, frames::LOOKUP_ANSWER.size(), frames::LOOKUP_ANSWER);
    device.expectWrite(0x02, ending.isSelect ? frames::SELECT : frames::LOOKUP, ending.command);
    if (ending.answer)
        device.expectRead(0x81, ending.isSelect ? 19 : 15, *ending.answer);
    const bool isFollowed = ending.code == 0 && !ending.isSelect;
    if (isFollowed)
        device.expectWrite(0x02, frames::SELECT)
            .expectRead(0x81, frames::SELECT_ANSWER.size(), frames::SELECT_ANSWER);
    add(device);
    const auto start = std::chrono::steady_clock::now();
    const IdReader reader;
    const auto took = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(reader.lastError(), ending.code);
    EXPECT_EQ(reader.state(), 2);
    expectLog(lines::OPENED + (ending.isSelect ? lines::LOOKED_UP : Lines()) + ending.log +
              (isFollowed ? lines::SELECTED : Lines()));
    if (ending.answer && ending.answer->status == UsbStatus::PENDING) {
        EXPECT_GE(took, std::chrono::milliseconds(4900));
        EXPECT_LT(took, std::chrono::milliseconds(7000));
        EXPECT_TRUE(bus().calls(device).contains(QStringLiteral("discard")));
    }
    EXPECT_GE(took, std::chrono::milliseconds(ending.answer ? ending.answer->delayMs : 0));
}

const std::vector<Ending> LOOKUPS = {
    {"NoCard", false, TAKEN, answered(frames::NO_CARD_ANSWER), -10, LOOKUP_MISMATCH},
    {"AnotherLastByte", false, TAKEN, answered(changed(frames::LOOKUP_ANSWER, 14, '\x96')), -10,
     LOOKUP_MISMATCH},
    {"ShortAnswerIsAccepted", false, TAKEN, answered(frames::NO_CARD_ANSWER.left(8)), 0,
     lookupFailed("0), actual_length=8") + Lines{"lookup success!"}},
    {"EmptyAnswerIsAccepted", false, TAKEN, answered({}), 0,
     lookupFailed("0), actual_length=0") + Lines{"lookup success!"}},
    {"AnswerAfterAWhile", false, TAKEN, answered(frames::LOOKUP_ANSWER, 300), 0, lines::LOOKED_UP},
    {"AnswerStalled", false, TAKEN, ended(UsbStatus::STALLED), -11,
     lookupFailed("-9), actual_length=0")},
    {"AnswerBrokenOffInTheMiddle", false, TAKEN,
     ended(UsbStatus::BROKEN, frames::LOOKUP_ANSWER.left(7)), -11,
     lookupFailed("-1), actual_length=7")},
    {"AnswerTooLong", false, TAKEN, ended(UsbStatus::TOO_LONG, frames::LOOKUP_ANSWER), -11,
     lookupFailed("-8), actual_length=15")},
    {"NoAnswerInFiveSeconds", false, TAKEN, ended(UsbStatus::PENDING), -11,
     lookupFailed("-7), actual_length=0")},
    {"CommandStalled", false, ended(UsbStatus::STALLED), {}, -12, {"write pipe2 error(-9)!"}},
    {"CommandTakenInPart", false, taken(UsbStatus::DONE, 9), {}, -12, {"write pipe2 error(0)!"}},
    {"CommandUnplugged", false, ended(UsbStatus::UNPLUGGED), {}, -12, {"write pipe2 error(-4)!"}}};

const std::vector<Ending> SELECTS = {
    {"AnotherStatus", true, TAKEN, answered(changed(frames::SELECT_ANSWER, 9, '\x81')), -13,
     WRITTEN + Lines{"select_resp success!", "found data not matched!!!"}},
    {"ShortAnswerIsAcceptedWithTheTextOfLookup", true, TAKEN,
     answered(frames::SELECT_ANSWER.left(18)), 0,
     lookupFailed("0), actual_length=18") + Lines{"select success!"}},
    {"AnswerStalled", true, TAKEN, ended(UsbStatus::STALLED), -24,
     selectFailed("-9), actual_length=0")},
    {"NoAnswerInFiveSeconds", true, TAKEN, ended(UsbStatus::PENDING), -24,
     selectFailed("-7), actual_length=0")},
    {"CommandStalled", true, ended(UsbStatus::STALLED), {}, -15, {"write pipe2 error(-9)!"}}};

const auto NAME_OF_ENDING = [](const testing::TestParamInfo<Ending> &ending) {
    return std::string(ending.param.name);
};
INSTANTIATE_TEST_SUITE_P(Lookup, ExchangeEnding, testing::ValuesIn(LOOKUPS), NAME_OF_ENDING);
INSTANTIATE_TEST_SUITE_P(Select, ExchangeEnding, testing::ValuesIn(SELECTS), NAME_OF_ENDING);

TEST_F(ReaderExchanges, CardOnTheReader_IsFoundAndSelected)
{
    ScriptedDevice &device = make();
    expectReady(device);
    add(device);
    const IdReader reader;
    EXPECT_EQ(reader.lastError(), 0);
    EXPECT_EQ(reader.state(), 2);
    expectLog({"found usb device!", "open usb device success!", "write pipe2 success!",
               "lookup_resp success!", "lookup success!", "write pipe2 success!",
               "select_resp success!", "select success!"});
}

TEST_F(ReaderExchanges, NoReader_LeavesTheOpenCodeAndAsksNothing)
{
    IdReader reader;
    EXPECT_EQ(reader.lastError(), -7);
    EXPECT_FALSE(reader.lookup());
    EXPECT_FALSE(reader.select());
    EXPECT_EQ(reader.lastError(), -7);
    expectLog({"libusb_open_device_with_vid_pid() failed", "open usb failed!"});
}

TEST_F(ReaderExchanges, SelectCalledAgain_KeepsTheCodeOfARead)
{
    ScriptedDevice &device = make();
    expectReady(device);
    device.expectWrite(0x02, frames::SELECT)
        .expectRead(0x81, frames::SELECT_ANSWER.size(), ended(UsbStatus::STALLED));
    add(device);
    IdReader reader;
    EXPECT_FALSE(reader.select());
    EXPECT_EQ(reader.lastError(), -14) << "only the constructor makes -24 of it";
    expectLog(lines::READY +
              Lines{"write pipe2 success!", "select_resp error(-9), actual_length=0!"});
}

TEST_F(ReaderExchanges, LookupAndSelectCalledAgain_RunTheirExchanges)
{
    ScriptedDevice &device = make();
    expectReady(device);
    expectReady(device);
    add(device);
    IdReader reader;
    EXPECT_TRUE(reader.lookup());
    EXPECT_TRUE(reader.select());
    EXPECT_EQ(reader.lastError(), 0);
    expectLog(lines::READY + lines::LOOKED_UP + lines::SELECTED);
}

TEST_F(ReaderExchanges, WriteThatIsNeverTaken_EndsWhenTheReaderIsUnplugged)
{
    ScriptedDevice &device = make();
    device.expectWrite(0x02, frames::LOOKUP, ended(UsbStatus::PENDING));
    add(device);
    constexpr std::chrono::milliseconds AFTER{7000}; // longer than any read waits
    std::thread hand([this, &device, AFTER] {
        std::this_thread::sleep_for(AFTER);
        bus().change([&device] { device.setPluggedIn(false); });
    });
    const auto start = std::chrono::steady_clock::now();
    const IdReader reader;
    const auto took = std::chrono::steady_clock::now() - start;
    hand.join();
    EXPECT_GE(took, AFTER);
    EXPECT_LT(took, AFTER + std::chrono::seconds(2));
    EXPECT_EQ(reader.lastError(), -12);
    expectLog(lines::OPENED + Lines{"write pipe2 error(-4)!"});
}

} // namespace
