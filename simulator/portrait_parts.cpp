// Head, face, clothes and glasses. Lengths are photo pixels; the face looks straight ahead.

#include "simulator/portrait_parts.h"

namespace simulator
{

namespace
{

constexpr Units MIDDLE = 51_px;
constexpr Units EYES_Y = 55_px;
constexpr Units BOTTOM = 126_px;
constexpr Units RIGHT_EDGE = 102_px;

Ellipse skull(const PortraitLook &look)
{
    return {{MIDDLE, 50_px}, look.faceHalfWidth, 25_px};
}

Ellipse jaw(const PortraitLook &look)
{
    constexpr Units HALF_HEIGHT = 25_px;
    return {{MIDDLE, look.chinY - HALF_HEIGHT}, look.jawHalfWidth + 1_px, HALF_HEIGHT};
}

// The same shape on both sides of the face: `side` is -1 or 1.
Point beside(int side, Units distance, Units y)
{
    return {MIDDLE + side * distance, y};
}

bool inShoulders(Point p)
{
    constexpr Ellipse SHOULDERS = {{MIDDLE, 130_px}, 46_px, 36_px};
    constexpr Ellipse COLLAR = {{MIDDLE, 108_px}, 24_px, 18_px};
    return SHOULDERS.contains(p) || COLLAR.contains(p);
}

constexpr Box CHEST = {0, 86_px, RIGHT_EDGE, BOTTOM};

void paintCrew(PortraitCanvas *canvas)
{
    canvas->paint(Ellipse{{MIDDLE, 90_px}, 15_px, 13_px}, Ink::ClothesShade);
    canvas->paint(Ellipse{{MIDDLE, 88_px}, 13_px, 12_px}, Ink::Skin);
}

void paintVNeck(PortraitCanvas *canvas)
{
    canvas->paint(Quad{{{{36_px, 88_px}, {66_px, 88_px}, {51_px, 119_px}, {51_px, 119_px}}}},
                  Ink::ClothesShade);
    canvas->paint(Quad{{{{38_px, 86_px}, {64_px, 86_px}, {51_px, 115_px}, {51_px, 115_px}}}},
                  Ink::Skin);
}

void paintShirtCollar(PortraitCanvas *canvas)
{
    canvas->paint(Quad{{{{42_px, 86_px}, {60_px, 86_px}, {51_px, 104_px}, {51_px, 104_px}}}},
                  Ink::Skin);
    for (const int side : {-1, 1}) {
        canvas->paint(Quad{{{beside(side, 13_px, 86_px), beside(side, 16_px, 94_px),
                             beside(side, 8_px, 108_px), beside(side, 0, 102_px)}}},
                      Ink::Shirt);
    }
}

void paintJacket(PortraitCanvas *canvas)
{
    canvas->paint(Quad{{{{37_px, 90_px}, {65_px, 90_px}, {54_px, BOTTOM}, {48_px, BOTTOM}}}},
                  Ink::Shirt);
    for (const int side : {-1, 1}) {
        canvas->paint(Quad{{{beside(side, 15_px, 90_px), beside(side, 22_px, 101_px),
                             beside(side, 18_px, 108_px), beside(side, 3_px, BOTTOM)}}},
                      Ink::ClothesShade);
    }
    canvas->paint(Quad{{{{42_px, 86_px}, {60_px, 86_px}, {51_px, 103_px}, {51_px, 103_px}}}},
                  Ink::Skin);
    for (const int side : {-1, 1}) {
        canvas->paint(Quad{{{beside(side, 13_px, 88_px), beside(side, 15_px, 94_px),
                             beside(side, 8_px, 106_px), beside(side, 0, 102_px)}}},
                      Ink::Background);
    }
}

void paintGarment(PortraitCanvas *canvas, Garment garment)
{
    switch (garment) {
    case Garment::Crew:
        paintCrew(canvas);
        break;
    case Garment::VNeck:
        paintVNeck(canvas);
        break;
    case Garment::Jacket:
        paintJacket(canvas);
        break;
    case Garment::Collar:
        paintShirtCollar(canvas);
        break;
    }
}

void paintEye(PortraitCanvas *canvas, const PortraitLook &look, int side)
{
    const Point eye = beside(side, look.eyeDistance, EYES_Y);
    canvas->paint(Ellipse{eye, 3.5_px, 2.25_px}, Ink::Background);
    canvas->paint(Ellipse{eye, 2_px, 2.5_px}, Ink::Feature);
    canvas->paintWithout({{eye.x, eye.y}, 4.25_px, 3.25_px},
                         {{eye.x, eye.y + 1.5_px}, 4.75_px, 3.5_px}, Ink::Feature);
    canvas->paint(Ellipse{{eye.x + 0.75_px, eye.y - 0.75_px}, 0.75_px, 0.75_px}, Ink::Background);
}

void paintBrow(PortraitCanvas *canvas, const PortraitLook &look, int side)
{
    const Point brow = beside(side, look.eyeDistance + 0.5_px, EYES_Y - look.browHeight + 3_px);
    canvas->paintWithout({brow, 5.5_px, 3.5_px}, {{brow.x, brow.y + 1.75_px}, 6.5_px, 3.5_px},
                         Ink::Hair);
}

void paintMouth(PortraitCanvas *canvas, const PortraitLook &look)
{
    const Point mouth = {MIDDLE, look.chinY - 12.5_px};
    canvas->paintWithout({mouth, look.mouthHalfWidth, look.smile},
                         {{mouth.x, mouth.y - 1.75_px}, look.mouthHalfWidth + 1.5_px, look.smile},
                         Ink::Mouth);
}

void paintBeard(PortraitCanvas *canvas, const PortraitLook &look)
{
    const Units mouthY = look.chinY - 12.5_px;
    if (look.beard == Beard::Full) {
        const Ellipse chin = jaw(look);
        const Ellipse shaved = {{MIDDLE, mouthY - 7_px}, look.jawHalfWidth - 3_px, 15_px};
        canvas->paint({0, EYES_Y + 6_px, RIGHT_EDGE, BOTTOM}, Ink::Hair,
                      [&](Point p) { return chin.contains(p) && !shaved.contains(p); });
    }
    if (look.beard != Beard::None) {
        canvas->paintWithout({{MIDDLE, mouthY - 1_px}, look.mouthHalfWidth + 1.5_px, 4_px},
                             {{MIDDLE, mouthY + 1.5_px}, look.mouthHalfWidth + 2_px, 3.75_px},
                             Ink::Hair);
    }
}

} // namespace

void paintNeckAndClothes(PortraitCanvas *canvas, const PortraitLook &look)
{
    canvas->paint(CHEST, Ink::Clothes, inShoulders);
    const Units neckHalfWidth = look.jawHalfWidth - 7_px;
    canvas->paint({MIDDLE - neckHalfWidth, 70_px, MIDDLE + neckHalfWidth, 95_px}, Ink::Skin,
                  [](Point) { return true; });
    paintGarment(canvas, look.garment);
    // The shade that the chin throws.
    const Ellipse shade = {{MIDDLE, look.chinY - 18_px}, look.jawHalfWidth, 23_px};
    canvas->paint({MIDDLE - neckHalfWidth, 70_px, MIDDLE + neckHalfWidth, 95_px}, Ink::SkinShade,
                  [&](Point p) { return shade.contains(p); });
}

void paintHead(PortraitCanvas *canvas, const PortraitLook &look)
{
    for (const int side : {-1, 1}) {
        canvas->paint(Ellipse{beside(side, look.faceHalfWidth, 57_px), 3.5_px, 6.5_px}, Ink::Skin);
        canvas->paint(Ellipse{beside(side, look.faceHalfWidth + 0.75_px, 57_px), 1.5_px, 3.75_px},
                      Ink::SkinShade);
    }
    canvas->paint(skull(look), Ink::Skin);
    canvas->paint(jaw(look), Ink::Skin);
}

void paintFace(PortraitCanvas *canvas, const PortraitLook &look)
{
    paintBeard(canvas, look);
    for (const int side : {-1, 1}) {
        canvas->paint(Ellipse{beside(side, look.eyeDistance + 2.5_px, 64.5_px), 4_px, 2.75_px},
                      Ink::Blush);
        paintEye(canvas, look, side);
        paintBrow(canvas, look, side);
    }
    canvas->paintWithout({{MIDDLE, 62_px}, 3.5_px, 2.75_px}, {{MIDDLE, 60.5_px}, 4.25_px, 2.75_px},
                         Ink::SkinShade);
    paintMouth(canvas, look);
}

void paintGlasses(PortraitCanvas *canvas, const PortraitLook &look)
{
    constexpr Units THICKNESS = 1.25_px;
    const Units corner = look.glasses == Glasses::Round ? 6_px : 2.5_px;
    for (const int side : {-1, 1}) {
        const Point eye = beside(side, look.eyeDistance + 0.25_px, EYES_Y + 0.5_px);
        const Units halfHeight = look.glasses == Glasses::Round ? 6.5_px : 5_px;
        const Box outer = {eye.x - 7.5_px, eye.y - halfHeight, eye.x + 7.5_px, eye.y + halfHeight};
        const RoundedBox rim = {outer, corner};
        const RoundedBox glass = {{outer.left + THICKNESS, outer.top + THICKNESS,
                                   outer.right - THICKNESS, outer.bottom - THICKNESS},
                                  corner - THICKNESS};
        canvas->paint(outer, Ink::Frame,
                      [&](Point p) { return rim.contains(p) && !glass.contains(p); });
        const Units hinge = look.eyeDistance + 7_px;
        canvas->paint(
            Quad{{{beside(side, hinge, EYES_Y - 2.25_px), beside(side, hinge, EYES_Y - 1_px),
                   beside(side, look.faceHalfWidth + 1_px, EYES_Y - 1.75_px),
                   beside(side, look.faceHalfWidth + 1_px, EYES_Y - 3_px)}}},
            Ink::Frame);
    }
    canvas->paintWithout({{MIDDLE, EYES_Y}, 3_px, 2.25_px},
                         {{MIDDLE, EYES_Y + 1.25_px}, 3_px, 2.25_px}, Ink::Frame);
}

} // namespace simulator
