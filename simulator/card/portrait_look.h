#pragma once

// What a portrait looks like, chosen from a seed.

#include "simulator/card/portrait.h"
#include "simulator/card/portrait_canvas.h"

namespace simulator
{

enum class Haircut { Parted, Crop, Fringe, Receding, Bob, Long, TiedBack };
enum class Garment { Crew, VNeck, Jacket, Collar };
enum class Glasses { None, Round, Angular };
enum class Beard { None, Moustache, Full };

/** Lengths are units of the canvas; the indices choose rows of the tables of colours. */
struct PortraitLook {
    std::size_t skin;
    std::size_t hair;
    std::size_t clothes;
    Haircut haircut;
    Garment garment;
    Glasses glasses;
    Beard beard;
    Units faceHalfWidth;
    Units jawHalfWidth;
    Units chinY;
    Units eyeDistance; ///< from the middle of the face
    Units browHeight;  ///< above the eyes
    Units mouthHalfWidth;
    Units smile; ///< depth of the mouth's curve
    bool partedLeft;
};

PortraitLook chooseLook(std::uint32_t seed, Hairdresser hairdresser);

Palette paletteOf(const PortraitLook &look);

} // namespace simulator
