#pragma once

// The frames of the reader's USB protocol. Numbers are big-endian. A frame is the preamble, the
// number of bytes that follow that number (two bytes), command and parameters or status (3 bytes)
// and data, and a checksum: the XOR of every byte from the length to the byte before the checksum.

#include <array>

#include "common/card_records.h"
#include "common/fp_info_type.h"

namespace reader_frames
{

/** Bulk endpoints of interface 0: commands go out by one, answers come in by the other. */
constexpr unsigned char COMMAND_PIPE = 0x02;
constexpr unsigned char ANSWER_PIPE = 0x81;

constexpr std::array<unsigned char, 5> PREAMBLE = {0xAA, 0xAA, 0xAA, 0x96, 0x69};
constexpr int LENGTH_OFFSET = 5;
constexpr int HEAD_SIZE = 7; ///< preamble and length
constexpr int STATUS_OFFSET = 7;

using Command = std::array<unsigned char, 10>;
constexpr Command LOOKUP_COMMAND = {0xAA, 0xAA, 0xAA, 0x96, 0x69, 0x00, 0x03, 0x20, 0x01, 0x22};
constexpr Command SELECT_COMMAND = {0xAA, 0xAA, 0xAA, 0x96, 0x69, 0x00, 0x03, 0x20, 0x02, 0x21};
constexpr Command READ_COMMAND = {0xAA, 0xAA, 0xAA, 0x96, 0x69, 0x00, 0x03, 0x30, 0x10, 0x23};

/** Answer of lookup when a card is on the reader. */
constexpr std::array<unsigned char, 15> LOOKUP_ANSWER = {
    0xAA, 0xAA, 0xAA, 0x96, 0x69, 0x00, 0x08, 0x00, 0x00, 0x9F, 0x00, 0x00, 0x00, 0x00, 0x97};

/** Answer of select when the card was selected. */
constexpr std::array<unsigned char, 19> SELECT_ANSWER = {0xAA, 0xAA, 0xAA, 0x96, 0x69, 0x00, 0x0C,
                                                         0x00, 0x00, 0x90, 0x00, 0x00, 0x00, 0x00,
                                                         0x00, 0x00, 0x00, 0x00, 0x9C};

/** Status and lengths of text (256) and photo (1024) in an answer of read. */
constexpr std::array<unsigned char, 7> READ_ANSWER_STATUS = {0x00, 0x00, 0x90, 0x01,
                                                             0x00, 0x04, 0x00};
constexpr int PRINT_LENGTH_OFFSET = 14;
constexpr int TEXT_OFFSET = 16;
constexpr int TEXT_SIZE = 256;
constexpr int PHOTO_OFFSET = TEXT_OFFSET + TEXT_SIZE;
constexpr int PHOTO_SIZE = IDCARD_COMPRESSED_PHOTO_SIZE;
constexpr int PRINTS_OFFSET = PHOTO_OFFSET + PHOTO_SIZE;
constexpr int PRINT_SIZE = IDCARD_FINGERPRINT_SIZE; ///< one fingerprint template
constexpr int CHECKSUM_SIZE = 1;

constexpr int READ_ANSWER_SIZE_NO_PRINT = PRINTS_OFFSET + CHECKSUM_SIZE;
constexpr int READ_ANSWER_SIZE_ONE_PRINT = READ_ANSWER_SIZE_NO_PRINT + PRINT_SIZE;
constexpr int READ_ANSWER_SIZE_TWO_PRINTS = READ_ANSWER_SIZE_ONE_PRINT + PRINT_SIZE;
constexpr int READ_ANSWER_MAX_SIZE = READ_ANSWER_SIZE_TWO_PRINTS;

/** What the size of a read answer says about its fingerprints. */
struct ReadAnswerSize {
    int size;
    FP_INFO_TYPE prints;
};
constexpr std::array<ReadAnswerSize, 3> READ_ANSWER_SIZES = {{
    {READ_ANSWER_SIZE_TWO_PRINTS, FP_INFO_TWO},
    {READ_ANSWER_SIZE_ONE_PRINT, FP_INFO_ONE},
    {READ_ANSWER_SIZE_NO_PRINT, FP_INFO_NONE},
}};
static_assert(READ_ANSWER_SIZE_NO_PRINT == 1297);
static_assert(READ_ANSWER_SIZE_ONE_PRINT == 1809);
static_assert(READ_ANSWER_SIZE_TWO_PRINTS == 2321);

/** Answer of a reader whose card gave no data: head, status, checksum. */
constexpr int STATUS_ONLY_ANSWER_SIZE = 11;

} // namespace reader_frames
