#pragma once

#include <string>

#include "common/export.h"

/**
 * Text conversion helpers. Card text is UCS-2, little-endian: two bytes a character, low byte
 * first. All of them are re-entrant and keep no state; none reports an error.
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
     * `len` must not exceed `MAX_UNICODE_SIZE`; what lies beyond is not converted. Surrogate
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
     * know the character sets or a length is negative.
     */
    static void iconv_ex(const char *fromcode, char *inbuf, int inlen, const char *tocode,
                         char *outbuf, int outlen);
};
