#pragma once

// The parts of a portrait, each painted over those before it.

#include "simulator/card/portrait_canvas.h"
#include "simulator/card/portrait_look.h"

namespace simulator
{

void paintHairBehind(PortraitCanvas *canvas, const PortraitLook &look);
void paintNeckAndClothes(PortraitCanvas *canvas, const PortraitLook &look);
void paintHead(PortraitCanvas *canvas, const PortraitLook &look);
void paintFace(PortraitCanvas *canvas, const PortraitLook &look);
void paintHair(PortraitCanvas *canvas, const PortraitLook &look);
void paintGlasses(PortraitCanvas *canvas, const PortraitLook &look);

} // namespace simulator
