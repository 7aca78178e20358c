#pragma once

// Codes the pixels of a photo that has a palette: from its neighbours a pixel is mostly known.

#include <cstdint>
#include <vector>

#include <QByteArray>

namespace simulator
{

constexpr int MOST_COLOURS = 128;

/** `indices`: 126 rows of 102 indices below `MOST_COLOURS`. */
QByteArray encodeIndices(const std::vector<std::uint8_t> &indices);

/** Always gives a whole photo of indices below `MOST_COLOURS`, whatever the bytes are. */
std::vector<std::uint8_t> decodeIndices(const QByteArray &bytes);

} // namespace simulator
