// What a reader answers over USB.

#include "fuzz/fuzz_target.h"

#include <QByteArray>

#include "fuzz/scripted_libusb.h"
#include "reader/usbidreader.h"

namespace
{

/** Length of a record with these fingerprints; 0 for a value that is not of the type. */
int recordSize(FP_INFO_TYPE prints)
{
    switch (prints) {
    case FP_INFO_NONE:
        return 1297;
    case FP_INFO_ONE:
        return 1809;
    case FP_INFO_TWO:
        return 2321;
    }
    return 0;
}

void fetch(CUsbIdReader *reader)
{
    const QByteArray before("as it was");
    constexpr auto NO_VALUE = static_cast<FP_INFO_TYPE>(99);
    QByteArray record = before;
    FP_INFO_TYPE prints = NO_VALUE;
    if (reader->fetch_data(record, prints)) {
        demand(reader->lastError() == USB_READER_OK);
        demand(record.size() == recordSize(prints));
        demand(record.startsWith("\xAA\xAA\xAA\x96\x69"));
    } else {
        demand(reader->lastError() < USB_READER_OK);
        demand(record == before && prints == NO_VALUE);
    }
}

void usePipes(CUsbIdReader *reader, std::uint8_t size)
{
    const int code = reader->lastError();
    unsigned char block[256] = {};
    unsigned short length = 0;
    bool anyMoved = reader->write_pipe2(size, 0);
    anyMoved = reader->write_pipe6(size, 1, 2, block, 3) || anyMoved;
    anyMoved = reader->read_pipe81(length) || anyMoved;
    anyMoved = reader->read_pipe85(size) || anyMoved;
    demand(reader->lastError() == code);
    demand(code == USB_READER_OK || (!anyMoved && length == 0));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    scripted_libusb::begin(data, size);
    {
        CUsbIdReader reader(0, 0);
        fetch(&reader);
        usePipes(&reader, size == 0 ? std::uint8_t(0) : data[size - 1]);
        if (size > 0 && data[size - 1] % 2 == 1)
            reader.open(0, 0);
    }
    demand(scripted_libusb::isAllGivenBack());
    return 0;
}
