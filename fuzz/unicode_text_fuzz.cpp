// Conversion of card texts to UTF-8.

#include "fuzz/fuzz_target.h"

#include <algorithm>
#include <string>
#include <vector>

#include "common/common.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr std::size_t UTF8_PER_CHARACTER = 3;
    std::vector<unsigned char> text(data, data + size); // more than is converted, too
    const std::string converted = CCommon::unicode2Utf8Str(text.data(), text.size());
    demand(converted.size() <= CCommon::MAX_UNICODE_SIZE / 2 * UTF8_PER_CHARACTER);
    demand(converted.find('\0') == std::string::npos);
    const std::size_t used = std::min<std::size_t>(size, CCommon::MAX_UNICODE_SIZE);
    demand(CCommon::unicode2Utf8Str(text.data(), used) == converted);
    return 0;
}
