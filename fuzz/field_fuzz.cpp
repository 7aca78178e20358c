// One text field of any length, into any room.

#include "fuzz/fuzz_target.h"

#include <cstring>

#include <QByteArray>

#include "common/common.h"
#include "fuzz/input.h"
#include "iddata/iddata.h"

namespace
{

constexpr std::size_t LONGEST_FIELD = 129;
constexpr std::size_t PARAMETERS = 2;

/** Bytes of the UTF-8 character that begins with `first`. */
std::size_t characterSize(unsigned char first)
{
    if (first < 0x80)
        return 1;
    if (first < 0xE0)
        return 2;
    return first < 0xF0 ? 3 : 4;
}

/** Whether `text` ends with a whole character of UTF-8. */
bool isWhole(const unsigned char *text, std::size_t size)
{
    std::size_t position = 0;
    while (position < size) {
        const std::size_t character = characterSize(text[position]);
        for (std::size_t i = position + 1; i < std::min(position + character, size); ++i)
            if (text[i] < 0x80 || text[i] >= 0xC0)
                return false;
        position += character;
    }
    return position == size;
}

/** Calls that are refused leave the room as it is. */
void demandRefusal()
{
    QByteArray noRecord;
    CIdData decoder(noRecord, FP_INFO_NONE);
    unsigned char field[] = "a";
    char in[] = "a";
    char out[] = "before";
    decoder.DecodeIDBase(nullptr, 0, 1, out, sizeof(out));
    decoder.DecodeIDBase(field, 0, 1, nullptr, 0);
    CCommon::iconv_ex("utf-16le", in, -1, "utf-8", out, sizeof(out));
    CCommon::iconv_ex("utf-16le", in, 1, "utf-8", out, -1);
    CCommon::iconv_ex("utf-16le", in, 1, "no such character set", out, sizeof(out));
    demand(std::strcmp(out, "before") == 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        demandRefusal();
    if (size < PARAMETERS)
        return 0;
    const std::size_t room = data[0];
    const std::size_t length = data[1] % (LONGEST_FIELD + 1);
    const auto field = blockOf(data + PARAMETERS, size - PARAMETERS, length);
    const std::unique_ptr<unsigned char[]> out(new unsigned char[room]());
    QByteArray noRecord;
    CIdData(noRecord, FP_INFO_NONE)
        .DecodeIDBase(field.get(), 0, static_cast<int>(length), reinterpret_cast<char *>(out.get()),
                      static_cast<int>(room));
    demand(isWhole(out.get(), room));
    return 0;
}
