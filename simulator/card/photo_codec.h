#pragma once

// The simulator's own photo code: 1024 bytes for a picture of few colours. It is made for the
// portraits that the simulator draws and stands where real cards have the makers' closed format.

#include <optional>

#include <QByteArray>

#include "simulator/card/photo_image.h"

namespace simulator
{

/**
 * The photo in 1024 bytes, without loss; nothing when it has more than 128 colours or does not fit.
 */
std::optional<QByteArray> compressPhoto(const PhotoImage &image);

/** The photo in `data`; nothing unless `data` is exactly what `compressPhoto` made of it. */
std::optional<PhotoImage> decompressPhoto(const QByteArray &data);

} // namespace simulator
