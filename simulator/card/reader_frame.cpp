// Preamble, length and checksum of the reader's frames.

#include "simulator/card/reader_frame.h"

#include "reader/frame_bytes.h"

namespace simulator
{

namespace
{

static_assert(LARGEST_FRAME == reader_frames::HEAD_SIZE + 0xFFFF);

QByteArray preamble()
{
    return {reinterpret_cast<const char *>(reader_frames::PREAMBLE.data()),
            static_cast<int>(reader_frames::PREAMBLE.size())};
}

} // namespace

QByteArray answerFrame(const QByteArray &payload)
{
    const QByteArray frame =
        preamble() + reader_frames::frameNumber(payload.size() + reader_frames::CHECKSUM_SIZE) +
        payload;
    return frame + reader_frames::frameChecksum(frame, frame.size());
}

bool isBareHead(const QByteArray &bytes)
{
    return bytes.size() == reader_frames::HEAD_SIZE && bytes.startsWith(preamble());
}

} // namespace simulator
