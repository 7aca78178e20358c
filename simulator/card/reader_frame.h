#pragma once

// The frames of the reader's USB protocol as a reader makes them; their fixed parts are described
// in reader/reader_frames.h.

#include <QByteArray>

namespace simulator
{

/**
 * The frame of an answer: preamble, length, `payload` (status and data), checksum. The payload has
 * at most as many bytes as the length field can count.
 */
QByteArray answerFrame(const QByteArray &payload);

} // namespace simulator
