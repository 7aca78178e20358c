// The drawn portraits: their files, and which card has which.

#include <set>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "simulator/card/card_media.h"
#include "simulator/card/portrait.h"
#include "tests/simulator/built_in_card.h"

using namespace simulator;

namespace
{

constexpr int WIDTH = 102;
constexpr int HEIGHT = 126;
constexpr int FIRST_ROW = 54;
constexpr int STRIDE = 308;

int numberAt(const QByteArray &bytes, int offset, int size)
{
    int number = 0;
    for (int i = size - 1; i >= 0; --i)
        number = number * 256 + static_cast<unsigned char>(bytes.at(offset + i));
    return number;
}

using Pixel = std::pair<int, int>;

// Of the colours that the resident card's picture lets through.
bool isLetThrough(const QByteArray &file, const Pixel &pixel)
{
    const QByteArray colour =
        file.mid(FIRST_ROW + (HEIGHT - 1 - pixel.second) * STRIDE + pixel.first * 3, 3);
    return colour == QByteArray(3, '\xFF') || colour == QByteArray(3, '\xFE');
}

std::set<Pixel> letThrough(const QByteArray &file)
{
    std::set<Pixel> pixels;
    for (int y = 0; y < HEIGHT; ++y)
        for (int x = 0; x < WIDTH; ++x)
            if (isLetThrough(file, {x, y}))
                pixels.insert({x, y});
    return pixels;
}

// Those that are connected with the top left corner.
std::set<Pixel> background(const QByteArray &file)
{
    std::set<Pixel> reached = {{0, 0}};
    std::vector<Pixel> open = {{0, 0}};
    while (!open.empty()) {
        const auto [x, y] = open.back();
        open.pop_back();
        for (const Pixel &next :
             {Pixel(x + 1, y), Pixel(x - 1, y), Pixel(x, y + 1), Pixel(x, y - 1)}) {
            const bool isInside =
                next.first >= 0 && next.first < WIDTH && next.second >= 0 && next.second < HEIGHT;
            if (isInside && isLetThrough(file, next) && reached.insert(next).second)
                open.push_back(next);
        }
    }
    return reached;
}

class Portrait : public testing::TestWithParam<int>
{
protected:
    const QByteArray file = portraitFile(static_cast<std::uint8_t>(GetParam()));
};

INSTANTIATE_TEST_SUITE_P(Every, Portrait, testing::Range(0, int{PORTRAITS}));

} // namespace

TEST_P(Portrait, File_HasTheHeaderOfAPhoto)
{
    ASSERT_EQ(file.size(), 38862);
    EXPECT_TRUE(file.startsWith("BM"));
    EXPECT_EQ(numberAt(file, 2, 4), 38862);
    EXPECT_EQ(numberAt(file, 6, 4), 0);
    EXPECT_EQ(numberAt(file, 10, 4), FIRST_ROW);
    EXPECT_EQ(numberAt(file, 14, 4), 40);
    EXPECT_EQ(numberAt(file, 18, 4), WIDTH);
    EXPECT_EQ(numberAt(file, 22, 4), HEIGHT);
    EXPECT_EQ(numberAt(file, 26, 2), 1);
    EXPECT_EQ(numberAt(file, 28, 2), 24);
    for (int offset = 30; offset < FIRST_ROW; ++offset)
        EXPECT_EQ(file.at(offset), 0) << offset;
    for (int row = 0; row < HEIGHT; ++row)
        EXPECT_EQ(file.mid(FIRST_ROW + row * STRIDE + WIDTH * 3, 2), QByteArray(2, '\0')) << row;
}

TEST_P(Portrait, LetsNothingThroughButTheBackground)
{
    ASSERT_EQ(file.size(), 38862);
    EXPECT_EQ(letThrough(file), background(file));
    EXPECT_GT(background(file).size(), 5000U);
    EXPECT_LT(background(file).size(), 8500U);
}

TEST(Portraits, AllAndThoseOfBuiltInCards_LookDifferent)
{
    std::set<QByteArray> files;
    for (unsigned int portrait = 0; portrait < PORTRAITS; ++portrait)
        files.insert(portraitFile(static_cast<std::uint8_t>(portrait)));
    EXPECT_EQ(files.size(), 32U);
    std::set<QByteArray> photos;
    for (const QString &name : builtInCardNames())
        photos.insert(photoBmpFile(builtInCard(name)));
    EXPECT_EQ(static_cast<int>(photos.size()), builtInCardNames().size());
}

TEST(Portraits, Seed_ChoosesAmongThoseOfTheSex)
{
    CardDescription card = builtInCard(QStringLiteral("resident"));
    for (const auto &[seed, number] :
         {std::pair(0U, 0), std::pair(15U, 15), std::pair(16U, 0), std::pair(4294967295U, 15)}) {
        card.photoSeed = seed;
        card.sex = QStringLiteral("2");
        EXPECT_EQ(portraitOf(card), number) << seed;
        for (const char *sex : {"0", "1", "9"}) {
            card.sex = QLatin1String(sex);
            EXPECT_EQ(portraitOf(card), 16 + number) << seed << " " << sex;
        }
    }
}

TEST(Portraits, WithoutASeed_FollowFromTheNumber)
{
    CardDescription card = builtInCard(QStringLiteral("resident"));
    card.photoSeed.reset();
    std::set<int> chosen;
    for (int i = 0; i < 200; ++i) {
        card.idNumber = QStringLiteral("99000019900307%1").arg(i, 4, 10, QLatin1Char('0'));
        chosen.insert(portraitOf(card));
        EXPECT_EQ(portraitOf(card), portraitOf(card));
    }
    EXPECT_EQ(chosen.size(), 16U);
}
