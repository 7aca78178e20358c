// readIDCard: arguments, the order of its steps, result codes, photo and fingerprint rules.

#include "tests/library/closed_library_mock.h"
#include "tests/library/reading.h"
#include "tests/library/wide_console_capture.h"
#include "tests/support/message_log.h"

#include <functional>
#include <optional>
#include <stdexcept>

namespace
{

using testing::_;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using testing::Throw;

/** What one scripted read delivers. */
struct Card {
    int kind = 1;
    unsigned int photoLen = 38862;
    unsigned int fpLen = 1024;
    std::function<void(CardInfoStruct &)> fill;
};

class ReadIdCard : public ScriptedReader
{
protected:
    ReadIdCard() { mark(reading); }

    void expectRead(const Card &card, int result = DONE)
    {
        EXPECT_CALL(library, readIDCard(PORT, _, _, _, _, _, 1))
            .WillOnce([card, result](int, CardInfoStruct *info, unsigned char *photo,
                                     unsigned int *photoLen, unsigned char *fp, unsigned int *fpLen,
                                     int) {
                for (unsigned int i = 0; i < std::min(card.photoLen, 38862U); ++i)
                    photo[i] = static_cast<unsigned char>(i * 7 + 3);
                for (unsigned int i = 0; i < std::min(card.fpLen, 1024U); ++i)
                    fp[i] = static_cast<unsigned char>(i * 5 + 1);
                info->kind = card.kind;
                *photoLen = card.photoLen;
                *fpLen = card.fpLen;
                if (card.fill)
                    card.fill(*info);
                return result;
            });
    }
    void expectUnpack(int result)
    {
        EXPECT_CALL(library, unpack(_, _, 106))
            .WillOnce([result](unsigned char *src, unsigned char *dst, int) {
                EXPECT_EQ(src[0], 3) << "the photo as the reader delivered it";
                EXPECT_EQ(src[1023], static_cast<unsigned char>(1023 * 7 + 3));
                std::memset(dst, 0xee, 38862);
                return result;
            });
    }

    /** A whole read of `card`; its photo is decoded where `decoded` says what that gives. */
    int readOf(const Card &card, int result = DONE, std::optional<int> decoded = {})
    {
        expectFoundCard();
        expectRead(card, result);
        if (decoded)
            expectUnpack(*decoded);
        expectClose();
        return readOnConsole();
    }
    int readOnConsole()
    {
        WideConsoleCapture console;
        const int code = reading.read();
        printed = console.take();
        return code;
    }
    void readCard(const Card &card) { EXPECT_EQ(readOf(card), 0); }

    Reading reading;
    std::string printed;
    MessageLog log;
};

} // namespace

TEST_F(ReadIdCard, NullArguments_AreReportedInOrderAndTouchNothing)
{
    constexpr int CODES[] = {-27, -28, -29, -30, -31, -39, -40};
    const auto readWith = [this](const std::function<bool(int)> &isPresent) {
        return readIDCard(
            isPresent(0) ? &reading.cardKind : nullptr, isPresent(1) ? &reading.cn : nullptr,
            isPresent(2) ? &reading.f2017 : nullptr, isPresent(3) ? &reading.fNew : nullptr,
            isPresent(4) ? &reading.hmt : nullptr, isPresent(5) ? &reading.front : nullptr,
            isPresent(6) ? &reading.back : nullptr);
    };
    for (int missing = 0; missing < 7; ++missing) {
        EXPECT_EQ(readWith([=](int i) { return i != missing; }), CODES[missing]);
        EXPECT_EQ(readWith([=](int i) { return i < missing; }), CODES[missing]) << "and the rest";
    }
    expectUntouched(reading);
}

TEST_F(ReadIdCard, PortThatDoesNotOpenOrThrows_GivesMinus5AndTouchesNothing)
{
    expectOpen(7);
    EXPECT_EQ(readOnConsole(), -5);
    EXPECT_EQ(printed, "打开读卡器失败，错误码：7\n");
    EXPECT_CALL(library, openPort(PORT)).WillOnce(Throw(std::runtime_error("open")));
    EXPECT_EQ(readOnConsole(), -5);
    expectUntouched(reading);
}

TEST_F(ReadIdCard, NoCardOrFindThatThrows_GivesMinus24AndTouchesNothing)
{
    expectOpen();
    expectFind(0);
    expectClose();
    EXPECT_EQ(reading.read(), -24);
    expectOpen();
    EXPECT_CALL(library, findIDCard(PORT)).WillOnce(Throw(std::runtime_error("find")));
    expectClose();
    EXPECT_EQ(reading.read(), -24);
    expectUntouched(reading);
}

