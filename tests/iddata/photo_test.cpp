// CIdData::parseIDHeadImage, with the photo decoder scripted by the test.

#include "tests/iddata/decoder.h"
#include "tests/iddata/guarded_bytes.h"
#include "tests/library/closed_library_mock.h"
#include "tests/support/message_log.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using testing::_;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t PIXELS_SIZE = 38556;
constexpr std::size_t BMP_SIZE = 38862;
constexpr unsigned char UNTOUCHED = 0x5a;

/** Byte `at` of what the scripted decoder delivers. */
unsigned char pixelByte(std::size_t at)
{
    return static_cast<unsigned char>(at * 7 + at / 251 + 1);
}

class Photo : public testing::TestWithParam<GuardedBytes::Side>
{
protected:
    void expectUnpack(int result)
    {
        EXPECT_CALL(library, unpack(wlt.data(), _, 310))
            .WillOnce([result](unsigned char *src, unsigned char *dst, int) {
                EXPECT_TRUE(std::all_of(src, src + 1024, [](int byte) { return byte == 'w'; }));
                EXPECT_TRUE(std::all_of(dst, dst + PIXELS_SIZE, [](int byte) { return byte == 0; }))
                    << "the decode buffer is zeroed";
                for (std::size_t i = 0; i < PIXELS_SIZE; ++i)
                    dst[i] = pixelByte(i);
                return result;
            });
    }

    void expectUndecoded()
    {
        const MessageLog log;
        decoder->parseIDHeadImage(wlt.data(), bmp.data());
        EXPECT_THAT(log.debugTexts(), ElementsAre("解码头像数据失败!"));
        EXPECT_TRUE(bmp.holdOnly(UNTOUCHED));
    }

    StrictClosedLibrary library;
    Decoder decoder;
    GuardedBytes wlt{1024, GetParam(), 'w'};
    GuardedBytes bmp{BMP_SIZE, GetParam(), UNTOUCHED};
};

INSTANTIATE_TEST_SUITE_P(GuardPages, Photo, testing::ValuesIn(GUARD_SIDES));

} // namespace

TEST_P(Photo, DecodedPixels_AreABmpFileWithTheDocumentedHead)
{
    expectUnpack(1);
    const MessageLog log;
    decoder->parseIDHeadImage(wlt.data(), bmp.data());
    EXPECT_THAT(log.texts(), IsEmpty());
    EXPECT_THAT(std::vector<int>(bmp.begin(), bmp.begin() + 54),
                ElementsAre('B', 'M', 0xce, 0x97, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0,  //
                            40, 0, 0, 0, 102, 0, 0, 0, 126, 0, 0, 0, 1, 0, 24, 0, //
                            0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                            0));
}

TEST_P(Photo, AnyResultButOne_IsLoggedAndLeavesTheOutput)
{
    for (const int result : {0, -1, 2, 144, -2147483647 - 1}) {
        expectUnpack(result);
        expectUndecoded();
    }
}

TEST_P(Photo, DecoderThatThrows_IsLoggedAndLeavesTheOutput)
{
    EXPECT_CALL(library, unpack(_, _, 310))
        .WillOnce([](unsigned char *, unsigned char *, int) -> int {
            throw std::runtime_error("out of order");
        });
    expectUndecoded();
}

TEST_P(Photo, NullPointers_AreLoggedAndNothingIsDecoded)
{
    const MessageLog log;
    decoder->parseIDHeadImage(nullptr, bmp.data());
    decoder->parseIDHeadImage(wlt.data(), nullptr);
    EXPECT_THAT(log.texts(), ElementsAre("解码头像数据失败!", "解码头像数据失败!"));
    EXPECT_TRUE(bmp.holdOnly(UNTOUCHED));
}
