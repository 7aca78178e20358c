// The frame of a compressed photo: head, palette, pixels, zeros up to 1024 bytes.

#include "simulator/card/photo_codec.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include <QtEndian>

#include "common/card_records.h"
#include "simulator/card/fnv.h"
#include "simulator/card/palette_coder.h"

namespace simulator
{

namespace
{

// Offsets in the head; numbers are little-endian.
constexpr int CHECKSUM_OFFSET = 4; // 32 bits, of everything from the version on
constexpr int VERSION_OFFSET = 8;
constexpr int COLOURS_OFFSET = 9; // size of the palette
constexpr int LENGTH_OFFSET = 10; // 16 bits, of the coded pixels
constexpr int HEAD_BYTES = 12;

constexpr char MAGIC[] = "SimP";
constexpr char VERSION = 1;
constexpr int BYTES_PER_COLOUR = 3;
constexpr int SIZE = IDCARD_COMPRESSED_PHOTO_SIZE;

// The colours of the image in the order of their first pixels, and every pixel as their index.
struct IndexedImage {
    std::vector<Rgb> palette;
    std::vector<std::uint8_t> indices;
};

std::optional<IndexedImage> indexed(const PhotoImage &image)
{
    IndexedImage result;
    result.indices.reserve(image.pixels.size());
    for (const Rgb &pixel : image.pixels) {
        const auto found = std::find(result.palette.begin(), result.palette.end(), pixel);
        const auto index = found - result.palette.begin();
        if (found == result.palette.end()) {
            if (index == MOST_COLOURS) {
                return std::nullopt;
            }
            result.palette.push_back(pixel);
        }
        result.indices.push_back(static_cast<std::uint8_t>(index));
    }
    return result;
}

quint32 checksum(const QByteArray &data)
{
    return fnv1a(data.mid(VERSION_OFFSET));
}

QByteArray coded(const IndexedImage &image, const QByteArray &pixels)
{
    QByteArray data(HEAD_BYTES, '\0');
    data.replace(0, int(sizeof MAGIC) - 1, MAGIC);
    data[VERSION_OFFSET] = VERSION;
    data[COLOURS_OFFSET] = static_cast<char>(image.palette.size());
    qToLittleEndian(static_cast<quint16>(pixels.size()), data.data() + LENGTH_OFFSET);
    for (const Rgb &colour : image.palette) {
        data.append(char(colour.red)).append(char(colour.green)).append(char(colour.blue));
    }
    return data.append(pixels);
}

// What the head says about the rest; nothing when the head or the checksum is wrong.
struct Layout {
    int colours;
    int pixelsOffset;
    int pixelBytes;
};

std::optional<Layout> layoutOf(const QByteArray &data)
{
    if (data.size() != SIZE || !data.startsWith(MAGIC) || data.at(VERSION_OFFSET) != VERSION ||
        qFromLittleEndian<quint32>(data.constData() + CHECKSUM_OFFSET) != checksum(data)) {
        return std::nullopt;
    }
    Layout layout = {};
    layout.colours = static_cast<std::uint8_t>(data.at(COLOURS_OFFSET));
    layout.pixelsOffset = HEAD_BYTES + layout.colours * BYTES_PER_COLOUR;
    layout.pixelBytes = qFromLittleEndian<quint16>(data.constData() + LENGTH_OFFSET);
    if (layout.colours < 1 || layout.colours > MOST_COLOURS ||
        layout.pixelsOffset + layout.pixelBytes > SIZE) {
        return std::nullopt;
    }
    return layout;
}

Rgb colourAt(const QByteArray &data, int index)
{
    const auto byte = [&](int part) {
        return static_cast<std::uint8_t>(data.at(HEAD_BYTES + index * BYTES_PER_COLOUR + part));
    };
    return {byte(0), byte(1), byte(2)};
}

} // namespace

std::optional<QByteArray> compressPhoto(const PhotoImage &image)
{
    const std::optional<IndexedImage> indices = indexed(image);
    if (!indices) {
        return std::nullopt;
    }
    const QByteArray pixels = encodeIndices(indices->indices);
    QByteArray data = coded(*indices, pixels);
    if (data.size() > SIZE) {
        return std::nullopt;
    }
    data = data.leftJustified(SIZE, '\0');
    qToLittleEndian(checksum(data), data.data() + CHECKSUM_OFFSET);
    return data;
}

std::optional<PhotoImage> decompressPhoto(const QByteArray &data)
{
    const std::optional<Layout> layout = layoutOf(data);
    if (!layout) {
        return std::nullopt;
    }
    const std::vector<std::uint8_t> indices =
        decodeIndices(data.mid(layout->pixelsOffset, layout->pixelBytes));
    PhotoImage image;
    for (std::size_t i = 0; i < indices.size(); ++i) {
        if (indices[i] >= layout->colours) {
            return std::nullopt;
        }
        image.pixels[i] = colourAt(data, indices[i]);
    }
    // A picture has one code only; anything else behind a right checksum was not made here.
    if (compressPhoto(image) != data) {
        return std::nullopt;
    }
    return image;
}

} // namespace simulator
