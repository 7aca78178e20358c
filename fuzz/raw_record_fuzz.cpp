// Files that are said to be raw card records, as the tool decodes them.

#include "fuzz/fuzz_target.h"

#include <algorithm>

#include <QByteArray>

#include "apps/card/card_output.h"
#include "apps/card/raw_record.h"
#include "apps/card/record_decoder.h"
#include "common/closed_functions.h"

namespace
{

constexpr int HEAD_SIZE = 16; // up to the text

/** Output takes ten times as long as decoding, so that only some records get so far. */
bool isDelivered(const QByteArray &record)
{
    return static_cast<unsigned char>(record.back()) % 16 == 0;
}

/** What the tool gives out of a record. */
void deliver(const QByteArray &record, FP_INFO_TYPE prints)
{
    const auto card = app::decodeRawRecord(record, prints, app::Road::FILE);
    if (!card || !isDelivered(record))
        return;
    demand(app::isCardKind(card->kindCode()));
    demand(!app::toTable(*card, std::nullopt).isEmpty());
    demand(!app::indentedJson(app::toJson(*card, std::nullopt)).isEmpty());
}

} // namespace

// In place of the photo decoder, which would be looked for on the disk for every record: pixels
// from what is compressed, or none.
int unpack(unsigned char *src, unsigned char *dst, int mode)
{
    demand(mode == WLT_MODE_PIXELS);
    std::copy_n(src, IDCARD_COMPRESSED_PHOTO_SIZE, dst);
    return src[0] % 2 == 0 ? WLT_SUCCESS : WLT_SUCCESS + 1;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const app::RawRecordCheck check = app::checkRawRecord(bytes);
    demand(check.isRecord() || check.warnings.isEmpty());
    if (!check.isRecord())
        return 0;
    demand(bytes.size() > HEAD_SIZE && bytes.size() < app::RAW_RECORD_READ_LIMIT);
    deliver(bytes, check.prints);
    return 0;
}
