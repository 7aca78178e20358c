#pragma once

// The photos of cards: drawn portraits of no real person, from artwork/portraits.svg.

#include <cstdint>

#include <QByteArray>

#include "simulator/card/card_description.h"

namespace simulator
{

/** How many portraits there are: so many of women, then so many of men. */
constexpr unsigned int PORTRAITS_OF_ONE_SEX = 16;
constexpr unsigned int PORTRAITS = 2 * PORTRAITS_OF_ONE_SEX;

/** The portrait of the card's holder. It follows from the seed, or else from the card's number. */
std::uint8_t portraitOf(const CardDescription &card);

/** The portrait as a BMP file of 38862 bytes. `portrait`: below `PORTRAITS`. */
QByteArray portraitFile(std::uint8_t portrait);

} // namespace simulator
