// The kind of document, on any text block.

#include "fuzz/fuzz_target.h"

#include <QByteArray>

#include "fuzz/input.h"
#include "iddata/iddata.h"

namespace
{

constexpr std::size_t LETTER_OFFSET = 248;

ID_TYPE typeOf(unsigned int character)
{
    switch (character) {
    case 'I':
        return ID_TYPE_FOREIGN_2017;
    case 'Y':
        return ID_TYPE_FOREIGN_NEW;
    case 'J':
        return ID_TYPE_HMT;
    default:
        return ID_TYPE_CN;
    }
}

/** Without a block or a place for the type nothing is returned. */
void demandRefusal()
{
    QByteArray noRecord;
    CIdData decoder(noRecord, FP_INFO_NONE);
    auto type = static_cast<ID_TYPE>(99);
    std::uint8_t block[TEXT_BLOCK_SIZE] = {};
    demand(!decoder.parseIDType(nullptr, &type) && !decoder.parseIDType(block, nullptr));
    demand(type == static_cast<ID_TYPE>(99));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        demandRefusal();
    // The letter comes first, so that short inputs have one.
    const auto input = blockOf(data, size, TEXT_BLOCK_SIZE);
    const auto block = blockOf(input.get() + 2, TEXT_BLOCK_SIZE - 2, TEXT_BLOCK_SIZE);
    std::copy_n(input.get(), 2, block.get() + LETTER_OFFSET);
    QByteArray noRecord;
    auto type = static_cast<ID_TYPE>(99);
    demand(CIdData(noRecord, FP_INFO_NONE).parseIDType(block.get(), &type));
    demand(type == typeOf(input[0] + 256U * input[1]));
    return 0;
}
