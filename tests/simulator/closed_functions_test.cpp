// The makers' four functions as the simulator answers them, and the calls that put cards on it.

#include <cstring>

#include <gmock/gmock.h>

#include <QByteArray>

#include "common/card_records.h"
#include "common/closed_functions.h"
#include "simulator/reader/vendor_reader.h"
#include "simulator/simulator.h"
#include "tests/simulator/reader_session.h"
#include "tests/support/files.h"

using simulator::VendorCode;
using testing::Each;
using testing::StartsWith;

TEST_F(SimulatedReader, ResidentCard_IsReadWithItsTexts)
{
    const ReadAnswer answer = readOnce();
    ASSERT_EQ(answer.code, KVO_SUCCESS);
    EXPECT_EQ(answer.info.kind, CARD_INFO_KIND_CN);
    EXPECT_EQ(fieldText(answer.info.cn.name), "林晓雨");
    EXPECT_EQ(fieldText(answer.info.cn.sex), "女");
    EXPECT_EQ(fieldText(answer.info.cn.id), "990000199003074284");
}

TEST_F(SimulatedReader, Photo_FillsAsMuchOfTheAreaAsItIsDeliveredIn)
{
    const ReadAnswer bmp = readOnce();
    EXPECT_EQ(bmp.photoLength, IDCARD_PHOTO_SIZE);
    EXPECT_EQ(bmp.photo[0], 'B');
    EXPECT_EQ(bmp.photo[1], 'M');
    EXPECT_EQ(bmp.photo[IDCARD_PHOTO_SIZE - 1], 0); // padding of the last row
    put("hmt-macao");
    const ReadAnswer compressed = readOnce();
    EXPECT_EQ(compressed.photoLength, IDCARD_COMPRESSED_PHOTO_SIZE);
    EXPECT_EQ(compressed.photo[IDCARD_COMPRESSED_PHOTO_SIZE], 0xEE);
}

TEST_F(SimulatedReader, PhotoDeliveredAsItsOwnFile_IsTheFileAndZeros)
{
    const QByteArray jpeg =
        readFile(IDCARD_SOURCE_DIR "/simulator/cards/foreign-new-photo-jpeg.jpg");
    const QByteArray area = jpeg.leftJustified(int{IDCARD_PHOTO_SIZE}, '\0');
    put("foreign-new-photo-jpeg");
    ReadAnswer answer = readOnce();
    EXPECT_EQ(answer.photoLength, IDCARD_PHOTO_SIZE);
    EXPECT_EQ(std::memcmp(answer.photo.data(), area.constData(), IDCARD_PHOTO_SIZE), 0);
    ASSERT_EQ(idcard_simulator_put_plain_card("foreign-new-photo-jpeg", nullptr, 0), 0);
    answer = readOnce();
    EXPECT_EQ(std::memcmp(answer.photo.data(), area.constData(), IDCARD_PHOTO_SIZE), 0);
}

TEST_F(SimulatedReader, Fingerprints_AreAsManyAsDescribedAndEachItsOwn)
{
    const ReadAnswer two = readOnce();
    ASSERT_EQ(two.fingerprintLength, 1024U);
    EXPECT_THAT(std::string(two.fingerprints.begin(), two.fingerprints.end()),
                StartsWith("SIMULATED FINGERPRINT 1 OF 990000199003074284\n"));
    EXPECT_NE(std::memcmp(two.fingerprints.data(), two.fingerprints.data() + 512, 512), 0);
    EXPECT_EQ(readOnce().fingerprints, two.fingerprints);

    put("resident-one-fingerprint");
    const ReadAnswer one = readOnce();
    EXPECT_EQ(one.fingerprintLength, 512U);
    EXPECT_EQ(one.fingerprints[512], 0xEE);
    EXPECT_NE(std::memcmp(one.fingerprints.data(), two.fingerprints.data(), 512), 0);

    put("resident-no-fingerprint");
    const ReadAnswer none = readOnce();
    EXPECT_EQ(none.fingerprintLength, 0U);
    EXPECT_THAT(none.fingerprints, Each(0xEE));
}

