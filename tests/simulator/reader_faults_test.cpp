// Every fault as a caller of the makers' functions meets it.

#include <algorithm>
#include <chrono>

#include <gmock/gmock.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

#include "common/card_records.h"
#include "common/closed_functions.h"
#include "simulator/reader/vendor_reader.h"
#include "simulator/simulator.h"
#include "tests/simulator/card_files.h"
#include "tests/simulator/reader_session.h"
#include "tests/support/files.h"

using simulator::VendorCode;

namespace
{

class ReaderFaults : public SimulatedReader
{
protected:
    /** Puts a card whose description has these faults. */
    static void putWithFaults(const QJsonArray &faults)
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("card.json"));
        QJsonObject description = sourceCard(QStringLiteral("resident"));
        description["faults"] = faults;
        writeFile(path, QJsonDocument(description).toJson());
        put(QFile::encodeName(path));
    }

    static bool decodes(const ReadAnswer &answer)
    {
        std::vector<unsigned char> photo = answer.photo;
        std::vector<unsigned char> bmp(IDCARD_PHOTO_SIZE);
        return unpack(photo.data(), bmp.data(), WLT_MODE_BMP_FILE) == WLT_SUCCESS;
    }
};

} // namespace

TEST_F(ReaderFaults, OpenFails_AnswersItsCodeEveryTimeAndStaysClosed)
{
    set("open-fails=-7");
    EXPECT_EQ(KVO_OpenPort(KVO_PORT), -7);
    EXPECT_EQ(KVO_OpenPort(KVO_PORT), -7);
    EXPECT_EQ(KVO_FindIDCard(KVO_PORT), VendorCode::VENDOR_NOT_OPEN);
}

TEST_F(ReaderFaults, OpenFailsEvery_LetsTheReaderGoAndComeAgainAndAgain)
{
    set("open-fails-every=3");
    for (int i = 1; i <= 9; ++i) {
        const bool isThere = i % 3 != 0;
        EXPECT_EQ(KVO_OpenPort(KVO_PORT),
                  isThere ? KVO_SUCCESS : int{VendorCode::VENDOR_NO_READER});
        EXPECT_EQ(KVO_ClosePort(KVO_PORT),
                  isThere ? KVO_SUCCESS : int{VendorCode::VENDOR_NOT_OPEN});
    }
}

TEST_F(ReaderFaults, OpenFailsEvery_CountsFromWhenItWasSet)
{
    for (int i = 0; i < 3; ++i) {
        set("open-fails-every=2");
        EXPECT_EQ(KVO_OpenPort(KVO_PORT), KVO_SUCCESS);
        EXPECT_EQ(KVO_ClosePort(KVO_PORT), KVO_SUCCESS);
    }
}

TEST_F(ReaderFaults, Counts_GoOnAcrossOpeningsUntilTheyAreSetOrPutAgain)
{
    constexpr int NO_CARD = VendorCode::VENDOR_NO_CARD;
    constexpr int AGAIN = KVO_READ_AGAIN;
    constexpr int READ = KVO_SUCCESS;
    const struct {
        const char *card;   ///< put first; null: the one that lies there stays
        const char *faults; ///< set then; null: as before
        std::vector<int> codes;
    } steps[] = {
        {"resident", "no-card", {NO_CARD, NO_CARD, NO_CARD, NO_CARD, NO_CARD}},
        {nullptr, "no-card=2", {NO_CARD, NO_CARD, READ}},
        {nullptr, "transient-failures=1", {AGAIN}},
        {nullptr, "transient-failures=1", {AGAIN, READ}}, // set again
        {nullptr, "transient-failures=1", {AGAIN}},
        {"resident", nullptr, {READ}}, // a card that is put does not restart the setting's
        {nullptr, "transient-failures=1,read-fails=33", {AGAIN, 33}},
        {"resident-transient-failures", "", {AGAIN, AGAIN, READ, READ}},
        {"resident-transient-failures", nullptr, {AGAIN, AGAIN, READ, READ}},
        {"resident-transient-failures", "transient-failures=1", {AGAIN, AGAIN, AGAIN, READ}},
    };
    for (const auto &step : steps) {
        if (step.card != nullptr)
            put(step.card);
        if (step.faults != nullptr)
            set(step.faults);
        std::vector<int> codes;
        for (std::size_t i = 0; i < step.codes.size(); ++i)
            codes.push_back(readOnce().code);
        EXPECT_EQ(codes, step.codes) << "step " << &step - steps;
    }
}

TEST_F(ReaderFaults, FindThatSeesNoCardAfterOneThatDid_ForgetsTheCard)
{
    ReaderSession session;
    ASSERT_EQ(session.find(), KVO_SUCCESS);
    set("no-card=1");
    EXPECT_EQ(session.find(), VendorCode::VENDOR_NO_CARD);
    EXPECT_EQ(session.read().code, VendorCode::VENDOR_CARD_NOT_FOUND);
}

TEST_F(ReaderFaults, TransientFailures_AreCountedAndThenTheCardIsRead)
{
    set("transient-failures=2");
    ReaderSession session;
    ASSERT_EQ(session.find(), KVO_SUCCESS);
    EXPECT_EQ(session.read().code, KVO_READ_AGAIN);
    const ReadAnswer second = session.read();
    EXPECT_EQ(second.code, KVO_READ_AGAIN);
    EXPECT_EQ(second.info.kind, 0);
    EXPECT_EQ(second.photoLength, 0U);
    EXPECT_EQ(second.photo[0], 0xEE);
    EXPECT_EQ(session.read().code, KVO_SUCCESS);
}

