// CCommon::Bgr2Bmp: pixel rows of a photo decoder as the rows of a BMP file.

#include "common/common.h"
#include "tests/iddata/guarded_bytes.h"

#include <climits>
#include <numeric>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using testing::ElementsAre;

constexpr unsigned char UNTOUCHED = 0x5a;

struct Outcome {
    int result;
    int dstLen;
    std::vector<unsigned char> dst;
};

/** Turns bytes 1, 2, 3 ... into rows; `room` bytes of the destination may be written to. */
Outcome rowsOf(int width, int height, int capacity, std::size_t room, GuardedBytes::Side side)
{
    const int srcLen = 3 * width * height;
    // The extra pixel of the last row.
    GuardedBytes src(static_cast<std::size_t>(srcLen) + 3, side);
    std::iota(src.begin(), src.end(), static_cast<unsigned char>(1));
    GuardedBytes dst(room, side, UNTOUCHED);
    Outcome outcome{0, capacity, {}};
    outcome.result =
        CCommon::Bgr2Bmp(dst.data(), outcome.dstLen, src.data(), srcLen, width, height);
    outcome.dst.assign(dst.begin(), dst.end());
    return outcome;
}

} // namespace

class PixelRows : public testing::TestWithParam<GuardedBytes::Side>
{
};

INSTANTIATE_TEST_SUITE_P(GuardPages, PixelRows, testing::ValuesIn(GUARD_SIDES));

TEST_P(PixelRows, TwoRowsOfTwoPixels_AreExchangedAndPaddedWithTheNextRow)
{
    const Outcome outcome = rowsOf(2, 2, 16, 17, GetParam());
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.dstLen, 16);
    EXPECT_THAT(outcome.dst, ElementsAre(3, 2, 1, 6, 5, 4, /* padding */ 9, 8,      //
                                         9, 8, 7, 12, 11, 10, /* padding */ 15, 14, //
                                         /* beyond the rows */ 13));
}

TEST_P(PixelRows, RowsOfOnePixel_WriteOneByteBeyondAndNoMore)
{
    const Outcome outcome = rowsOf(1, 2, 8, 9, GetParam());
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.dstLen, 8);
    EXPECT_THAT(outcome.dst, ElementsAre(3, 2, 1, 6, 6, 5, 4, 9, /* beyond the rows */ 8));
}

TEST_P(PixelRows, RowsOfThreePixels_EndInsideTheirPadding)
{
    const Outcome outcome = rowsOf(3, 1, 12, 12, GetParam());
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.dstLen, 12);
    EXPECT_THAT(outcome.dst, ElementsAre(3, 2, 1, 6, 5, 4, 9, 8, 7, /* padding */ 12, 11, 10));
}

TEST_P(PixelRows, RowsWithoutPadding_WriteOneByteBeyondUnlessTheCapacityHasMore)
{
    const Outcome tight = rowsOf(4, 1, 12, 13, GetParam());
    EXPECT_THAT(tight.dst, ElementsAre(3, 2, 1, 6, 5, 4, 9, 8, 7, 12, 11, 10, 15));
    const Outcome wide = rowsOf(4, 1, 16, 16, GetParam());
    EXPECT_EQ(wide.dstLen, 12);
    EXPECT_THAT(wide.dst, ElementsAre(3, 2, 1, 6, 5, 4, 9, 8, 7, 12, 11, 10, 15, 14, 13, 0));
}

TEST_P(PixelRows, WholeCapacity_IsZeroed)
{
    const Outcome outcome = rowsOf(2, 1, 12, 14, GetParam());
    EXPECT_EQ(outcome.dstLen, 8);
    EXPECT_THAT(outcome.dst, ElementsAre(3, 2, 1, 6, 5, 4, 9, 8, /* beyond the rows */ 7, 0, 0, 0,
                                         /* beyond the capacity */ UNTOUCHED, UNTOUCHED));
}

TEST_P(PixelRows, PhotoOfACard_TakesItsBytesAndOneMore)
{
    constexpr int WIDTH = 102;
    constexpr int HEIGHT = 126;
    const Outcome outcome = rowsOf(WIDTH, HEIGHT, 38808, 38809, GetParam());
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.dstLen, 38808);
    // Byte n of the source is n + 1 of 256.
    const auto source = [](int at) { return static_cast<unsigned char>(at + 1); };
    for (int y = 0; y < HEIGHT; ++y) {
        const std::size_t row = std::size_t{308} * static_cast<std::size_t>(y);
        for (int x = 0; x < WIDTH; ++x)
            for (int byte = 0; byte < 3; ++byte)
                ASSERT_EQ(outcome.dst[row + static_cast<std::size_t>(3 * x + byte)],
                          source(306 * y + 3 * x + 2 - byte))
                    << x << ' ' << y << ' ' << byte;
        ASSERT_EQ(outcome.dst[row + 306], source(306 * (y + 1) + 2)) << y;
        ASSERT_EQ(outcome.dst[row + 307], source(306 * (y + 1) + 1)) << y;
    }
    EXPECT_EQ(outcome.dst[38808], source(38556));
}

