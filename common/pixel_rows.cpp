// Pixel rows as a photo decoder delivers them, as the rows of a BMP file.

#include "common/common.h"

#include <algorithm>
#include <cstdint>

namespace
{

constexpr std::int64_t PIXEL_SIZE = 3;
constexpr std::int64_t ROW_ALIGNMENT = 4;

} // namespace

int CCommon::Bgr2Bmp(unsigned char *dst, int &dstLen, const unsigned char *src, int srcLen,
                     int width, int height)
{
    // The largest product needs all 64 bits of an unsigned number.
    if (width < 0 || height < 0 || srcLen < 0 ||
        std::uint64_t{PIXEL_SIZE} * static_cast<unsigned>(width) * static_cast<unsigned>(height) !=
            static_cast<unsigned>(srcLen))
        return -1;
    const std::int64_t rowSize = PIXEL_SIZE * width;
    const std::int64_t stride = (rowSize + ROW_ALIGNMENT - 1) / ROW_ALIGNMENT * ROW_ALIGNMENT;
    const std::int64_t needed = stride * height;
    if (dstLen < needed)
        return -2;

    std::fill_n(dst, dstLen, static_cast<unsigned char>(0));
    // One byte beyond the rows is the caller's promise; more only where the capacity has it.
    const std::int64_t writable = std::max<std::int64_t>(dstLen, needed + 1);
    if (srcLen > 0) {
        for (std::int64_t y = 0; y < height; ++y) {
            // One pixel more than the row has, on purpose: files written so far hold the beginning
            // of the next row in their padding.
            for (std::int64_t x = 0; x <= width; ++x) {
                const unsigned char *const from = src + y * rowSize + x * PIXEL_SIZE;
                const std::int64_t to = y * stride + x * PIXEL_SIZE;
                for (std::int64_t byte = 0; byte < PIXEL_SIZE && to + byte < writable; ++byte)
                    dst[to + byte] = from[PIXEL_SIZE - 1 - byte];
            }
        }
    }
    dstLen = static_cast<int>(needed);
    return 0;
}