TEST_F(SimulatedReader, WrongPort_FailsInEveryFunction)
{
    const ReaderSession session;
    ReadAnswer answer;
    EXPECT_EQ(KVO_OpenPort(1002), VendorCode::VENDOR_WRONG_PORT);
    EXPECT_EQ(KVO_FindIDCard(0), VendorCode::VENDOR_WRONG_PORT);
    EXPECT_EQ(KVO_ReadIDCard(-1001, &answer.info, answer.photo.data(), &answer.photoLength,
                             answer.fingerprints.data(), &answer.fingerprintLength, 1),
              VendorCode::VENDOR_WRONG_PORT);
    EXPECT_EQ(KVO_ClosePort(1000), VendorCode::VENDOR_WRONG_PORT);
}

TEST_F(SimulatedReader, FindReadAndClose_BeforeOpen_Fail)
{
    ReadAnswer answer;
    unsigned char byte = 0;
    EXPECT_EQ(KVO_FindIDCard(KVO_PORT), VendorCode::VENDOR_NOT_OPEN);
    EXPECT_EQ(KVO_ReadIDCard(KVO_PORT, &answer.info, &byte, &answer.photoLength, &byte,
                             &answer.fingerprintLength, 1),
              VendorCode::VENDOR_NOT_OPEN);
    EXPECT_EQ(KVO_ClosePort(KVO_PORT), VendorCode::VENDOR_NOT_OPEN);
}

TEST_F(SimulatedReader, OpenWhileOpen_FailsAndClosingOnceCloses)
{
    EXPECT_EQ(KVO_OpenPort(KVO_PORT), KVO_SUCCESS);
    EXPECT_EQ(KVO_OpenPort(KVO_PORT), VendorCode::VENDOR_ALREADY_OPEN);
    EXPECT_EQ(KVO_ClosePort(KVO_PORT), KVO_SUCCESS);
    EXPECT_EQ(KVO_ClosePort(KVO_PORT), VendorCode::VENDOR_NOT_OPEN);
}

TEST_F(SimulatedReader, ReadWithoutFindSinceTheOpening_Fails)
{
    for (int i = 0; i < 2; ++i) {
        {
            ReaderSession session;
            EXPECT_EQ(session.read().code, VendorCode::VENDOR_CARD_NOT_FOUND);
        }
        EXPECT_EQ(readOnce().code, KVO_SUCCESS);
    }
}

TEST_F(SimulatedReader, NullPointerOrOtherFlag_FailsAndWritesNothing)
{
    ReaderSession session;
    ASSERT_EQ(session.find(), KVO_SUCCESS);
    CardInfoStruct info = {};
    std::vector<unsigned char> photo(IDCARD_PHOTO_SIZE, 0xEE);
    std::vector<unsigned char> prints(IDCARD_FINGERPRINT_AREA_SIZE, 0xEE);
    unsigned int photoLength = 0;
    unsigned int printLength = 0;
    constexpr int WRONG = VendorCode::VENDOR_WRONG_ARGUMENT;
    const auto read = [&](CardInfoStruct *i, unsigned char *p, unsigned int *pl, unsigned char *f,
                          unsigned int *fl,
                          int flag) { return KVO_ReadIDCard(KVO_PORT, i, p, pl, f, fl, flag); };
    EXPECT_EQ(read(nullptr, photo.data(), &photoLength, prints.data(), &printLength, 1), WRONG);
    EXPECT_EQ(read(&info, nullptr, &photoLength, prints.data(), &printLength, 1), WRONG);
    EXPECT_EQ(read(&info, photo.data(), nullptr, prints.data(), &printLength, 1), WRONG);
    EXPECT_EQ(read(&info, photo.data(), &photoLength, nullptr, &printLength, 1), WRONG);
    EXPECT_EQ(read(&info, photo.data(), &photoLength, prints.data(), nullptr, 1), WRONG);
    EXPECT_EQ(read(&info, photo.data(), &photoLength, prints.data(), &printLength, 0), WRONG);
    EXPECT_EQ(info.kind, 0);
    EXPECT_EQ(photoLength + printLength, 0U);
    EXPECT_THAT(photo, Each(0xEE));
    EXPECT_THAT(prints, Each(0xEE));
}

TEST_F(SimulatedReader, TakenCard_IsNotFoundUntilOneIsPut)
{
    idcard_simulator_take_card();
    EXPECT_EQ(readOnce().code, VendorCode::VENDOR_NO_CARD);
    put("foreign-new");
    EXPECT_EQ(readOnce().code, KVO_SUCCESS);
}

