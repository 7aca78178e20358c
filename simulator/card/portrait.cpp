// Composes a portrait from parts: each seed chooses a face, hair, clothes and sometimes glasses.

#include "simulator/card/portrait.h"

#include <random>

#include "simulator/card/portrait_canvas.h"
#include "simulator/card/portrait_look.h"
#include "simulator/card/portrait_parts.h"

namespace simulator
{

PhotoImage drawPortrait(std::uint32_t seed, Hairdresser hairdresser)
{
    const PortraitLook look = chooseLook(seed, hairdresser);
    PortraitCanvas canvas;
    paintHairBehind(&canvas, look);
    paintNeckAndClothes(&canvas, look);
    paintHead(&canvas, look);
    paintFace(&canvas, look);
    paintHair(&canvas, look);
    if (look.glasses != Glasses::None) {
        paintGlasses(&canvas, look);
    }
    return canvas.photo(paletteOf(look));
}

} // namespace simulator
