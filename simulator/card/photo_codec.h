#pragma once

// The simulator's own format of compressed photos, where real cards have the makers' closed
// format: 1024 bytes that name a drawn portrait. No other picture can be put into them.

#include <cstdint>

#include <QByteArray>

namespace simulator
{

/**
 * The portrait in 1024 bytes. `seed` makes them unlike those of every other card with this
 * portrait.
 */
QByteArray compressPhoto(std::uint8_t portrait, std::uint32_t seed);

/** The portrait's BMP file; empty unless `data` is exactly what `compressPhoto` makes. */
QByteArray decompressPhoto(const QByteArray &data);

/**
 * The rows of a photo's BMP file without header and padding, red first. They stay in the file's
 * order, bottom row first: put behind the header of a BMP file, they are upright.
 */
QByteArray pixelRows(const QByteArray &bmpFile);

} // namespace simulator
