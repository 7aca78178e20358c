// One of the four text decoders, chosen when this is compiled, on any text block.

#include "fuzz/fuzz_target.h"

#include <QByteArray>

#include "fuzz/input.h"
#include "iddata/iddata.h"

namespace
{

template <typename Record>
void decode(void (CIdData::*decoder)(unsigned char *, Record *), unsigned char *block)
{
    QByteArray noRecord;
    CIdData data(noRecord, FP_INFO_NONE);
    Record record;
    (data.*decoder)(block, &record);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto block = blockOf(data, size, TEXT_BLOCK_SIZE);
    decode(&CIdData::IDCARD_FUZZED_DECODER, block.get());
    return 0;
}
