#pragma once

/**
 * @file
 * The five functions of the two closed libraries that the card reader comes with: the reader
 * maker's library and the photo decoder. This library calls them and does not contain them; a host
 * that includes this header and defines them itself (a test, a simulated reader) has its own
 * definitions used, without any linker flag.
 */

#include "common/card_info_struct.h"
#include "common/export.h"

/** The port at which the reader is opened; first argument of the four reader functions. */
constexpr int KVO_PORT = 1001;

/** What the four reader functions return on success, 0x90. */
constexpr int KVO_SUCCESS = 144;

/** What `KVO_ReadIDCard` returns when reading failed and may succeed if tried again. */
constexpr int KVO_READ_AGAIN = 65;

/** What `unpack` returns on success. */
constexpr int WLT_SUCCESS = 1;

/** Mode of `unpack` that gives a complete BMP file of 38862 bytes. */
constexpr int WLT_MODE_BMP_FILE = 106;

/** Mode of `unpack` that gives 38556 bytes: 126 rows of 102 pixels of 3 bytes. */
constexpr int WLT_MODE_PIXELS = 310;

extern "C" {

/** Opens the reader. Returns `KVO_SUCCESS` or a failure code. */
IDCARD_READER_EXPORT int KVO_OpenPort(int port);

/** Looks for a card on the reader. Returns `KVO_SUCCESS` when one answered. */
IDCARD_READER_EXPORT int KVO_FindIDCard(int port);

/**
 * Reads the card found. `info` is zero-filled by the caller; `photo` has room for 38862 bytes and
 * `fp` for 1024; the lengths, 0 on entry, receive what was written: 38862 (a BMP file) or 1024
 * (compressed) bytes of photo, and 0, 512 or 1024 bytes of fingerprints. `flag` is always 1.
 *
 * Returns `KVO_SUCCESS`, `KVO_READ_AGAIN` or a failure code.
 */
IDCARD_READER_EXPORT int KVO_ReadIDCard(int port, CardInfoStruct *info, unsigned char *photo,
                                        unsigned int *photoLen, unsigned char *fp,
                                        unsigned int *fpLen, int flag);

/** Closes the reader. The result is not looked at. */
IDCARD_READER_EXPORT int KVO_ClosePort(int port);

/**
 * Decodes the 1024 bytes of a compressed photo at `src` into `dst`, which has room for what `mode`
 * writes (`WLT_MODE_BMP_FILE` or `WLT_MODE_PIXELS`). Returns `WLT_SUCCESS` or anything else.
 */
IDCARD_READER_EXPORT int unpack(unsigned char *src, unsigned char *dst, int mode);

} // extern "C"
