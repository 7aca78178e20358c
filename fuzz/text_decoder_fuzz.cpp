// One of the four text decoders, chosen when this is compiled, on any text block.

#include "fuzz/fuzz_target.h"

#include <new>

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

/** Without a block or a record the decoder throws. */
template <typename Record>
void demandRefusal(void (CIdData::*decoder)(unsigned char *, Record *), unsigned char *block)
{
    QByteArray noRecord;
    CIdData data(noRecord, FP_INFO_NONE);
    Record record;
    int refusals = 0;
    for (Record *const given : {&record, static_cast<Record *>(nullptr)}) {
        try {
            (data.*decoder)(given == nullptr ? block : nullptr, given);
        } catch (const std::bad_alloc &) {
            ++refusals;
        }
    }
    demand(refusals == 2);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto block = blockOf(data, size, TEXT_BLOCK_SIZE);
    if (size == 0)
        demandRefusal(&CIdData::IDCARD_FUZZED_DECODER, block.get());
    decode(&CIdData::IDCARD_FUZZED_DECODER, block.get());
    return 0;
}
