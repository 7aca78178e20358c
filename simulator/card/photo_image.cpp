// Writes a photo as a BMP file and as bare rows.

#include "simulator/card/photo_image.h"

#include <QtEndian>

#include "common/card_records.h"

namespace simulator
{

namespace
{

constexpr int HEADER_BYTES = 54;
constexpr int ROW_BYTES = PHOTO_WIDTH * 3;
constexpr int STRIDE = (ROW_BYTES + 3) / 4 * 4;

static_assert(HEADER_BYTES + STRIDE * PHOTO_HEIGHT == IDCARD_PHOTO_SIZE);

template <typename Number>
void append(QByteArray *bytes, Number number)
{
    const Number little = qToLittleEndian(number);
    bytes->append(reinterpret_cast<const char *>(&little), int(sizeof little));
}

QByteArray bmpHeader()
{
    constexpr quint32 INFO_HEADER_BYTES = 40;
    constexpr quint16 PLANES = 1;
    constexpr quint16 BITS_PER_PIXEL = 24;

    QByteArray header("BM");
    append(&header, quint32(IDCARD_PHOTO_SIZE));
    append(&header, quint32(0)); // reserved
    append(&header, quint32(HEADER_BYTES));
    append(&header, INFO_HEADER_BYTES);
    append(&header, qint32(PHOTO_WIDTH));
    append(&header, qint32(PHOTO_HEIGHT));
    append(&header, PLANES);
    append(&header, BITS_PER_PIXEL);
    // No compression; image size, resolutions and counts of colours are not given.
    return header.leftJustified(HEADER_BYTES, '\0');
}

} // namespace

QByteArray bmpFile(const PhotoImage &image)
{
    QByteArray file = bmpHeader();
    file.reserve(int(IDCARD_PHOTO_SIZE));
    for (int y = PHOTO_HEIGHT - 1; y >= 0; --y) {
        for (int x = 0; x < PHOTO_WIDTH; ++x) {
            const Rgb &pixel = image.at(x, y);
            file.append(char(pixel.blue)).append(char(pixel.green)).append(char(pixel.red));
        }
        file.append(STRIDE - ROW_BYTES, '\0');
    }
    return file;
}

QByteArray pixelRows(const PhotoImage &image)
{
    QByteArray rows;
    rows.reserve(PHOTO_PIXEL_BYTES);
    for (int y = PHOTO_HEIGHT - 1; y >= 0; --y) {
        for (int x = 0; x < PHOTO_WIDTH; ++x) {
            const Rgb &pixel = image.at(x, y);
            rows.append(char(pixel.red)).append(char(pixel.green)).append(char(pixel.blue));
        }
    }
    return rows;
}

} // namespace simulator
