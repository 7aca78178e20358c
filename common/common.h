#pragma once

#include <string>

#include <QString>

#include "common/export.h"

/**
 * Helpers for card text, for pixels and for files. All of them are re-entrant and keep no state.
 *
 * Card text is UCS-2, little-endian: two bytes a character, low byte first. The text helpers report
 * no error; the file helpers write to Qt's log what went wrong.
 */
class IDCARD_READER_EXPORT CCommon
{
public:
    /** Bytes of UCS-2 text that `unicode2Utf8Str` converts at most: 61 characters. */
    static constexpr unsigned long MAX_UNICODE_SIZE = 122;

    /**
     * Widens card text: writes `len / 2` characters and a terminating zero to `dst`, which must
     * have room for them. `len` is in bytes; a trailing odd byte is ignored.
     */
    static void uchar2wchar(unsigned char *src, unsigned long len, wchar_t *dst);

    /**
     * Converts card text of `len` bytes to UTF-8, up to its first zero character; spaces stay.
     *
     * `len` must not exceed `MAX_UNICODE_SIZE`; the rest is not converted. Surrogate
     * halves, which UCS-2 text cannot hold, come out as `QString::fromUcs4` treats them.
     */
    static std::string unicode2Utf8Str(unsigned char *src, unsigned long len);

    /**
     * Returns `text` without leading and trailing blanks (0x20) and tabs (0x09). Line ends and the
     * ideographic space are no padding and stay.
     */
    static std::string trim(std::string text);

    /**
     * One call of the C library's iconv: converts `inlen` bytes at `inbuf` from `fromcode` to
     * `tocode` into `outbuf`, which has room for `outlen` bytes.
     *
     * No terminating zero is added, so zero `outbuf` first. An invalid sequence or a full `outbuf`
     * leaves the part converted so far, whole characters only. Nothing is done when iconv does not
     * know the character sets or a length is negative. Throws `std::bad_alloc` when iconv has no
     * memory and says so; while it loads a converter for the first time, it may say instead that
     * it does not know the character sets.
     */
    static void iconv_ex(const char *fromcode, char *inbuf, int inlen, const char *tocode,
                         char *outbuf, int outlen);

    /**
     * Turns bare pixel rows into the rows of a BMP file: `width` x `height` pixels of three bytes
     * at `src` (`srcLen` bytes), whose first and third bytes are exchanged, into rows at `dst` that
     * begin at multiples of four bytes. The rows keep their order.
     *
     * `dstLen` is the capacity of `dst`, all of which is zeroed, and receives the number of bytes
     * that the rows take. Returns 0; -1 when `srcLen` is not the size of such a picture (a negative
     * width or height is none); -2 when the capacity is too small. On failure nothing is written.
     *
     * The padding of a row holds the beginning of the next row's first pixel, as it always did.
     * After the last row that pixel is the three bytes that follow the source, so these must be
     * readable, and it may end beyond the rows: `dst` must have one byte more than the rows take,
     * whatever the capacity says. What lies further is written only inside the capacity. A picture
     * without pixels has no such bytes.
     */
    static int Bgr2Bmp(unsigned char *dst, int &dstLen, const unsigned char *src, int srcLen,
                       int width, int height);

    /**
     * Writes `len` bytes at `data` (none when `len` is 0 or less) to the file `path`, replacing its
     * content. A file that did not exist is made readable for its owner only: what cards hold is
     * personal. Logs the outcome and reports nothing.
     */
    static void saveByteDataToFile(unsigned char *data, int len, QString path);

    /** Whether there is a file (or folder) `path`. */
    static bool fileExist(QString path);

    /** Renames a file. Returns false and logs when that fails; an existing `to` makes it fail. */
    static bool fileRename(QString from, QString to);

    /** Removes a file. Returns false when that fails or, without a log line, when there is none. */
    static bool fileRemove(QString path);
};
