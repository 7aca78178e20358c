// A compressed photo: a mark, the number of the portrait, the card's seed, and bytes that follow
// from these.

#include "simulator/card/photo_codec.h"

#include <utility>

#include <QtEndian>

#include "common/card_records.h"
#include "simulator/card/portrait.h"
#include "simulator/card/seeded_bytes.h"

namespace simulator
{

namespace
{

constexpr char MARK[] = "SIMULATED PHOTO\n";
constexpr int PORTRAIT_OFFSET = sizeof MARK - 1;
constexpr int SEED_OFFSET = PORTRAIT_OFFSET + 1; // 32 bits, little-endian

} // namespace

QByteArray compressPhoto(std::uint8_t portrait, std::uint32_t seed)
{
    QByteArray head(MARK);
    head.append(static_cast<char>(portrait));
    const quint32 number = qToLittleEndian(seed);
    head.append(reinterpret_cast<const char *>(&number), int(sizeof number));
    return filledUp(head, IDCARD_COMPRESSED_PHOTO_SIZE);
}

QByteArray decompressPhoto(const QByteArray &data)
{
    if (data.size() != int(IDCARD_COMPRESSED_PHOTO_SIZE))
        return {};
    const auto portrait = static_cast<std::uint8_t>(data.at(PORTRAIT_OFFSET));
    const auto seed = qFromLittleEndian<quint32>(data.constData() + SEED_OFFSET);
    if (portrait >= PORTRAITS || data != compressPhoto(portrait, seed))
        return {};
    return portraitFile(portrait);
}

QByteArray pixelRows(const QByteArray &bmpFile)
{
    constexpr int HEADER_BYTES = 54;
    constexpr int ROWS = 126;
    constexpr int ROW_BYTES = 102 * 3;
    constexpr int STRIDE = (int(IDCARD_PHOTO_SIZE) - HEADER_BYTES) / ROWS;

    QByteArray rows;
    for (int row = 0; row < ROWS; ++row)
        rows += bmpFile.mid(HEADER_BYTES + row * STRIDE, ROW_BYTES);
    for (int pixel = 0; pixel < rows.size(); pixel += 3)
        std::swap(rows.data()[pixel], rows.data()[pixel + 2]);
    return rows;
}

} // namespace simulator
