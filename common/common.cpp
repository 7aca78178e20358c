#include "common/common.h"

#include <algorithm>
#include <array>
#include <cerrno>

#include <iconv.h>

#include <QByteArray>
#include <QString>

static_assert(sizeof(wchar_t) == sizeof(char32_t), "wide characters hold UCS-4 code points");

void CCommon::uchar2wchar(unsigned char *src, unsigned long len, wchar_t *dst)
{
    const unsigned long count = len / 2;
    for (unsigned long i = 0; i < count; ++i)
        dst[i] = static_cast<wchar_t>(src[2 * i] + 256 * src[2 * i + 1]);
    dst[count] = L'\0';
}

std::string CCommon::unicode2Utf8Str(unsigned char *src, unsigned long len)
{
    // On the stack: this runs for every field of every card, and no field is longer.
    std::array<wchar_t, MAX_UNICODE_SIZE / 2 + 1> wide;
    uchar2wchar(src, std::min(len, MAX_UNICODE_SIZE), wide.data());
    return QString::fromUcs4(reinterpret_cast<const uint *>(wide.data())).toUtf8().toStdString();
}

std::string CCommon::trim(std::string text)
{
    constexpr const char *PADDING = " \t";
    const std::string::size_type first = text.find_first_not_of(PADDING);
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(PADDING) - first + 1);
}

void CCommon::iconv_ex(const char *fromcode, char *inbuf, int inlen, const char *tocode,
                       char *outbuf, int outlen)
{
    if (inlen < 0 || outlen < 0)
        return;
    iconv_t converter = iconv_open(tocode, fromcode);
    // NOLINTNEXTLINE(performance-no-int-to-ptr): POSIX says so
    if (converter == reinterpret_cast<iconv_t>(-1)) {
        if (errno == ENOMEM)
            // not reached by fuzzing: the converter finds no memory
            qBadAlloc(); // throws
        return;
    }
    auto inLeft = static_cast<std::size_t>(inlen);
    auto outLeft = static_cast<std::size_t>(outlen);
    iconv(converter, &inbuf, &inLeft, &outbuf, &outLeft);
    iconv_close(converter);
}
