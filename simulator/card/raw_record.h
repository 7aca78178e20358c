#pragma once

// A described card as a reader on USB hands it out: the record of the card's chip in an answer
// frame.

#include <QByteArray>

#include "simulator/card/card_description.h"

namespace simulator
{

/**
 * The 256 bytes of text of `card`: every field of its kind filled up with spaces, the kind letter
 * of all but resident cards at 248, spaces wherever a card of this kind has no field. Codes stand
 * as codes. What `padding` says counts for the makers' record alone.
 */
QByteArray textBlock(const CardDescription &card);

/**
 * The whole answer of a successful read: 1297, 1809 or 2321 bytes by the number of fingerprints,
 * with the faults of text and photo that are set (unknown-kind, photo-undecodable, photo-length).
 */
QByteArray readAnswer(const CardDescription &card, const Faults &faults);

} // namespace simulator
