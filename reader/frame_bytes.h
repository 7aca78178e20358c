#pragma once

// The parts of a frame that depend on the rest of it, for those that make or check whole frames.

#include <QByteArray>

#include "reader/reader_frames.h"

namespace reader_frames
{

/** A number of a frame: two bytes, the high one first. */
inline QByteArray frameNumber(int number)
{
    return QByteArray(1, static_cast<char>(number / 256)) + static_cast<char>(number % 256);
}

/** What the checksum of the frame at `offset` must be. */
inline char frameChecksum(const QByteArray &frame, int offset)
{
    unsigned int sum = 0;
    for (int i = LENGTH_OFFSET; i < offset; ++i)
        sum ^= static_cast<unsigned char>(frame.at(i));
    return static_cast<char>(sum);
}

} // namespace reader_frames
