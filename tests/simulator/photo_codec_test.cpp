// The stand-in for compressed photos: every portrait comes back, and nothing else decodes.

#include <set>

#include <gmock/gmock.h>

#include "simulator/card/card_media.h"
#include "simulator/card/photo_codec.h"
#include "simulator/card/portrait.h"
#include "tests/simulator/built_in_card.h"

using namespace simulator;

TEST(PhotoCodec, EveryPortrait_ComesBackAsItsFile)
{
    for (std::uint8_t portrait = 0; portrait < PORTRAITS; ++portrait) {
        const QByteArray data = compressPhoto(portrait, 0x89ABCDEFU);
        ASSERT_EQ(data.size(), 1024);
        EXPECT_FALSE(data.startsWith("BM"));
        EXPECT_EQ(decompressPhoto(data), portraitFile(portrait)) << int{portrait};
    }
}

TEST(PhotoCodec, CardsOfOnePortrait_HaveNoRunOfBytesInCommon)
{
    constexpr int HEAD = 21; // mark, portrait and seed
    constexpr int RUN = 4;
    const QByteArray one = compressPhoto(3, 1);
    const QByteArray other = compressPhoto(3, 2);
    for (int at = HEAD; at + RUN <= one.size(); ++at)
        EXPECT_FALSE(other.contains(one.mid(at, RUN))) << at;
}

TEST(PhotoCodec, BuiltInCards_HaveCompressedPhotosOfTheirOwn)
{
    std::set<QByteArray> photos;
    for (const QString &name : builtInCardNames())
        photos.insert(compressedPhoto(builtInCard(name)));
    EXPECT_EQ(static_cast<int>(photos.size()), builtInCardNames().size());
}

TEST(PhotoCodec, EveryByteChanged_DoesNotDecode)
{
    const QByteArray good = compressPhoto(2, 7);
    for (int i = 0; i < good.size(); ++i) {
        QByteArray bad = good;
        bad[i] = static_cast<char>(bad.at(i) ^ 1);
        EXPECT_TRUE(decompressPhoto(bad).isEmpty()) << i;
    }
}

TEST(PhotoCodec, WrongSize_DoesNotDecode)
{
    const QByteArray good = compressPhoto(3, 7);
    EXPECT_TRUE(decompressPhoto(QByteArray()).isEmpty());
    EXPECT_TRUE(decompressPhoto(good.left(1023)).isEmpty());
    EXPECT_TRUE(decompressPhoto(good + '\0').isEmpty());
}

TEST(PhotoCodec, PortraitThatThereIsNot_DoesNotDecode)
{
    for (const std::uint8_t portrait : {std::uint8_t{PORTRAITS}, std::uint8_t{255}})
        EXPECT_TRUE(decompressPhoto(compressPhoto(portrait, 7)).isEmpty()) << int{portrait};
}