TEST_F(SimulatedReader, CardTakenOrExchangedBetweenFindAndRead_MustBeFoundAgain)
{
    ReaderSession session;
    ASSERT_EQ(session.find(), KVO_SUCCESS);
    idcard_simulator_take_card();
    EXPECT_EQ(session.read().code, VendorCode::VENDOR_CARD_REMOVED);
    put("resident");
    ASSERT_EQ(session.find(), KVO_SUCCESS);
    put("hmt-macao");
    EXPECT_EQ(session.read().code, VendorCode::VENDOR_CARD_REMOVED);
    ASSERT_EQ(session.find(), KVO_SUCCESS);
    EXPECT_EQ(session.read().info.kind, CARD_INFO_KIND_HMT);
}

TEST_F(SimulatedReader, PutUnusableCard_SaysWhyAndLeavesTheCard)
{
    for (const auto putCard : {idcard_simulator_put_card, idcard_simulator_put_plain_card}) {
        char message[4096] = "";
        EXPECT_EQ(putCard("no-such-card", message, sizeof message), -1);
        EXPECT_THAT(message, StartsWith("no-such-card: is neither a built-in card nor a file; "));
        EXPECT_EQ(fieldText(readOnce().info.cn.name), "林晓雨");
    }
}

TEST_F(SimulatedReader, PutPlainCard_DeliversTheSameCardWithItsCompressedPhotoAsBmp)
{
    put("hmt-macao");
    const ReadAnswer described = readOnce();
    ASSERT_EQ(described.photoLength, IDCARD_COMPRESSED_PHOTO_SIZE);
    ASSERT_EQ(idcard_simulator_put_plain_card("hmt-macao", nullptr, 0), 0);
    const ReadAnswer plain = readOnce();
    EXPECT_EQ(plain.photoLength, IDCARD_PHOTO_SIZE);
    EXPECT_EQ(plain.photo[0], 'B');
    EXPECT_EQ(std::memcmp(&plain.info, &described.info, sizeof plain.info), 0);
}

TEST_F(SimulatedReader, PutPlainCard_HasNoneOfItsFaultsButThoseSetBesideIt)
{
    ASSERT_EQ(idcard_simulator_put_plain_card("resident-transient-failures", nullptr, 0), 0);
    EXPECT_EQ(readOnce().code, KVO_SUCCESS);
    set("read-fails=7");
    EXPECT_EQ(readOnce().code, 7);
}

TEST_F(SimulatedReader, PutNullOrEmptyName_IsRefused)
{
    char message[100] = "";
    EXPECT_EQ(idcard_simulator_put_card(nullptr, message, sizeof message), -1);
    EXPECT_THAT(message, StartsWith("\"\": is neither"));
    EXPECT_EQ(idcard_simulator_put_card("", nullptr, 0), -1);
}

TEST_F(SimulatedReader, SetUnknownFaults_SaysWhyAndLeavesTheFaults)
{
    set("read-fails=7");
    char message[4096] = "";
    EXPECT_EQ(idcard_simulator_set_faults("read-fials=8", message, sizeof message), -1);
    EXPECT_THAT(message,
                StartsWith("fault \"read-fials=8\" is not known; did you mean read-fails?"));
    EXPECT_EQ(readOnce().code, 7);
}

TEST_F(SimulatedReader, NullFaults_MeanNone)
{
    set("read-fails=7");
    EXPECT_EQ(idcard_simulator_set_faults(nullptr, nullptr, 0), 0);
    EXPECT_EQ(readOnce().code, KVO_SUCCESS);
}

TEST_F(SimulatedReader, MessageLongerThanItsBuffer_IsCutAndTerminated)
{
    char message[8];
    std::memset(message, 'x', sizeof message);
    EXPECT_EQ(idcard_simulator_put_card("no-such-card", message, 5), -1);
    EXPECT_STREQ(message, "no-s");
    EXPECT_EQ(message[5], 'x');
    EXPECT_EQ(idcard_simulator_put_card("no-such-card", message, 1), -1);
    EXPECT_STREQ(message, "");
    message[0] = 'x';
    EXPECT_EQ(idcard_simulator_put_card("no-such-card", message, 0), -1);
    EXPECT_EQ(message[0], 'x');
}

TEST_F(SimulatedReader, MessageCutInsideACharacter_LosesThatCharacterWhole)
{
    char message[6];
    EXPECT_EQ(idcard_simulator_put_card("卡片", message, 6), -1);
    EXPECT_STREQ(message, "卡");
}
