#pragma once

// What a raw card record says, by the library's decoders.

#include <optional>

#include "apps/card/card.h"

namespace app
{

/**
 * Decodes a record that `checkRawRecord` has accepted. Nothing when the decoder of its kind broke
 * off: the sex code of a foreigner's card is not one of the four valid ones.
 *
 * What the decoders log, which may be what the card holds, is not shown. A photo that cannot be
 * decoded stays in the card as the card stores it (`PhotoFormat::COMPRESSED`).
 */
std::optional<Card> decodeRawRecord(QByteArray record, FP_INFO_TYPE prints, Road road);

/**
 * Decodes the photo of a card that came by the reader maker's library, which may leave it as the
 * card stores it. A photo that cannot be decoded stays as it is.
 */
void decodePhoto(Card *card);

} // namespace app
