// Preamble, length and checksum of the reader's frames.

#include "simulator/card/reader_frame.h"

#include <cstdint>

#include "reader/reader_frames.h"

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

// The XOR of the bytes from the length up to, not including, `end`.
char checksum(const QByteArray &frame, int end)
{
    unsigned int sum = 0;
    for (int i = reader_frames::LENGTH_OFFSET; i < end; ++i) {
        sum ^= static_cast<std::uint8_t>(frame.at(i));
    }
    return static_cast<char>(sum);
}

int lengthField(const QByteArray &frame)
{
    return static_cast<std::uint8_t>(frame.at(reader_frames::LENGTH_OFFSET)) * 256 +
           static_cast<std::uint8_t>(frame.at(reader_frames::LENGTH_OFFSET + 1));
}

} // namespace

QByteArray answerFrame(const QByteArray &payload)
{
    const int length = payload.size() + reader_frames::CHECKSUM_SIZE;
    QByteArray frame = preamble();
    frame.append(static_cast<char>(length / 256)).append(static_cast<char>(length % 256));
    frame.append(payload);
    frame.append(checksum(frame, frame.size()));
    return frame;
}

bool isCommandFrame(const QByteArray &bytes)
{
    return bytes.size() >= SMALLEST_COMMAND_FRAME && bytes.startsWith(preamble()) &&
           lengthField(bytes) + reader_frames::HEAD_SIZE == bytes.size() &&
           checksum(bytes, bytes.size() - 1) == bytes.at(bytes.size() - 1);
}

bool isBareHead(const QByteArray &bytes)
{
    return bytes.size() == reader_frames::HEAD_SIZE && bytes.startsWith(preamble());
}

} // namespace simulator
