// The photo decoder's one function as the simulator answers it.

#include <vector>

#include <gmock/gmock.h>

#include "common/card_records.h"
#include "common/closed_functions.h"
#include "simulator/simulator.h"
#include "tests/simulator/reader_session.h"

using testing::Each;

namespace
{

std::vector<unsigned char> photoOf(const char *card)
{
    EXPECT_EQ(idcard_simulator_put_card(card, nullptr, 0), 0);
    EXPECT_EQ(idcard_simulator_set_faults("", nullptr, 0), 0);
    ReadAnswer answer = readOnce();
    answer.photo.resize(answer.photoLength);
    return answer.photo;
}

constexpr std::size_t GUARD = 64;

// Room for the largest result and a guard behind it.
std::vector<unsigned char> untouched()
{
    std::vector<unsigned char> buffer(IDCARD_PHOTO_SIZE + GUARD, 0xEE);
    return buffer;
}

} // namespace

TEST(Unpack, ModeBmpFile_WritesAFileOf38862Bytes)
{
    std::vector<unsigned char> photo = photoOf("resident-compressed-photo");
    ASSERT_EQ(photo.size(), IDCARD_COMPRESSED_PHOTO_SIZE);
    std::vector<unsigned char> bmp = untouched();
    EXPECT_EQ(unpack(photo.data(), bmp.data(), 106), 1);
    EXPECT_EQ(bmp[0], 'B');
    EXPECT_EQ(bmp[1], 'M');
    EXPECT_NE(bmp[38861], 0xEE);
    EXPECT_EQ(bmp[38862], 0xEE);
}

TEST(Unpack, ModePixels_Writes38556BytesThatAreTheFilesPixelsWithRedFirst)
{
    std::vector<unsigned char> photo = photoOf("resident-compressed-photo");
    std::vector<unsigned char> bmp = untouched();
    std::vector<unsigned char> rows = untouched();
    ASSERT_EQ(unpack(photo.data(), bmp.data(), 106), 1);
    ASSERT_EQ(unpack(photo.data(), rows.data(), 310), 1);
    EXPECT_EQ(rows[38556], 0xEE);
    for (std::size_t y = 0; y < 126; ++y) {
        for (std::size_t x = 0; x < 102; ++x) {
            for (std::size_t part = 0; part < 3; ++part)
                ASSERT_EQ(rows[y * 306 + x * 3 + part], bmp[54 + y * 308 + x * 3 + 2 - part]);
        }
    }
}

TEST(Unpack, OtherMode_FailsAndWritesNothing)
{
    std::vector<unsigned char> photo = photoOf("resident-compressed-photo");
    for (const int mode : {0, 1, -1, 105, 309, 311}) {
        std::vector<unsigned char> out = untouched();
        EXPECT_NE(unpack(photo.data(), out.data(), mode), 1);
        EXPECT_THAT(out, Each(0xEE));
    }
}

TEST(Unpack, NullPointer_Fails)
{
    std::vector<unsigned char> photo = photoOf("resident-compressed-photo");
    std::vector<unsigned char> out = untouched();
    EXPECT_NE(unpack(nullptr, out.data(), 106), 1);
    EXPECT_NE(unpack(photo.data(), nullptr, 106), 1);
    EXPECT_THAT(out, Each(0xEE));
}

TEST(Unpack, DataThatIsNoCompressedPhoto_FailsAndWritesNothing)
{
    std::vector<unsigned char> bmpFile = photoOf("resident");
    std::vector<unsigned char> zeros(IDCARD_COMPRESSED_PHOTO_SIZE);
    std::vector<unsigned char> damaged = photoOf("resident-compressed-photo");
    damaged[700] = static_cast<unsigned char>(damaged[700] ^ 0x10U);
    for (std::vector<unsigned char> *data : {&bmpFile, &zeros, &damaged}) {
        for (const int mode : {106, 310}) {
            std::vector<unsigned char> out = untouched();
            EXPECT_NE(unpack(data->data(), out.data(), mode), 1);
            EXPECT_THAT(out, Each(0xEE));
        }
    }
}
