#pragma once

// The photo of a card as pixels, and the two forms in which a photo decoder hands them out.

#include <cstddef>
#include <cstdint>
#include <vector>

#include <QByteArray>

namespace simulator
{

struct Rgb {
    std::uint8_t red;
    std::uint8_t green;
    std::uint8_t blue;
};

inline bool operator==(const Rgb &left, const Rgb &right)
{
    return left.red == right.red && left.green == right.green && left.blue == right.blue;
}

constexpr int PHOTO_WIDTH = 102;
constexpr int PHOTO_HEIGHT = 126;

constexpr std::size_t PHOTO_PIXELS = std::size_t{PHOTO_WIDTH} * PHOTO_HEIGHT;

/** Where the pixel stands among those of a photo stored row after row. */
constexpr std::size_t photoIndex(int x, int y)
{
    return static_cast<std::size_t>(y) * PHOTO_WIDTH + static_cast<std::size_t>(x);
}

/** Bytes of the photo as bare rows, three a pixel. */
constexpr int PHOTO_PIXEL_BYTES = PHOTO_WIDTH * PHOTO_HEIGHT * 3;

/** 126 rows of 102 pixels, top row first. */
struct PhotoImage {
    std::vector<Rgb> pixels = std::vector<Rgb>(PHOTO_PIXELS, Rgb{255, 255, 255});

    [[nodiscard]] Rgb &at(int x, int y) { return pixels[photoIndex(x, y)]; }
    [[nodiscard]] const Rgb &at(int x, int y) const { return pixels[photoIndex(x, y)]; }
};

/** The photo as a BMP file of 38862 bytes, bottom row first as such files are. */
QByteArray bmpFile(const PhotoImage &image);

/**
 * The photo as bare rows of red, green, blue. The bottom row comes first: whoever puts these rows
 * behind the header of a BMP file, without turning them, has the picture upright.
 */
QByteArray pixelRows(const PhotoImage &image);

} // namespace simulator
