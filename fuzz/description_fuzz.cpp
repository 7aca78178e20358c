// Descriptions of simulated cards.

#include "fuzz/fuzz_target.h"

#include <QByteArray>

#include "simulator/card/description_reader.h"
#include "simulator/card/vendor_record.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray json(reinterpret_cast<const char *>(data), static_cast<int>(size));
    simulator::DescriptionError error;
    const auto card = simulator::readDescription(json, QStringLiteral("card.json"), &error);
    demand(card.has_value() == error.reason.isEmpty());
    if (card)
        simulator::vendorRecord(*card);
    else
        demand(!error.message().isEmpty());
    return 0;
}