TEST_F(ReaderFaults, CountOfTheSetting_IsUsedUpBeforeThatOfTheCard)
{
    for (const auto &[fault, code] : {std::pair("no-card=1", int(VendorCode::VENDOR_NO_CARD)),
                                      std::pair("transient-failures=1", int(KVO_READ_AGAIN))}) {
        putWithFaults({fault});
        set(fault);
        EXPECT_EQ(readOnce().code, code);
        putWithFaults({fault});
        EXPECT_EQ(readOnce().code, code);
        EXPECT_EQ(readOnce().code, KVO_SUCCESS) << fault;
    }
}

TEST_F(ReaderFaults, ReadFails_AnswersItsCodeAndWritesNothing)
{
    set("read-fails=1");
    const ReadAnswer answer = readOnce();
    EXPECT_EQ(answer.code, 1);
    EXPECT_EQ(answer.info.kind, 0);
    EXPECT_EQ(answer.photoLength, 0U);
    EXPECT_EQ(answer.photo[0], 0xEE);
    EXPECT_EQ(answer.fingerprints[0], 0xEE);
}

TEST_F(ReaderFaults, Delay_PassesBeforeEveryAnswerOfARead)
{
    set("delay-ms=80,transient-failures=1");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(readOnce().code, KVO_READ_AGAIN);
    EXPECT_EQ(readOnce().code, KVO_SUCCESS);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(160));
}

TEST_F(ReaderFaults, PhotoUndecodable_DeliversCompressedDataThatDoesNotDecode)
{
    put("hmt-macao");
    EXPECT_TRUE(decodes(readOnce()));
    for (const char *card : {"hmt-macao", "resident"}) {
        put(card);
        set("photo-undecodable");
        const ReadAnswer answer = readOnce();
        EXPECT_EQ(answer.code, KVO_SUCCESS);
        EXPECT_EQ(answer.photoLength, IDCARD_COMPRESSED_PHOTO_SIZE);
        EXPECT_FALSE(decodes(answer));
    }
}

TEST_F(ReaderFaults, PhotoLength_IsReportedAndNoMoreIsWritten)
{
    set("photo-length=500");
    const ReadAnswer answer = readOnce();
    EXPECT_EQ(answer.photoLength, 500U);
    EXPECT_EQ(answer.photo[0], 'B');
    EXPECT_NE(answer.photo[499], 0xEE);
    EXPECT_EQ(answer.photo[500], 0xEE);

    set("photo-length=0");
    const ReadAnswer none = readOnce();
    EXPECT_EQ(none.photoLength, 0U);
    EXPECT_EQ(none.photo[0], 0xEE);
}

TEST_F(ReaderFaults, PhotoLengthBeyondThePhoto_IsFilledWithZeros)
{
    put("hmt-macao");
    set("photo-length=38862");
    const ReadAnswer answer = readOnce();
    EXPECT_EQ(answer.photoLength, 38862U);
    EXPECT_TRUE(decodes(answer));
    EXPECT_TRUE(std::all_of(answer.photo.begin() + 1024, answer.photo.end(),
                            [](unsigned char byte) { return byte == 0; }));
}

TEST_F(ReaderFaults, UnknownKind_ChangesTheKindWordAlone)
{
    const ReadAnswer plain = readOnce();
    set("unknown-kind");
    ReadAnswer unknown = readOnce();
    EXPECT_EQ(unknown.code, KVO_SUCCESS);
    EXPECT_EQ(unknown.info.kind, 9);
    EXPECT_EQ(fieldText(unknown.info.cn.name), fieldText(plain.info.cn.name));
    set("unknown-kind=-1");
    EXPECT_EQ(readOnce().info.kind, -1);
}

TEST_F(ReaderFaults, CardRemoved_FailsTheReadAndHidesTheCardUntilOneIsPut)
{
    set("card-removed");
    EXPECT_EQ(readOnce().code, VendorCode::VENDOR_CARD_REMOVED);
    EXPECT_EQ(readOnce().code, VendorCode::VENDOR_NO_CARD);
    set("");
    EXPECT_EQ(readOnce().code, VendorCode::VENDOR_NO_CARD);
    put("resident");
    EXPECT_EQ(readOnce().code, KVO_SUCCESS);
}

TEST_F(ReaderFaults, CardRemoved_FailsASecondReadWithoutFind)
{
    set("card-removed");
    ReaderSession session;
    ASSERT_EQ(session.find(), KVO_SUCCESS);
    EXPECT_EQ(session.read().code, VendorCode::VENDOR_CARD_REMOVED);
    EXPECT_EQ(session.read().code, VendorCode::VENDOR_CARD_NOT_FOUND);
}

TEST_F(ReaderFaults, FaultsOfAReaderOnUsbInADescription_AreIgnored)
{
    putWithFaults({"unplugged", "unplugged-before=1", "permission-denied", "claimed-elsewhere",
                   "reset-refused", "lookup-answer-missing", "select-answer-replaced=00",
                   "read-answer-cut=3", "read-command-stalled"});
    EXPECT_EQ(readOnce().code, KVO_SUCCESS);
}

TEST_F(ReaderFaults, FaultOfAReaderOnUsbSetBesideTheCard_IsRefusedAndThoseInForceStay)
{
    set("read-fails=12");
    char message[500] = "";
    EXPECT_EQ(idcard_simulator_set_faults("no-card,unplugged", message, sizeof message), -1);
    EXPECT_THAT(message, testing::HasSubstr("no fault \"unplugged\"; only the reader on USB"));
    EXPECT_EQ(readOnce().code, 12);
}
