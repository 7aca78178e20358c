// The photo code: what goes in comes out, and nothing else decodes.

#include <random>

#include <gmock/gmock.h>

#include "common/card_records.h"
#include "simulator/card/photo_codec.h"
#include "simulator/card/portrait.h"

using namespace simulator;

namespace
{

PhotoImage portrait(std::uint32_t seed)
{
    return drawPortrait(seed, Hairdresser::Women);
}

QByteArray compressed(const PhotoImage &image)
{
    const std::optional<QByteArray> data = compressPhoto(image);
    EXPECT_TRUE(data);
    return data.value_or(QByteArray());
}

std::uint32_t fnv(const QByteArray &bytes)
{
    std::uint32_t hash = 2166136261U;
    for (const char byte : bytes) {
        hash = (hash ^ static_cast<unsigned char>(byte)) * 16777619U;
    }
    return hash;
}

// As a forger would: the checksum made right again after the rest was changed.
QByteArray withChecksum(QByteArray data)
{
    const std::uint32_t sum = fnv(data.mid(8));
    for (int i = 0; i < 4; ++i) {
        data[4 + i] = static_cast<char>((sum >> (8 * i)) & 0xFFU);
    }
    return data;
}

// A photo of `colours` colours, one after the other in bands.
PhotoImage bands(int colours)
{
    PhotoImage image;
    for (int y = 0; y < PHOTO_HEIGHT; ++y) {
        for (int x = 0; x < PHOTO_WIDTH; ++x) {
            const int band = (y * PHOTO_WIDTH + x) * colours / (PHOTO_WIDTH * PHOTO_HEIGHT);
            image.at(x, y) = {static_cast<std::uint8_t>(band), 7, 9};
        }
    }
    return image;
}

} // namespace

TEST(PhotoCodec, portraitsOfManySeeds_fitAndComeBackUnchanged)
{
    for (std::uint32_t seed = 0; seed < 300; ++seed) {
        const PhotoImage image =
            drawPortrait(seed, seed % 2 == 0 ? Hairdresser::Women : Hairdresser::Men);
        const std::optional<QByteArray> data = compressPhoto(image);
        ASSERT_TRUE(data) << seed;
        ASSERT_EQ(data->size(), int(IDCARD_COMPRESSED_PHOTO_SIZE));
        const std::optional<PhotoImage> back = decompressPhoto(*data);
        ASSERT_TRUE(back) << seed;
        ASSERT_TRUE(back->pixels == image.pixels) << seed;
    }
}

TEST(PhotoCodec, compressedPhoto_isNoBmpFile)
{
    EXPECT_FALSE(compressed(portrait(1)).startsWith("BM"));
}

TEST(PhotoCodec, photoOfOneColour_comesBack)
{
    const auto back = decompressPhoto(compressed(PhotoImage()));
    ASSERT_TRUE(back);
    EXPECT_TRUE(back->pixels == PhotoImage().pixels);
}

TEST(PhotoCodec, photoOfTheMostColours_fitsAndOneMoreIsRefused)
{
    const auto back = decompressPhoto(compressed(bands(128)));
    ASSERT_TRUE(back);
    EXPECT_TRUE(back->pixels == bands(128).pixels);
    EXPECT_FALSE(compressPhoto(bands(129)));
}

TEST(PhotoCodec, photoOfNoise_isRefusedBecauseItDoesNotFit)
{
    std::mt19937 random(1);
    PhotoImage image;
    for (Rgb &pixel : image.pixels) {
        pixel = {static_cast<std::uint8_t>(random() % 16), 0, 0};
    }
    EXPECT_FALSE(compressPhoto(image));
}

TEST(PhotoCodec, everyByteChanged_doesNotDecode)
{
    const QByteArray good = compressed(portrait(2));
    for (int i = 0; i < good.size(); ++i) {
        QByteArray bad = good;
        bad[i] = static_cast<char>(bad.at(i) ^ 1);
        EXPECT_FALSE(decompressPhoto(bad)) << i;
    }
}

TEST(PhotoCodec, wrongSize_doesNotDecode)
{
    const QByteArray good = compressed(portrait(3));
    EXPECT_FALSE(decompressPhoto(QByteArray()));
    EXPECT_FALSE(decompressPhoto(good.left(1023)));
    EXPECT_FALSE(decompressPhoto(good + '\0'));
}

TEST(PhotoCodec, junkBehindThePixelsUnderARightChecksum_doesNotDecode)
{
    QByteArray data = compressed(portrait(4));
    ASSERT_EQ(data.at(1023), '\0');
    EXPECT_TRUE(decompressPhoto(withChecksum(data)));
    data[1023] = 1;
    EXPECT_FALSE(decompressPhoto(withChecksum(data)));
}

TEST(PhotoCodec, impossibleHeadUnderARightChecksum_doesNotDecode)
{
    const QByteArray good = compressed(portrait(5));
    constexpr int VERSION = 8;
    constexpr int COLOURS = 9;
    constexpr int LENGTH_HIGH = 11;
    for (const auto &[offset, byte] :
         {std::pair(VERSION, 2), std::pair(COLOURS, 0), std::pair(COLOURS, 1),
          std::pair(COLOURS, 255), std::pair(LENGTH_HIGH, 255), std::pair(LENGTH_HIGH, 0)}) {
        QByteArray bad = good;
        bad[offset] = static_cast<char>(byte);
        EXPECT_FALSE(decompressPhoto(withChecksum(bad))) << offset << " " << byte;
    }
}

TEST(PhotoCodec, randomPixelsUnderARightChecksum_neverDecodeAndEndInTime)
{
    std::mt19937 random(7);
    const QByteArray good = compressed(portrait(6));
    for (int round = 0; round < 50; ++round) {
        QByteArray bad = good;
        for (int i = 12; i < bad.size(); ++i) {
            bad[i] = static_cast<char>(random() & 0xFFU);
        }
        EXPECT_FALSE(decompressPhoto(withChecksum(bad)));
    }
}
