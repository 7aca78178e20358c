// Rows of pixels of any size, with lengths that fit and lengths that lie.

#include "fuzz/fuzz_target.h"

#include <cstring>
#include <vector>

#include "common/common.h"

namespace
{

/** Numbers of 16 bits, signed, from the input; 0 when it is used up. */
class Numbers
{
public:
    Numbers(const std::uint8_t *data, std::size_t size) : m_data(data), m_left(size) {}

    int next()
    {
        if (m_left < 2)
            return 0;
        const auto number = static_cast<std::int16_t>(m_data[0] + 256 * m_data[1]);
        m_data += 2;
        m_left -= 2;
        return number;
    }

private:
    const std::uint8_t *m_data;
    std::size_t m_left;
};

constexpr std::int64_t BYTES_PER_PIXEL = 3;
constexpr std::int64_t LARGEST_PICTURE = 1 << 14; // more than a photo's

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Numbers numbers(data, size);
    // Small sizes mostly; every bit of the large ones now and then.
    const int scale = numbers.next() % 16 == 0 ? 40000 : 1;
    const int width = numbers.next() * scale;
    const int height = numbers.next() * scale;
    const int sourceError = numbers.next();
    const int roomError = numbers.next();
    const std::int64_t pixels = width > 0 && height > 0 ? std::int64_t(width) * height : 0;
    const bool isHuge = pixels > LARGEST_PICTURE;
    const std::int64_t source = isHuge ? sourceError : BYTES_PER_PIXEL * pixels + sourceError;
    const std::int64_t stride = (BYTES_PER_PIXEL * width + 3) / 4 * 4;
    const std::int64_t needed = isHuge || pixels == 0 ? 0 : stride * height;
    const std::int64_t room = needed + roomError;
    if (source < 0 || room < 0 || source > 4 * LARGEST_PICTURE || room > 8 * LARGEST_PICTURE)
        return 0;

    // What the extra pixel of the last row may read and write beyond.
    std::vector<unsigned char> rows(static_cast<std::size_t>(source) + 3, 0x55);
    std::vector<unsigned char> out(static_cast<std::size_t>(room) + 1, 0xAA);
    const std::vector<unsigned char> before = out;
    int length = static_cast<int>(room);
    const int result =
        CCommon::Bgr2Bmp(out.data(), length, rows.data(), static_cast<int>(source), width, height);
    demand(result == 0 || result == -1 || result == -2);
    if (result != 0)
        demand(out == before && length == room);
    else if (pixels > 0)
        demand(!isHuge && sourceError == 0 && length == needed);
    return 0;
}
