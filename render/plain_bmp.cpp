#include "render/plain_bmp.h"

#include <cstring>

#include <QtEndian>

namespace
{

constexpr int FILE_HEADER_SIZE = 14;
constexpr int INFO_HEADER_SIZE = 40;
constexpr QRgb OPAQUE = 0xff000000;

/** Where the pixels of a plain BMP file lie: rows from the bottom up, blue, green, red. */
struct PlainBmp {
    const uchar *bottomRow;
    int width;
    int height;
    int bytesPerPixel; ///< 3 or 4
    int bytesPerRow;
    int dotsPerMeterX; ///< 0: not given
    int dotsPerMeterY;
};

/** Reads the headers at `data`; nothing unless they describe a whole plain BMP file. */
std::optional<PlainBmp> plainBmp(const uchar *data, qint64 size)
{
    if (data == nullptr || size < FILE_HEADER_SIZE + INFO_HEADER_SIZE ||
        std::memcmp(data, "BM", 2) != 0)
        return std::nullopt;
    const auto offset = qFromLittleEndian<quint32>(data + 10);
    const auto infoSize = qFromLittleEndian<quint32>(data + 14);
    const auto width = qFromLittleEndian<qint32>(data + 18);
    const auto height = qFromLittleEndian<qint32>(data + 22);
    const auto planes = qFromLittleEndian<quint16>(data + 26);
    const auto bits = qFromLittleEndian<quint16>(data + 28);
    const auto compression = qFromLittleEndian<quint32>(data + 30);
    constexpr int LARGEST = 4096; // of a side; no card is larger
    if (infoSize != INFO_HEADER_SIZE || planes != 1 || compression != 0 ||
        (bits != 24 && bits != 32) || width <= 0 || width > LARGEST || height <= 0 ||
        height > LARGEST)
        return std::nullopt;
    const int bytesPerRow = (width * bits / 8 + 3) / 4 * 4;
    if (offset < FILE_HEADER_SIZE + INFO_HEADER_SIZE || offset > size ||
        size - offset < static_cast<qint64>(bytesPerRow) * height)
        return std::nullopt;
    const auto dotsPerMeterX = qFromLittleEndian<qint32>(data + 38);
    const auto dotsPerMeterY = qFromLittleEndian<qint32>(data + 42);
    return PlainBmp{data + offset, width,         height,       bits / 8,
                    bytesPerRow,   dotsPerMeterX, dotsPerMeterY};
}

/** Copies a row of 4-byte pixels, whose fourth byte says nothing. */
void copyRow(const uchar *source, QRgb *target, int width)
{
    for (int x = 0; x < width; ++x, source += 4)
        target[x] = qFromLittleEndian<quint32>(source) | OPAQUE;
}

/** Widens a row of 3-byte pixels, four of them from three words at a time. */
void widenRow(const uchar *source, QRgb *target, int width)
{
    int x = 0;
    for (; x + 4 <= width; x += 4, source += 12) {
        const auto first = qFromLittleEndian<quint32>(source);
        const auto second = qFromLittleEndian<quint32>(source + 4);
        const auto third = qFromLittleEndian<quint32>(source + 8);
        target[x] = first | OPAQUE;
        target[x + 1] = first >> 24 | second << 8 | OPAQUE;
        target[x + 2] = second >> 16 | third << 16 | OPAQUE;
        target[x + 3] = third >> 8 | OPAQUE;
    }
    for (; x < width; ++x, source += 3)
        target[x] = qRgb(source[2], source[1], source[0]);
}

QImage imageOf(const PlainBmp &bmp)
{
    QImage image(bmp.width, bmp.height, QImage::Format_RGB32);
    if (image.isNull())
        qBadAlloc(); // throws; nothing else can be wrong with a size that was checked
    image.setDotsPerMeterX(bmp.dotsPerMeterX); // 0 leaves the screen's
    image.setDotsPerMeterY(bmp.dotsPerMeterY);
    const auto convertRow = bmp.bytesPerPixel == 4 ? copyRow : widenRow;
    for (int y = 0; y < bmp.height; ++y) {
        auto *const target = reinterpret_cast<QRgb *>(image.scanLine(bmp.height - 1 - y));
        convertRow(bmp.bottomRow + static_cast<qptrdiff>(y) * bmp.bytesPerRow, target, bmp.width);
    }
    return image;
}

} // namespace

std::optional<QImage> plainBmpImage(const uchar *data, qint64 size)
{
    const auto bmp = plainBmp(data, size);
    if (!bmp)
        return std::nullopt;
    return imageOf(*bmp);
}
