// The drawn portraits and the two forms in which they are handed out.

#include <algorithm>
#include <set>

#include <gmock/gmock.h>

#include "common/card_records.h"
#include "simulator/card/card_library.h"
#include "simulator/card/card_media.h"
#include "simulator/card/portrait.h"

using namespace simulator;

namespace
{

constexpr Rgb WHITE = {255, 255, 255};
constexpr int FIRST_ROW = 54;
constexpr int STRIDE = 308;

int byteAt(const QByteArray &bytes, int offset)
{
    return static_cast<unsigned char>(bytes.at(offset));
}

int numberAt(const QByteArray &bytes, int offset, int size)
{
    int number = 0;
    for (int i = size - 1; i >= 0; --i) {
        number = number * 256 + byteAt(bytes, offset + i);
    }
    return number;
}

CardDescription builtIn(const QString &name)
{
    DescriptionError error;
    return loadCard(name, &error).value_or(CardDescription());
}

// Every white pixel that can be reached from the top left corner over white ones.
std::size_t connectedWhite(const PhotoImage &image)
{
    std::set<std::pair<int, int>> reached = {{0, 0}};
    std::vector<std::pair<int, int>> open = {{0, 0}};
    while (!open.empty()) {
        const auto [x, y] = open.back();
        open.pop_back();
        for (const auto &[dx, dy] :
             {std::pair(1, 0), std::pair(-1, 0), std::pair(0, 1), std::pair(0, -1)}) {
            const std::pair<int, int> next = {x + dx, y + dy};
            const bool inside = next.first >= 0 && next.first < PHOTO_WIDTH && next.second >= 0 &&
                                next.second < PHOTO_HEIGHT;
            if (inside && image.at(next.first, next.second) == WHITE &&
                reached.insert(next).second) {
                open.push_back(next);
            }
        }
    }
    return reached.size();
}

} // namespace

TEST(Portrait, sameSeed_givesTheSamePixels)
{
    EXPECT_TRUE(drawPortrait(5, Hairdresser::Men).pixels ==
                drawPortrait(5, Hairdresser::Men).pixels);
}

TEST(Portrait, drawnOnAnyMachine_hasTheKnownChecksum)
{
    // FNV-1a over the pixels, the same on every processor. A change of the drawing changes it.
    std::uint32_t hash = 2166136261U;
    for (std::uint32_t seed = 0; seed < 20; ++seed) {
        for (const char byte : pixelRows(drawPortrait(seed, Hairdresser::Women))) {
            hash = (hash ^ static_cast<unsigned char>(byte)) * 16777619U;
        }
    }
    EXPECT_EQ(hash, 4145645540U);
}

TEST(Portrait, manySeeds_giveManyLooks)
{
    std::set<QByteArray> looks;
    for (std::uint32_t seed = 0; seed < 100; ++seed) {
        looks.insert(pixelRows(drawPortrait(seed, Hairdresser::Men)));
    }
    EXPECT_EQ(looks.size(), 100U);
}

TEST(Portrait, exactWhite_isTheBackgroundAndNothingInsideThePerson)
{
    for (std::uint32_t seed = 0; seed < 60; ++seed) {
        const PhotoImage image = drawPortrait(seed, Hairdresser::Women);
        const auto white = std::count(image.pixels.begin(), image.pixels.end(), WHITE);
        EXPECT_EQ(static_cast<std::size_t>(white), connectedWhite(image)) << seed;
        EXPECT_GT(white, 3000) << seed;
        EXPECT_LT(white, 8500) << seed;
    }
}

TEST(Portrait, builtInCards_allLookDifferent)
{
    std::set<QByteArray> photos;
    for (const QString &name : builtInCardNames()) {
        photos.insert(photoBmpFile(builtIn(name)));
    }
    EXPECT_EQ(static_cast<int>(photos.size()), builtInCardNames().size());
}

TEST(Portrait, seedInTheDescription_decidesTheLook)
{
    CardDescription card = builtIn(QStringLiteral("resident"));
    const PhotoImage byNumber = portraitOf(card);
    card.photoSeed = 12;
    EXPECT_TRUE(portraitOf(card).pixels == drawPortrait(12, Hairdresser::Women).pixels);
    EXPECT_FALSE(portraitOf(card).pixels == byNumber.pixels);
}

TEST(PhotoForms, bmpFile_hasTheHeaderOfAPhotoArea)
{
    const QByteArray file = bmpFile(PhotoImage());
    ASSERT_EQ(file.size(), int(IDCARD_PHOTO_SIZE));
    EXPECT_TRUE(file.startsWith("BM"));
    EXPECT_EQ(numberAt(file, 2, 4), 38862);
    EXPECT_EQ(numberAt(file, 6, 4), 0);
    EXPECT_EQ(numberAt(file, 10, 4), FIRST_ROW);
    EXPECT_EQ(numberAt(file, 14, 4), 40);
    EXPECT_EQ(numberAt(file, 18, 4), 102);
    EXPECT_EQ(numberAt(file, 22, 4), 126);
    EXPECT_EQ(numberAt(file, 26, 2), 1);
    EXPECT_EQ(numberAt(file, 28, 2), 24);
    for (int offset = 30; offset < FIRST_ROW; ++offset) {
        EXPECT_EQ(byteAt(file, offset), 0) << offset;
    }
}

TEST(PhotoForms, bmpFile_storesTheTopRowLastAndBlueFirst)
{
    PhotoImage image;
    image.at(0, 0) = {1, 2, 3};
    image.at(101, 125) = {4, 5, 6};
    const QByteArray file = bmpFile(image);
    const int topLeft = FIRST_ROW + 125 * STRIDE;
    EXPECT_EQ(file.mid(topLeft, 3), QByteArray("\3\2\1"));
    EXPECT_EQ(file.mid(FIRST_ROW + 101 * 3, 5), QByteArray("\6\5\4\0\0", 5));
}

TEST(PhotoForms, pixelRowsWithTheirBytesExchangedUnderABmpHeader_giveTheBmpFilesPixels)
{
    const PhotoImage image = drawPortrait(9, Hairdresser::Women);
    const QByteArray file = bmpFile(image);
    const QByteArray rows = pixelRows(image);
    ASSERT_EQ(rows.size(), 38556);
    for (int y = 0; y < PHOTO_HEIGHT; ++y) {
        for (int x = 0; x < PHOTO_WIDTH; ++x) {
            const int inRows = (y * PHOTO_WIDTH + x) * 3;
            const int inFile = FIRST_ROW + y * STRIDE + x * 3;
            ASSERT_EQ(rows.at(inRows), file.at(inFile + 2));
            ASSERT_EQ(rows.at(inRows + 1), file.at(inFile + 1));
            ASSERT_EQ(rows.at(inRows + 2), file.at(inFile));
        }
    }
}
