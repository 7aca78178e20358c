#pragma once

// The record that the makers' library fills from a card.

#include "common/card_info_struct.h"
#include "simulator/card/card_description.h"

namespace simulator
{

/** The record of `card`: the block of its kind filled, everything else zero. */
CardInfoStruct vendorRecord(const CardDescription &card);

} // namespace simulator
