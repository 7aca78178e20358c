// Trimming of card texts.

#include "fuzz/fuzz_target.h"

#include <string>

#include "common/common.h"

namespace
{

bool isPadding(char character)
{
    return character == ' ' || character == '\t';
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char *>(data), size);
    const std::string trimmed = CCommon::trim(text);
    demand(text.find(trimmed) != std::string::npos);
    demand(trimmed.empty() || (!isPadding(trimmed.front()) && !isPadding(trimmed.back())));
    demand(CCommon::trim(trimmed) == trimmed);
    demand(CCommon::trim(" \t" + text + "\t ") == trimmed);
    return 0;
}
