#pragma once

// Draws the photos of cards: friendly, neutral portraits of nobody, on a white background.

#include <cstdint>

#include "simulator/card/photo_image.h"

namespace simulator
{

/** Whose haircuts, collars and beards a portrait chooses from. */
enum class Hairdresser { Women, Men };

/** The portrait that belongs to `seed`: the same pixels on every machine. */
PhotoImage drawPortrait(std::uint32_t seed, Hairdresser hairdresser);

} // namespace simulator