TEST_F(ReadIdCard, ReadFailures_AreTakenForThoseOfPortAndCardOrForNone)
{
    for (const auto &[failure, code] :
         {std::pair(1, -5), std::pair(-4, -24), std::pair(0, 0), std::pair(2, 0), std::pair(-1, 0),
          std::pair(-5, 0), std::pair(66, 0), std::pair(145, 0)}) {
        EXPECT_EQ(readOf({0, 0, 0, {}}, failure), code);
        EXPECT_EQ(printed, "card reading error, result is：" + std::to_string(failure) + "\n");
        expectUntouched(reading);
    }
}

TEST_F(ReadIdCard, UnexpectedReadCodeWithAFilledRecord_GoesOnAsASuccess)
{
    EXPECT_EQ(readOf({2, 38862, 0, {}}, 9), 0);
    EXPECT_EQ(reading.cardKind, 3U);
}

TEST_F(ReadIdCard, UnknownKind_GivesZeroWithNothingFilled)
{
    for (const int kind : {0, 5, -1, 256, 0x01000000}) {
        readCard({kind, 38862, 1024, {}});
        expectUntouched(reading);
    }
}

TEST_F(ReadIdCard, WorkingBuffers_AreZeroWhenTheReaderGetsThem)
{
    expectFoundCard();
    EXPECT_CALL(library, readIDCard(PORT, _, _, _, _, _, 1))
        .WillOnce([](int, CardInfoStruct *info, unsigned char *photo, unsigned int *photoLen,
                     unsigned char *fp, unsigned int *fpLen, int) {
            const auto allZero = [](const void *data, std::size_t size) {
                const auto *bytes = static_cast<const unsigned char *>(data);
                return std::all_of(bytes, bytes + size, [](unsigned char b) { return b == 0; });
            };
            EXPECT_TRUE(allZero(info, 1080));
            EXPECT_TRUE(allZero(photo, 38862));
            EXPECT_TRUE(allZero(fp, 1024));
            EXPECT_EQ(*photoLen, 0U);
            EXPECT_EQ(*fpLen, 0U);
            return DONE;
        });
    expectClose();
    EXPECT_EQ(reading.read(), 0);
}

TEST_F(ReadIdCard, EveryKind_FillsOnlyItsRecordAndNeverTheSpareSlot)
{
    struct {
        int makersKind;
        unsigned int kind;
        const std::string &name;
    } const kinds[] = {{1, 0, reading.cn.szName},
                       {2, 3, reading.hmt.szName},
                       {3, 1, reading.f2017.szEnglishName},
                       {4, 2, reading.fNew.szChineseName}};
    for (const auto &k : kinds) {
        SCOPED_TRACE(k.makersKind);
        mark(reading);
        readCard({k.makersKind, 38862, 1024, {}});
        EXPECT_EQ(reading.cardKind, k.kind);
        EXPECT_EQ(k.name, "");
        EXPECT_EQ(reading.hmt.szReserved, "before 11");
        EXPECT_EQ(reading.f2017.szReserved, "before 10");
        if (k.kind != 0)
            expectCnUntouched(reading);
        if (k.kind != 1)
            expectUntouched(reading.f2017, "f2017");
        if (k.kind != 2)
            expectUntouched(reading.fNew, "fNew");
        if (k.kind != 3)
            expectUntouched(reading.hmt, "hmt");
    }
}

/** Whether `text` is base64 of a JPEG file and nothing else. */
bool isJpegText(const std::string &text)
{
    const QByteArray bytes = QByteArray::fromBase64(QByteArray::fromStdString(text));
    return bytes.startsWith("\xff\xd8") && bytes.toBase64().toStdString() == text;
}

TEST_F(ReadIdCard, KnownKind_ReplacesBothPictures)
{
    for (const int kind : {1, 2, 3, 4}) {
        reading.front = reading.back = "from before";
        readCard({kind, 38862, 0,
                  [](CardInfoStruct &info) { putText(info, 394, QStringLiteral("81")); }});
        EXPECT_TRUE(isJpegText(reading.front)) << kind;
        EXPECT_TRUE(isJpegText(reading.back)) << kind;
        EXPECT_NE(reading.front, reading.back) << kind;
    }
}

TEST_F(ReadIdCard, HmtPermitOfUnknownPrefix_HasAnEmptyBackAndSucceeds)
{
    readCard({2, 38862, 0, [](CardInfoStruct &info) { putText(info, 394, QStringLiteral("84")); }});
    EXPECT_TRUE(isJpegText(reading.front));
    EXPECT_EQ(reading.back, "");
}