TEST_P(PixelRows, SourceOfAnotherSize_GivesMinusOneAndWritesNothing)
{
    GuardedBytes src(38559, GetParam());
    GuardedBytes dst(38809, GetParam(), UNTOUCHED);
    for (const int srcLen : {38555, 38557, 0, -38556, -1, INT_MAX, INT_MIN}) {
        int dstLen = 38808;
        EXPECT_EQ(CCommon::Bgr2Bmp(dst.data(), dstLen, src.data(), srcLen, 102, 126), -1);
        EXPECT_EQ(dstLen, 38808);
        EXPECT_TRUE(dst.holdOnly(UNTOUCHED));
    }
}

TEST_P(PixelRows, CapacityTooSmall_GivesMinusTwoAndWritesNothing)
{
    GuardedBytes src(38559, GetParam());
    GuardedBytes dst(38809, GetParam(), UNTOUCHED);
    for (const int capacity : {38807, 1, 0, -1, INT_MIN}) {
        int dstLen = capacity;
        EXPECT_EQ(CCommon::Bgr2Bmp(dst.data(), dstLen, src.data(), 38556, 102, 126), -2);
        EXPECT_EQ(dstLen, capacity);
        EXPECT_TRUE(dst.holdOnly(UNTOUCHED));
    }
}

TEST(PixelRowsOfHostileSizes, NegativeSizesAndThoseWhoseProductOverflows_GiveMinusOne)
{
    struct {
        int srcLen;
        int width;
        int height;
    } const cases[] = {
        {0, 1 << 16, 1 << 16},       // 3 * 2^32
        {0, 0x40000000, 4},          // 3 * 2^32
        {-4, 0x55555554, 1},         // 2^32 - 4
        {0, 1 << 30, 1 << 30},       // 3 * 2^60
        {INT_MAX, INT_MAX, INT_MAX}, // the largest there is
        {3, INT_MAX, INT_MAX},       // 3, too, in 32 bits
        {3, -1, -1},
        {-3, -1, 1},
        {-3, 1, -1},
        {0, 0, -1},
        {0, INT_MIN, 0},
    };
    unsigned char byte = UNTOUCHED;
    for (const auto &c : cases) {
        int dstLen = 1;
        EXPECT_EQ(CCommon::Bgr2Bmp(&byte, dstLen, &byte, c.srcLen, c.width, c.height), -1)
            << c.width << ' ' << c.height;
        EXPECT_EQ(byte, UNTOUCHED);
        EXPECT_EQ(dstLen, 1);
    }
}

TEST(PixelRowsOfHostileSizes, PictureWithoutPixels_ReadsNothingAndZeroesTheCapacity)
{
    for (const auto &[width, height] :
         {std::pair(0, 0), std::pair(0, INT_MAX), std::pair(INT_MAX, 0), std::pair(5, 0)}) {
        unsigned char bytes[] = {UNTOUCHED, UNTOUCHED, UNTOUCHED};
        int dstLen = 2;
        EXPECT_EQ(CCommon::Bgr2Bmp(bytes, dstLen, nullptr, 0, width, height), 0);
        EXPECT_EQ(dstLen, 0);
        EXPECT_THAT(bytes, ElementsAre(0, 0, UNTOUCHED));
        EXPECT_EQ(CCommon::Bgr2Bmp(nullptr, dstLen, nullptr, 0, width, height), 0);
        int negative = -1;
        EXPECT_EQ(CCommon::Bgr2Bmp(nullptr, negative, nullptr, 0, width, height), -2);
    }
}

TEST(PixelRowsOfHostileSizes, RowsThatNeedMoreThanAnyCapacity_GiveMinusTwo)
{
    // A column of pixels that fits into an int, and its rows of four bytes that do not.
    unsigned char byte = UNTOUCHED;
    int dstLen = INT_MAX;
    EXPECT_EQ(CCommon::Bgr2Bmp(&byte, dstLen, &byte, 3 * 700000000, 1, 700000000), -2);
    EXPECT_EQ(byte, UNTOUCHED);
}
