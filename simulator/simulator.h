#pragma once

/**
 * @file
 * The public face of `libidcard_simulator.so`, a replacement for the reader maker's library and the
 * photo decoder: it exports the five functions of `common/closed_functions.h` and answers them from
 * described cards. No reader, no card and no real person is involved.
 *
 * Three ways to use it: preload it into a program, load it with `dlopen` and `RTLD_GLOBAL` before
 * the first read, or link a test with it.
 *
 * The card on the simulated reader is decided, whenever the reader is opened, by the last call of
 * the functions below or, when none was made, by the environment:
 *
 * - `IDCARD_SIMULATOR_CARD`: name of a built-in card, or path of a description file. Unset or
 *   empty: no card on the reader.
 * - `IDCARD_SIMULATOR_FAULTS`: faults, as for `idcard_simulator_set_faults`; they are added to
 *   those in the card's description.
 *
 * A value that cannot be used is reported on standard error, and the reader does not open.
 *
 * The functions may be called from one thread at a time, like the five closed functions themselves.
 */

#include "common/export.h"

extern "C" {

/**
 * Puts a card on the reader: the name of a built-in card or the path of a description file.
 *
 * Returns 0. Returns -1, leaves the reader as it was and writes a message (file, key, reason) of at
 * most `messageSize` bytes, zero-terminated UTF-8, to `message` when the description cannot be
 * used. `message` may be null when `messageSize` is 0.
 */
IDCARD_READER_EXPORT int idcard_simulator_put_card(const char *card, char *message,
                                                   unsigned int messageSize);

/**
 * As `idcard_simulator_put_card`, for a card that is only viewed: its description's faults
 * do not count, and a photo that it has compressed is delivered as a BMP file. Faults that are set
 * beside it count all the same.
 */
IDCARD_READER_EXPORT int idcard_simulator_put_plain_card(const char *card, char *message,
                                                         unsigned int messageSize);

/** Takes the card off the reader. */
IDCARD_READER_EXPORT void idcard_simulator_take_card();

/**
 * Sets the faults of the next reads, a list separated by commas such as
 * "transient-failures=2,delay-ms=100"; an empty text means none. They are added to those in the
 * card's description. Counted faults begin again with every call. A fault that only the reader on
 * USB has is refused.
 *
 * Result and `message` as for `idcard_simulator_put_card`.
 */
IDCARD_READER_EXPORT int idcard_simulator_set_faults(const char *faults, char *message,
                                                     unsigned int messageSize);

} // extern "C"
