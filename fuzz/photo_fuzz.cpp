// The photo block (and the prints of a card without prints), with a decoder that makes of it what
// the input says.

#include "fuzz/fuzz_target.h"

#include <algorithm>

#include <QByteArray>

#include "common/card_records.h"
#include "common/closed_functions.h"
#include "fuzz/input.h"
#include "iddata/iddata.h"

namespace
{

constexpr int PIXELS_SIZE = 3 * 102 * 126;

bool decodes(const unsigned char *block)
{
    return block[0] % 4 != 0;
}

} // namespace

// In place of the photo decoder: repeats the block all over the pixels, or decodes nothing.
int unpack(unsigned char *src, unsigned char *dst, int mode)
{
    demand(mode == WLT_MODE_PIXELS);
    if (!decodes(src))
        return WLT_SUCCESS + 1 + src[1];
    for (int i = 0; i < PIXELS_SIZE; ++i)
        dst[i] = src[static_cast<unsigned int>(i) % IDCARD_COMPRESSED_PHOTO_SIZE];
    return WLT_SUCCESS;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr unsigned char BEFORE = 0xA5;
    const auto block = blockOf(data, size, IDCARD_COMPRESSED_PHOTO_SIZE);
    const std::unique_ptr<unsigned char[]> picture(new unsigned char[IDCARD_PHOTO_SIZE]);
    std::fill_n(picture.get(), IDCARD_PHOTO_SIZE, BEFORE);
    const auto isUntouched = [&picture] {
        return std::all_of(picture.get(), picture.get() + IDCARD_PHOTO_SIZE,
                           [](unsigned char byte) { return byte == BEFORE; });
    };
    QByteArray noRecord;
    CIdData decoder(noRecord, FP_INFO_NONE);
    if (size == 0) {
        decoder.parseIDHeadImage(nullptr, picture.get());
        decoder.parseIDHeadImage(block.get(), nullptr);
        demand(isUntouched());
        decoder.saveFpRawDataToFile(FP_INFO_NONE, nullptr); // writes no file
        decoder.saveFpRawDataToFile(static_cast<FP_INFO_TYPE>(99), nullptr);
    }
    decoder.parseIDHeadImage(block.get(), picture.get());
    if (decodes(block.get()))
        demand(picture[0] == 'B' && picture[1] == 'M');
    else
        demand(isUntouched());
    return 0;
}
