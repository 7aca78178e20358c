// What the environment decides as long as no call has. The simulator forgets no call, so this
// program makes none; the last test does.

#include <gmock/gmock.h>

#include <QtGlobal>

#include "common/closed_functions.h"
#include "simulator/reader/vendor_reader.h"
#include "simulator/simulator.h"
#include "tests/simulator/reader_session.h"

using simulator::VendorCode;
using testing::StartsWith;

namespace
{

class Environment : public testing::Test
{
protected:
    Environment()
    {
        // Opening once with an empty environment makes every test begin alike.
        set(nullptr, nullptr);
        const ReaderSession session;
    }

    static void set(const char *card, const char *faults)
    {
        qunsetenv("IDCARD_SIMULATOR_CARD");
        qunsetenv("IDCARD_SIMULATOR_FAULTS");
        if (card != nullptr)
            qputenv("IDCARD_SIMULATOR_CARD", card);
        if (faults != nullptr)
            qputenv("IDCARD_SIMULATOR_FAULTS", faults);
    }
};

} // namespace

TEST_F(Environment, UnsetOrEmptyValues_MeanAReaderWithoutCard)
{
    EXPECT_EQ(readOnce().code, VendorCode::VENDOR_NO_CARD);
    set("", "");
    EXPECT_EQ(readOnce().code, VendorCode::VENDOR_NO_CARD);
}

TEST_F(Environment, CardByNameOrPath_IsReadAtTheNextOpening)
{
    set("foreign-2017", nullptr);
    const ReadAnswer answer = readOnce();
    EXPECT_EQ(answer.code, KVO_SUCCESS);
    EXPECT_EQ(fieldText(answer.info.foreign2017.englishName), "BERGSTROM, INGRID MAJA");
    set(IDCARD_SOURCE_DIR "/simulator/cards/hmt-taiwan.json", nullptr);
    EXPECT_EQ(readOnce().info.kind, CARD_INFO_KIND_HMT);
    set(nullptr, nullptr);
    EXPECT_EQ(readOnce().code, VendorCode::VENDOR_NO_CARD);
}

TEST_F(Environment, CountedFaults_CountAcrossOpenings)
{
    set("resident", "no-card=1,transient-failures=1");
    EXPECT_EQ(readOnce().code, VendorCode::VENDOR_NO_CARD);
    EXPECT_EQ(readOnce().code, KVO_READ_AGAIN);
    EXPECT_EQ(readOnce().code, KVO_SUCCESS);
    EXPECT_EQ(readOnce().code, KVO_SUCCESS);
}

TEST_F(Environment, RemovedCard_StaysRemovedWhileTheCardIsNamedUnchanged)
{
    set("resident", "card-removed");
    EXPECT_EQ(readOnce().code, VendorCode::VENDOR_CARD_REMOVED);
    set("resident", nullptr);
    EXPECT_EQ(readOnce().code, VendorCode::VENDOR_NO_CARD);
    set("hmt-macao", nullptr);
    EXPECT_EQ(readOnce().code, KVO_SUCCESS);
}

TEST_F(Environment, Faults_AreAddedToThoseOfTheCard)
{
    set("resident-transient-failures", "read-fails=12");
    EXPECT_EQ(readOnce().code, KVO_READ_AGAIN);
    EXPECT_EQ(readOnce().code, KVO_READ_AGAIN);
    EXPECT_EQ(readOnce().code, 12);
}

TEST_F(Environment, UnusableCard_FailsTheOpeningAndIsReportedOnStandardErrorEachTime)
{
    set("no-such-card", nullptr);
    for (int i = 0; i < 2; ++i) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(readOnce().code, VendorCode::VENDOR_BAD_ENVIRONMENT);
        EXPECT_THAT(testing::internal::GetCapturedStderr(),
                    StartsWith("idcard_simulator: environment variable IDCARD_SIMULATOR_CARD: "
                               "no-such-card: is neither a built-in card nor a file"));
    }
    EXPECT_EQ(KVO_FindIDCard(KVO_PORT), VendorCode::VENDOR_NOT_OPEN);
}

TEST_F(Environment, UnusableFaults_FailTheOpeningAndAreReportedOnStandardError)
{
    for (const auto &[faults, reason] :
         {std::pair("dealy-ms=5", "fault \"dealy-ms=5\" is not known; did you mean delay-ms?"),
          {"no-card=1,unplugged", "no fault \"unplugged\"; only the reader on USB has it"}}) {
        set("resident", faults);
        testing::internal::CaptureStderr();
        EXPECT_EQ(readOnce().code, VendorCode::VENDOR_BAD_ENVIRONMENT);
        EXPECT_THAT(
            testing::internal::GetCapturedStderr(),
            testing::AllOf(
                StartsWith("idcard_simulator: environment variable IDCARD_SIMULATOR_FAULTS: "),
                testing::HasSubstr(reason)));
    }
}

TEST_F(Environment, UsableValues_LeaveStandardErrorEmpty)
{
    set("resident", "delay-ms=1");
    testing::internal::CaptureStderr();
    EXPECT_EQ(readOnce().code, KVO_SUCCESS);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

// Runs last, for what it does lasts.
TEST_F(Environment, Zz_CallsOnceMade_DecideInsteadOfTheEnvironment)
{
    set("resident", "read-fails=12");
    EXPECT_EQ(readOnce().code, 12);
    ASSERT_EQ(idcard_simulator_set_faults("", nullptr, 0), 0);
    EXPECT_EQ(readOnce().info.kind, CARD_INFO_KIND_CN);
    idcard_simulator_take_card();
    set("foreign-new", "read-fails=12");
    EXPECT_EQ(readOnce().code, VendorCode::VENDOR_NO_CARD);
    ASSERT_EQ(idcard_simulator_put_card("hmt-macao", nullptr, 0), 0);
    EXPECT_EQ(readOnce().info.kind, CARD_INFO_KIND_HMT);
    idcard_simulator_take_card();
    EXPECT_EQ(readOnce().code, VendorCode::VENDOR_NO_CARD);
}