TEST_F(ReadIdCard, CompressedPhotoThatDecodes_IsHandedOnAsItCameThenZeros)
{
    for (const int kind : {1, 2, 3, 4}) {
        EXPECT_EQ(readOf({kind, 1024, 0, {}}, DONE, 1), 0);
        const unsigned char *const photos[] = {reading.cn.byPhoto, reading.hmt.byPhoto,
                                               reading.f2017.byPhoto, reading.fNew.byPhoto};
        const unsigned char *const photo = photos[kind - 1];
        for (unsigned int i = 0; i < 1024; ++i)
            ASSERT_EQ(photo[i], static_cast<unsigned char>(i * 7 + 3)) << i;
        for (unsigned int i = 1024; i < 38862; ++i)
            ASSERT_EQ(photo[i], 0) << i;
    }
    EXPECT_THAT(log.texts(), Not(Contains("解码头像数据失败!")));
}

TEST_F(ReadIdCard, CompressedPhotoThatDoesNotDecode_GivesMinus26BeforeAnythingIsWritten)
{
    for (const int result : {0, -1, 2, 144}) {
        EXPECT_EQ(readOf({1, 1024, 1024, {}}, DONE, result), -26);
        expectUntouched(reading);
    }
    EXPECT_THAT(log.debugTexts(),
                testing::AllOf(testing::SizeIs(4), testing::Each("解码头像数据失败!")));
}

TEST_F(ReadIdCard, UndecodablePhotoOfAnUnknownKind_StillGivesMinus26)
{
    EXPECT_EQ(readOf({9, 1024, 0, {}}, DONE, 0), -26);
}

TEST_F(ReadIdCard, PhotoThatIsNotCompressed_GoesThroughAsTheBufferWasLeft)
{
    for (const unsigned int length : {0U, 1U, 1023U, 1025U, 38861U, 38862U, 38863U, 0xffffffffU}) {
        readCard({1, length, 0, {}});
        const unsigned int written = std::min(length, 38862U);
        for (unsigned int i = 0; i < 38862; ++i)
            ASSERT_EQ(reading.cn.byPhoto[i],
                      i < written ? static_cast<unsigned char>(i * 7 + 3) : 0)
                << length << " at " << i;
    }
}

TEST_F(ReadIdCard, Prints_AreCopiedAndFollowedByZerosUnlessOfAnotherLength)
{
    for (const unsigned int length : {1024U, 512U, 0U, 1U, 511U, 513U, 1023U, 1025U, 0xffffffffU}) {
        mark(reading);
        readCard({1, 38862, length, {}});
        const bool isKnown = length == 1024 || length == 512 || length == 0;
        EXPECT_EQ(reading.cn.fpInfoType, length == 1024  ? FP_INFO_TWO
                                         : length == 512 ? FP_INFO_ONE
                                         : length == 0   ? FP_INFO_NONE
                                                         : 77)
            << length;
        for (unsigned int i = 0; i < 1024; ++i)
            ASSERT_EQ(reading.cn.byFpData[i],
                      isKnown && i < length ? static_cast<unsigned char>(i * 5 + 1) : 0)
                << length << " at " << i;
    }
}

TEST_F(ReadIdCard, SecondCall_BuildsAFreshReader)
{
    EXPECT_EQ(readOf({}, -9), 0);
    readCard({4, 38862, 0, {}});
    EXPECT_EQ(reading.cardKind, 2U);
}

TEST_F(ReadIdCard, ThrowingRead_GivesMinus23AndClosesThePort)
{
    expectFoundCard();
    EXPECT_CALL(library, readIDCard(PORT, _, _, _, _, _, 1))
        .WillOnce(Throw(std::runtime_error("read")));
    expectClose();
    EXPECT_EQ(readOnConsole(), -23);
    EXPECT_EQ(printed, "card reading error, result is：65\n");
    expectUntouched(reading);
}

TEST_F(ReadIdCard, ThrowingDecoder_GivesMinus26AndClosesThePort)
{
    expectFoundCard();
    expectRead({1, 1024, 0, {}});
    EXPECT_CALL(library, unpack(_, _, 106)).WillOnce(Throw(std::runtime_error("unpack")));
    expectClose();
    EXPECT_EQ(reading.read(), -26);
    EXPECT_THAT(log.texts(), ElementsAre("解码头像数据失败!"));
    expectUntouched(reading);
}
