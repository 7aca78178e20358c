// Preamble, length and checksum of the reader's frames.

#include "simulator/card/reader_frame.h"

#include "reader/frame_bytes.h"

namespace simulator
{

QByteArray answerFrame(const QByteArray &payload)
{
    const QByteArray preamble(reinterpret_cast<const char *>(reader_frames::PREAMBLE.data()),
                              static_cast<int>(reader_frames::PREAMBLE.size()));
    const QByteArray frame =
        preamble + reader_frames::frameNumber(payload.size() + reader_frames::CHECKSUM_SIZE) +
        payload;
    return frame + reader_frames::frameChecksum(frame, frame.size());
}

} // namespace simulator
