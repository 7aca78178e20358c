#pragma once

// The frames of the reader's USB protocol as a reader makes them; their fixed parts are
// described in reader/reader_frames.h.

#include <QByteArray>

namespace simulator
{

/** Most bytes that a frame's length field can count, the field and all before it included. */
constexpr int LARGEST_FRAME = 7 + 0xFFFF;

/**
 * The frame of an answer: preamble, length, `payload` (status and data), checksum. The payload has
 * at most as many bytes as the length field can count.
 */
QByteArray answerFrame(const QByteArray &payload);

/** Whether `bytes` are the head of a frame, preamble and length, and nothing else. */
bool isBareHead(const QByteArray &bytes);

} // namespace simulator
