// Preamble, length and checksum of the reader's frames.

#include "simulator/card/reader_frame.h"

#include <cstdint>

#include <QtEndian>

#include "reader/frame_bytes.h"

namespace simulator
{

namespace
{

constexpr int COMMAND_SIZE = 2;
constexpr int SMALLEST_COMMAND_FRAME =
    reader_frames::HEAD_SIZE + COMMAND_SIZE + reader_frames::CHECKSUM_SIZE;
static_assert(LARGEST_FRAME == reader_frames::HEAD_SIZE + 0xFFFF);

QByteArray preamble()
{
    return {reinterpret_cast<const char *>(reader_frames::PREAMBLE.data()),
            static_cast<int>(reader_frames::PREAMBLE.size())};
}

int lengthField(const QByteArray &frame)
{
    return qFromBigEndian<std::uint16_t>(frame.constData() + reader_frames::LENGTH_OFFSET);
}

} // namespace

QByteArray answerFrame(const QByteArray &payload)
{
    const QByteArray frame =
        preamble() + reader_frames::frameNumber(payload.size() + reader_frames::CHECKSUM_SIZE) +
        payload;
    return frame + reader_frames::frameChecksum(frame, frame.size());
}

bool isCommandFrame(const QByteArray &bytes)
{
    return bytes.size() >= SMALLEST_COMMAND_FRAME && bytes.startsWith(preamble()) &&
           lengthField(bytes) + reader_frames::HEAD_SIZE == bytes.size() &&
           bytes.endsWith(reader_frames::frameChecksum(bytes, bytes.size() - 1));
}

bool isBareHead(const QByteArray &bytes)
{
    return bytes.size() == reader_frames::HEAD_SIZE && bytes.startsWith(preamble());
}

} // namespace simulator
