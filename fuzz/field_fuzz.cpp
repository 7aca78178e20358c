// One text field of any length, into any room.

#include "fuzz/fuzz_target.h"

#include <QByteArray>

#include "fuzz/input.h"
#include "iddata/iddata.h"

namespace
{

constexpr std::size_t LONGEST_FIELD = 129;
constexpr std::size_t PARAMETERS = 2;

/** Whether `text` ends with a whole character of UTF-8. */
bool isWhole(const char *text, int size)
{
    return QString::fromUtf8(text, size).toUtf8() == QByteArray(text, size);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < PARAMETERS)
        return 0;
    const std::size_t room = data[0];
    const std::size_t length = data[1] % (LONGEST_FIELD + 1);
    const auto field = blockOf(data + PARAMETERS, size - PARAMETERS, length);
    const auto out = blockOf(nullptr, 0, room);
    auto *const text = reinterpret_cast<char *>(out.get());
    QByteArray noRecord;
    CIdData(noRecord, FP_INFO_NONE)
        .DecodeIDBase(field.get(), 0, static_cast<int>(length), text, static_cast<int>(room));
    demand(isWhole(text, static_cast<int>(room)));
    return 0;
}
